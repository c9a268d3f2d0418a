#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// Offset of a zone's local time from universal time, in seconds, positive east of Greenwich.
struct DesfaseZona {
  /// Local time less universal time.
  std::int32_t segundos = 0;
  /// Daylight saving time.
  bool verano = false;
  friend bool operator==(const DesfaseZona&, const DesfaseZona&) = default;
};

/// When a zone changes its offset every year, in the local time before the change.
struct ReglaCambio {
  /// Day of the year by month, week and day of the week; week 5 is the last one of the month, day 0 is
  /// Sunday.
  int mes = 1;
  /// Week of the month, 1 to 5.
  int semana = 1;
  /// Day of the week, 0 to 6.
  int diaSemana = 0;
  /// Instead of these, unless 0: the day of the year from 1; 29 February counts only `conBisiesto`.
  int diaAnio = 0;
  /// Whether 29 February counts in `diaAnio`.
  bool conBisiesto = false;
  /// Seconds from the midnight that begins that day; may lie outside it.
  std::int32_t segundos = 0;
};

/// All that the system knows of a zone: the changes of the past, and what holds after the last of them.
struct ZonaHoraria {
  /// A change of the past.
  struct Cambio {
    /// Seconds since 1 January 1970, universal time.
    std::int64_t momento;
    /// What holds from that moment on.
    DesfaseZona desfase;
  };
  /// Daylight saving time of every year.
  struct Verano {
    /// What holds in it.
    DesfaseZona desfase;
    /// When it begins.
    ReglaCambio comienza;
    /// When it ends.
    ReglaCambio termina;
  };

  /// Before the first change.
  DesfaseZona inicial;
  /// By moment.
  std::vector<Cambio> cambios;
  /// After the last change: standard time, and daylight saving time where the zone still has it.
  DesfaseZona estandar;
  /// Nothing where the zone has none.
  std::optional<Verano> verano;
  /// The zone's own names; empty when the system has none.
  UnicodeString nombreEstandar;
  /// Its name of daylight saving time.
  UnicodeString nombreVerano;
};

/// The zone that the computer is set to. Never null: a computer without a zone is on universal time.
UTILVEL90_EXPORT std::shared_ptr<const ZonaHoraria> DameZonaActiva();

/// The zone of a Windows name ("Central Standard Time (Mexico)"), in any capitals; null when there is none.
/// Zones are read once and kept: they do not change while a program runs.
UTILVEL90_EXPORT std::shared_ptr<const ZonaHoraria> DameZonaWindows(std::u16string_view nombre);

/// The zone of a name of the tz database ("America/Tijuana"), in its own capitals; null when there is none.
/// Kept likewise.
UTILVEL90_EXPORT std::shared_ptr<const ZonaHoraria> DameZonaIana(std::u16string_view nombre);

}  // namespace vel

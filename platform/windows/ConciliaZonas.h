#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string_view>

#include "platform/ZonasHorarias.h"

// Two sources tell the zones of Windows: the table that the library carries, exact for the past but no newer
// than the library, and the system's own records, kept up by its updates but coarse: two changes a year at
// most, on a day of the week, and the years before the first record told by that one. All of this is on
// values, and nothing here asks the system.
namespace vel {

/// When a record's season begins, as the system writes it: month 0 is never; `dia` is the week of the month,
/// 5 the last, or with a year the day of the month, once.
struct FechaTzi {
  std::uint16_t anio, mes, diaSemana, dia, hora, minuto, segundo, milisegundo;
};

/// A record of a zone: minutes that universal time is ahead of local time, and what the seasons add.
struct RegistroTzi {
  std::int32_t sesgo, sesgoEstandar, sesgoVerano;
  FechaTzi estandar, verano;
};

/// The record in the 44 bytes of a value "TZI"; nothing when they are no record.
std::optional<RegistroTzi> LeeTzi(std::string_view bytes);

/// All records that the system has of a zone.
struct ZonaSistema {
  /// For all years when `porAnio` is empty. Else the last of that holds for later years and the first for
  /// earlier ones.
  RegistroTzi actual{};
  std::map<int, RegistroTzi> porAnio;
  /// Year of the system's edition of all zones; 0 when it does not tell.
  int edicion = 0;
};

/// A zone that only the system knows, from 1970 on.
ZonaHoraria DeSistema(const ZonaSistema& sistema);

/// The table's zone, made in the year `anioTabla`, with what a newer system knows better in the year
/// `anioActual`.
///
/// The system is newer when its edition is of a later year, or when its last record is of the table's year or
/// a later one: changes are recorded under the year that they begin with. A record more than a year ahead is
/// no such sign, since it was computed (Morocco's follow the moon) and may be old, and an edition more than a
/// year ahead is none. And it must have the two years before the table's as the table has them: what is past
/// by then a newer system knows.
///
/// It is believed from the first year on in which both differ by more than a day in all; less is the way
/// records are written (midnight as 23:59:59.999). Before that year the table holds.
ZonaHoraria Concilia(ZonaHoraria tabla, int anioTabla, int anioActual, const ZonaSistema& sistema);

}  // namespace vel

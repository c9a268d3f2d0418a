#pragma once

#include <chrono>
#include <memory>
#include <type_traits>

#include "facil/Momento.h"
#include "facil/Texto.h"
#include "framework/TDateTime.h"
#include "utilvel90_export.h"

namespace vel {
struct ZonaHoraria;
}

namespace vel::facil {

/// A moment of universal time, to the millisecond.
using MomentoUniversal = std::chrono::sys_time<std::chrono::milliseconds>;

/// A time zone, by its Windows name ("Pacific Standard Time (Mexico)", in any capitals) or by its name in the
/// tz database ("America/Tijuana", in its own capitals). Texts in either encoding become one.
///
/// EInvalidOperation ("Zona horaria desconocida: America/Ciudad") for any other name.
/// Threads: const members may be called by all.
class UTILVEL90_EXPORT Zona {
 public:
  /// By its Windows name or its tz name, in either encoding.
  Zona(const Texto& nombre);
  /// The same, for what becomes a text by itself.
  template <class Nombre>
  requires std::is_constructible_v<Texto, const Nombre&> Zona(const Nombre& nombre) : Zona(Texto(nombre)) {}

  /// That of this computer, as it is set now.
  static Zona DeEstaComputadora();

  /// Its changes of the past and its rules of today; valid as long as this object.
  const ZonaHoraria& Reglas() const noexcept { return *reglas_; }

 private:
  explicit Zona(std::shared_ptr<const ZonaHoraria> reglas) noexcept;

  std::shared_ptr<const ZonaHoraria> reglas_;
};

/// A local time of one zone in the local time of another, by the daylight saving rules that each had in the
/// date's own year.
///
///     CambiaZona(local_days(2024y / July / 15) + 12h, "America/Tijuana", "America/Mexico_City")   // 13:00
///
/// When clocks go back an hour comes twice: it is taken as the second one, in standard time. The hour that
/// they skip when they go forward is counted as standard time still held: 02:30 means half an hour after the
/// change, which those clocks show as 03:30.
///
///     Tijuana, 03/11/2024 01:30 (twice) is 09:30 in universal time; 10/03/2024 02:30 (never) is 10:30
///
/// A date outside the years 1 to 9999, here or there, raises EConvertError ("La fecha no es válida").
UTILVEL90_EXPORT TDateTime CambiaZona(Momento momento, const Zona& de, const Zona& a);

/// A local time of a zone in universal time, and back; likewise.
///
///     AUniversal(local_days(2024y / May / 13) + 12h, "America/Tijuana")    // 19:00 of the same day
UTILVEL90_EXPORT MomentoUniversal AUniversal(Momento momento, const Zona& zona);
UTILVEL90_EXPORT TDateTime DeUniversal(MomentoUniversal momento, const Zona& zona);

/// What is finer than milliseconds, or coarser, such as system_clock::now() and sys_days.
template <class Duracion>
TDateTime DeUniversal(std::chrono::sys_time<Duracion> momento, const Zona& zona) {
  return DeUniversal(std::chrono::floor<std::chrono::milliseconds>(momento), zona);
}

}  // namespace vel::facil

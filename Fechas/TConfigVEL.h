#pragma once

#include <string_view>
#include <vector>

#include "framework/TDateTime.h"
#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// A calendar date; may hold a day that its month does not have.
struct Fecha {
  /// Day of the month, from 1.
  short dia = 0;
  /// Month, 1 to 12.
  short mes = 0;
  /// Year in full.
  short anio = 0;
  friend bool operator==(const Fecha&, const Fecha&) = default;
};

/// The named date ranges of a configuration file (section "FECHAS": "TOTAL" entries, "Fch0", "Fch1" and so
/// on, each "name,start macro,end macro"), evaluated against a reference date.
///
/// A date macro is day "/" month "/" year, each a whole number or "?". A positive part sets its field, a
/// negative one moves back by so many years, months or days, 0 and "?" leave it. The year is applied first,
/// then the month, then the day; a day set beyond its month's end is that end.
///
///     with 15/05/2024:   1/0/0 is 01/05/2024    31/0/0 is 31/05/2024    31/12/-1 is 31/12/2023
///
/// Threads: const members may be called by all.
class UTILVEL90_EXPORT TConfigVEL {
 public:
  /// Reads the file, as Inicio does, for that reference date.
  TConfigVEL(std::u16string_view archivo, TDateTime referencia);
  TConfigVEL(const TConfigVEL&) = delete;
  TConfigVEL& operator=(const TConfigVEL&) = delete;
  ~TConfigVEL();

  /// Loads and evaluates the file anew. A missing file has no entries; an entry without "," or name is empty
  /// but keeps its place; a macro that is not valid leaves the reference date.
  void Inicio();
  void CargaConfig();

  /// How many entries the file has, empty ones too.
  int NumeroFormatos() const noexcept;
  /// Fills the date with the reference date.
  void FechaDeHoy(Fecha* fecha) const;
  /// Changes the date as the macro says; false, with the date as it was, when a part is not valid.
  bool InterpretaFecha(Fecha& fecha, std::u16string_view macro) const;
  /// Reads one part of a macro; `tipo` is 0 for day (-31 to 31), 1 for month (-12 to 12), 2 for year. False,
  /// and value 0, when it is not valid.
  bool EvalCad(short& valor, short tipo, std::u16string_view parte) const;
  /// Adds days, which may be negative, to the date.
  void Suma(short dias, Fecha& fecha) const;

  /// Start (`cual` 1) or end (any other value) of an entry by 0-based index or by name; day 0 for an entry
  /// that does not exist, is empty, or holds an impossible date.
  TDateTime FechaComoDateTime(int indice, int cual) const;
  TDateTime FechaComoDateTime(std::u16string_view nombre, int cual) const;
  /// The same as "dd/mm/yyyy"; empty for an entry that does not exist.
  UnicodeString FechaComoString(int indice, int cual) const;
  /// Name of an entry; empty when it does not exist.
  UnicodeString Nombres(int indice) const;
  /// Index of the first entry of exactly this name, or -1.
  int LocalizaMacro(std::u16string_view nombre) const noexcept;
  /// True when both texts equal the current ones.
  bool EsRangoActual(std::u16string_view inicio, std::u16string_view fin, std::u16string_view inicioActual,
                     std::u16string_view finActual) const noexcept;

 private:
  struct Rango {
    UnicodeString nombre;
    Fecha inicio;
    Fecha fin;
  };
  const Rango* En(int indice) const noexcept;
  Rango LeeRango(std::u16string_view valor) const;

  std::vector<Rango> rangos_;
  UnicodeString archivo_;
  TDateTime referencia_;
};

/// A new configuration with today's local date, or the date given, as reference. The caller frees it with
/// DestruyeManejoFechas.
UTILVEL90_EXPORT TConfigVEL* CreaManejoFechas(std::u16string_view archivo);
UTILVEL90_EXPORT TConfigVEL* CreaManejoFechas(std::u16string_view archivo, TDateTime referencia);
UTILVEL90_EXPORT void DestruyeManejoFechas(TConfigVEL* config) noexcept;

}  // namespace vel

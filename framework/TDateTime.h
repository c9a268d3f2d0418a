#pragma once

#include <compare>
#include <string_view>

#include "framework/TFieldType.h"
#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// A moment without time zone: days since 30 December 1899; the fraction is the time of day. Before that
/// day the whole part counts back and the fraction still counts forward (-1.25 is 29/12/1899 06:00).
/// Threads: const members may be called by all.
class UTILVEL90_EXPORT TDateTime {
 public:
  constexpr TDateTime() noexcept = default;
  /// Of a number of days.
  constexpr explicit TDateTime(double dias) noexcept : dias_(dias) {}
  /// The number of days.
  constexpr double Val() const noexcept { return dias_; }
  friend constexpr auto operator<=>(TDateTime, TDateTime) noexcept = default;

 private:
  double dias_ = 0;
};

/// A calendar date of the Gregorian calendar; month and day are 1-based.
struct CivilDate {
  /// Year, 1 to 9999.
  int anio = 1899;
  /// Month, 1 to 12.
  int mes = 12;
  /// Day of the month, from 1.
  int dia = 30;
  friend bool operator==(const CivilDate&, const CivilDate&) = default;
};

/// A time of day: hours 0 to 23, milliseconds 0 to 999.
struct CivilTime {
  /// Hour, 0 to 23.
  int hora = 0;
  /// Minute, 0 to 59.
  int minuto = 0;
  /// Second, 0 to 59.
  int segundo = 0;
  /// Millisecond, 0 to 999.
  int milisegundo = 0;
  friend bool operator==(const CivilTime&, const CivilTime&) = default;
};

/// False, with `resultado` untouched, for a day that the calendar (years 1 to 9999) does not have.
UTILVEL90_EXPORT bool TryEncodeDate(const CivilDate& fecha, TDateTime& resultado) noexcept;

/// Raises EConvertError ("La fecha no es válida") for a day that does not exist.
UTILVEL90_EXPORT TDateTime EncodeDate(const CivilDate& fecha);

/// False, with `resultado` untouched, for a time out of the ranges of CivilTime.
UTILVEL90_EXPORT bool TryEncodeTime(const CivilTime& hora, TDateTime& resultado) noexcept;

/// The date and the time of day together.
UTILVEL90_EXPORT TDateTime ComposeDateTime(TDateTime fecha, TDateTime hora) noexcept;

/// Calendar date and time of day, rounded to the millisecond. Values that are not numbers or lie outside
/// years 1 to 9999 raise EConvertError ("La fecha no es válida").
UTILVEL90_EXPORT CivilDate DecodeDate(TDateTime momento);
UTILVEL90_EXPORT CivilTime DecodeTime(TDateTime momento);

/// "dd/mm/yyyy", then " hh:mm:ss" when the time of day is not midnight, then ".zzz" when milliseconds
/// remain: the short formats of Mexico, whatever the machine's locale. Raises EConvertError as DecodeDate
/// does.
///
///     DateTimeToStr(TDateTime(45425)) == u"13/05/2024"
///     DateTimeToStr(TDateTime(45425.5)) == u"13/05/2024 12:00:00"
UTILVEL90_EXPORT UnicodeString DateTimeToStr(TDateTime momento);

/// Reads what DateTimeToStr writes; day and month may have one digit, the year one to four (24 is the year
/// 24), seconds may be missing, blanks may surround it, and a time alone is of day 0. Returns false and
/// leaves `momento` alone otherwise.
UTILVEL90_EXPORT bool TryStrToDateTime(std::u16string_view texto, TDateTime& momento) noexcept;

/// The text of ISO 8601 that databases read alike, whatever their settings: "yyyy-mm-dd", then " hh:mm:ss"
/// when the time of day is not midnight, then ".zzz" when milliseconds remain. An ftDate keeps the date
/// alone, an ftTime the time alone ("14:30:00", midnight too); every other type keeps both. Raises
/// EConvertError as DecodeDate does.
///
///     DateTimeToISO(momento)                       // u"2024-05-13 14:30:00"
///     DateTimeToISO(momento, TFieldType::ftDate)   // u"2024-05-13"
UTILVEL90_EXPORT UnicodeString DateTimeToISO(TDateTime momento, TFieldType tipo = TFieldType::ftDateTime);

/// Reads what DateTimeToISO writes for a date, with or without its time: four, two and two digits, then a
/// blank or "T" and a time as TryStrToDateTime reads it; blanks may surround the whole. Returns false and
/// leaves `momento` alone for any other text, a time alone too.
UTILVEL90_EXPORT bool TryISOToDateTime(std::u16string_view texto, TDateTime& momento) noexcept;

/// TryStrToDateTime that raises EConvertError ("'x' no es una fecha y hora válida").
UTILVEL90_EXPORT TDateTime StrToDateTime(std::u16string_view texto);

}  // namespace vel

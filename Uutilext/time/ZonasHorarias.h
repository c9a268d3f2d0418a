#pragma once

#include <cstdint>
#include <string_view>

#include "framework/TDateTime.h"
#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// The day of a yearly change: month 1 to 12 (0: there is none), day of the week (0 is Sunday), and in wDay
/// the week of the month, 1 to 5, 5 being the last; wYear is 0. The time is local.
struct SYSTEMTIME {
  std::uint16_t wYear;          ///< Always 0.
  std::uint16_t wMonth;         ///< Month, 1 to 12; 0 when there is no change.
  std::uint16_t wDayOfWeek;     ///< Day of the week, 0 is Sunday.
  std::uint16_t wDay;           ///< Week of the month, 1 to 5.
  std::uint16_t wHour;          ///< Hour of the change, local time.
  std::uint16_t wMinute;        ///< Its minute.
  std::uint16_t wSecond;        ///< Its second.
  std::uint16_t wMilliseconds;  ///< Its millisecond.
  friend bool operator==(const SYSTEMTIME&, const SYSTEMTIME&) = default;
};

/// Rules of a time zone. Biases are minutes: universal time is local time plus Bias plus the bias of the
/// season. Names are cut to 31 characters and end in a zero.
struct TIME_ZONE_INFORMATION {
  /// Minutes to add to standard local time for universal time, without the season's.
  std::int32_t Bias;
  /// Name of standard time.
  char16_t StandardName[32];
  /// When standard time begins.
  SYSTEMTIME StandardDate;
  /// Minutes to add to Bias in standard time.
  std::int32_t StandardBias;
  /// Name of daylight saving time.
  char16_t DaylightName[32];
  /// When daylight saving time begins.
  SYSTEMTIME DaylightDate;
  /// Minutes to add to Bias in daylight saving time.
  std::int32_t DaylightBias;
};

/// Fills the record with today's rules of a zone by its Windows name, such as "Central Standard Time
/// (Mexico)", in any capitals. False, with the record untouched, for an empty name or one that Windows does
/// not know.
UTILVEL90_EXPORT bool GetInfoTimeZone(TIME_ZONE_INFORMATION& tzi, std::u16string_view nombre);

/// A date-time local to this computer in the local time of a zone by its Windows name; empty means "Central
/// Standard Time (Mexico)". The daylight saving rules of both hold, those of the date's own year; a local
/// time that occurs twice or not at all is taken in standard time. Milliseconds are kept. An unknown zone, or
/// a date outside the years 1 to 9999, returns the date-time unchanged.
///
///     on a computer in Mexico City, zone u"Pacific Standard Time (Mexico)" (Tijuana):
///         15/01/2024 12:00 gives 10:00, and 15/07/2024 12:00, in summer time there, 11:00
UTILVEL90_EXPORT TDateTime ConvertTimeToTimeZone(TDateTime fecha, std::u16string_view zona);

/// This computer's present offset from universal time in whole hours, halves rounded away from zero: -6 where
/// clocks are six hours behind. The argument is not used.
UTILVEL90_EXPORT int DameHoraBase(TDateTime fecha);

/// Name of a synchronisation-time setting: "TiempoSincronizacion" and the number, a "0" before it when it is
/// below 10.
///
///     DameSecTiempoSincro(5) == u"TiempoSincronizacion05"
UTILVEL90_EXPORT UnicodeString DameSecTiempoSincro(int numero);

}  // namespace vel

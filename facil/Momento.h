#pragma once

#include <chrono>

#include "framework/TDateTime.h"
#include "utilvel90_export.h"

namespace vel::facil {

/// A date argument: a TDateTime, a day of the calendar or a local time of std::chrono, to the millisecond
/// (what is finer is cut toward the past). A day that the calendar lacks, or one outside years 1 to 9999,
/// raises EConvertError ("La fecha no es válida").
///
/// A sys_time with a time of day is universal time and needs a zone to become a date here: DeUniversal.
///
///     using namespace std::chrono;
///     Momento(2024y / May / 13)                                   // the day, at midnight
///     Momento(local_days(2024y / May / 13) + 14h + 30min)         // TDateTime 45425.604166...
///
/// Threads: const members may be called by all.
class UTILVEL90_EXPORT Momento {
 public:
  /// From a date of either kind, as told above.
  Momento(TDateTime momento) noexcept : momento_(momento) {}
  Momento(std::chrono::year_month_day dia);
  Momento(std::chrono::year_month_day_last dia) : Momento(std::chrono::year_month_day(dia)) {}
  Momento(std::chrono::sys_days dia) : Momento(std::chrono::year_month_day(dia)) {}
  /// From a local time; what is finer than milliseconds is cut toward the past.
  template <typename Duracion>
  Momento(std::chrono::local_time<Duracion> momento)
      : Momento(DeLocal(std::chrono::floor<std::chrono::milliseconds>(momento))) {}
  template <typename Duracion>
  Momento(std::chrono::sys_time<Duracion>) = delete;

  /// The date of the interface below.
  operator TDateTime() const noexcept { return momento_; }

 private:
  static TDateTime DeLocal(std::chrono::local_time<std::chrono::milliseconds> momento);

  TDateTime momento_;
};

/// The day of a date, and its local time rounded to the millisecond. Dates that are not numbers or lie
/// outside years 1 to 9999 raise EConvertError ("La fecha no es válida").
///
///     ADia(TDateTime(45425.5)) == 2024y / May / 13
UTILVEL90_EXPORT std::chrono::year_month_day ADia(TDateTime momento);
UTILVEL90_EXPORT std::chrono::local_time<std::chrono::milliseconds> AHoraLocal(TDateTime momento);

}  // namespace vel::facil

#pragma once

#include <chrono>
#include <memory>
#include <string_view>

#include "framework/TDateTime.h"
#include "utilvel90_export.h"

namespace vel {

struct ZonaHoraria;

/// The zone of a Windows name ("Pacific Standard Time (Mexico)", in any capitals) or of one of the tz
/// database ("America/Tijuana", in its own capitals). Null when it is neither.
UTILVEL90_EXPORT std::shared_ptr<const ZonaHoraria> BuscaZona(std::u16string_view nombre);

/// A local date-time of the zone in universal time, to the millisecond, by the daylight saving rules of the
/// date's own year. A local time that occurs twice or not at all is taken in standard time. False, with
/// `universal` untouched, for a date outside the years 1 to 9999.
///
///     Tijuana, 15/01/2024 12:00 is 20:00 in universal time, 15/07/2024 12:00 is 19:00
UTILVEL90_EXPORT bool LocalAUniversal(const ZonaHoraria& zona, TDateTime local,
                                      std::chrono::sys_time<std::chrono::milliseconds>& universal);

/// The local date-time of the zone at a moment. False, with `local` untouched, where it lies outside the
/// years 1 to 9999.
UTILVEL90_EXPORT bool UniversalALocal(const ZonaHoraria& zona,
                                      std::chrono::sys_time<std::chrono::milliseconds> universal,
                                      TDateTime& local);

}  // namespace vel

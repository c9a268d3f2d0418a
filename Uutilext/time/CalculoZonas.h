#pragma once

#include <cstdint>

#include "platform/ZonasHorarias.h"

namespace vel {

/// The moment of universal time of a zone's local one, both in seconds since 1 January 1970. One that occurs
/// twice is taken in standard time, and one that does not occur as if standard time held.
std::int64_t LocalAUtc(const ZonaHoraria& zona, std::int64_t local);

}  // namespace vel

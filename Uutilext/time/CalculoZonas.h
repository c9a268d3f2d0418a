#pragma once

#include <cstdint>

#include "platform/ZonasHorarias.h"

// The arithmetic of zones, on values: moments are seconds since 1 January 1970, in universal time or, where
// it says so, in the zone's local time.
namespace vel {

/// The zone's offset at a moment of universal time.
DesfaseZona DesfaseEnUtc(const ZonaHoraria& zona, std::int64_t utc);

/// The moment of universal time of a local one. One that occurs twice is taken in standard time, and one that
/// does not occur as if standard time held.
std::int64_t LocalAUtc(const ZonaHoraria& zona, std::int64_t local);

/// The day of the rule in a year, and its time, as a local moment.
std::int64_t MomentoDeRegla(const ReglaCambio& regla, int anio);

}  // namespace vel

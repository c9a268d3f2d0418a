#pragma once

#include <cstdint>

#include "platform/ZonasHorarias.h"

// What a zone's rules mean, on values: moments are seconds since 1 January 1970, in universal time or, where
// it says so, in the zone's local time.
namespace vel {

/// The zone's offset at a moment of universal time.
DesfaseZona DesfaseEnUtc(const ZonaHoraria& zona, std::int64_t utc);

/// The day of the rule in a year, and its time, as a local moment.
std::int64_t MomentoDeRegla(const ReglaCambio& regla, int anio);

}  // namespace vel

#pragma once

#include <string_view>

// The tz database as it was when the library was built, since the system has none: about 450 zones under 600
// names, a third of a megabyte.
namespace vel {

/// The file (RFC 8536) of a name of the tz database, in its own capitals; empty when there is none. Names
/// that mean one zone give the same bytes, at the same place.
std::string_view BuscaTablaZonas(std::string_view nombre) noexcept;

/// The year in which that edition of the database came out.
int AnioTablaZonas() noexcept;

}  // namespace vel

#pragma once

#include <cstddef>
#include <string_view>

#include "framework/Texto.h"

namespace vel::posix {

struct ZonaWindows {
  std::u16string_view nombre;
  /// Name of the zone in the tz database.
  const char* tz;
};

/// The zone of that Windows name, in any capitals; null when Windows has none.
const ZonaWindows* BuscaZonaWindows(std::u16string_view nombre) noexcept;

/// Its place in the table, below kZonasWindows.
std::size_t IndiceZonaWindows(const ZonaWindows& zona) noexcept;
inline constexpr std::size_t kZonasWindows = 141;

}  // namespace vel::posix

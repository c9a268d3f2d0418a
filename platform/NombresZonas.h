#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "framework/Texto.h"

namespace vel {

struct ZonaWindows {
  std::u16string_view nombre;
  /// Name of the zone in the tz database.
  const char* tz;
};

/// The zone of that Windows name, in any capitals; null when Windows has none.
const ZonaWindows* BuscaZonaWindows(std::u16string_view nombre) noexcept;

/// All of them, in the order of CompareText.
std::span<const ZonaWindows> ZonasWindows() noexcept;

/// "Central Standard Time (Mexico)" has the summer name "Central Daylight Time (Mexico)".
UnicodeString NombreVerano(std::u16string_view estandar);

/// Its place in the table, below kZonasWindows.
std::size_t IndiceZonaWindows(const ZonaWindows& zona) noexcept;
inline constexpr std::size_t kZonasWindows = 141;

}  // namespace vel

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// Files by their paths in the suite's notation (see RutaNativa). Contents are bytes.

/// The whole file, opened for reading with sharing allowed to all; nothing when it cannot be read (missing,
/// no permission, a folder, a device that fails).
UTILVEL90_EXPORT std::optional<std::string> LeeArchivo(std::u16string_view ruta);

}  // namespace vel

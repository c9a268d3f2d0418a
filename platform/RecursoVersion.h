#pragma once

#include <string_view>

#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// A text of the version resource that the build stamps into this library, by its full path in the resource's
/// string table ("\StringFileInfo\080A04E4\FileVersion"); empty when the resource has none.
UTILVEL90_EXPORT UnicodeString LeeRecursoVersion(std::u16string_view ruta);

}  // namespace vel

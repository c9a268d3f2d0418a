#pragma once

#include <string_view>

#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// True when a module of that file name ("SrvVEL90.dll") is loaded in this process, in any capitals. On POSIX
/// a shared object stands for it with or without "lib" before its name, and with ".so" in the place of
/// ".dll".
UTILVEL90_EXPORT bool ModuloCargado(std::u16string_view nombre);

/// Path of this library's own file, as it was when first asked for. Raises Exception when the system does not
/// tell; the next call asks again.
UTILVEL90_EXPORT UnicodeString RutaBiblioteca();

}  // namespace vel

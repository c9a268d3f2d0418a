#pragma once

#include <string_view>

#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// The path by which the system knows a path of the suite. Paths of the suite keep their backslashes in every
/// text; they become native only here, at the access to the file.
///
/// Windows: the path as it is. POSIX: "\" is "/", and a drive "x:" is the folder "drive_x" (in small letters)
/// under the folder in $UTILVEL_UNIDADES, else under "tavex" in the user's data folder.
///
///     RutaNativa(u"C:\\Datos\\a.ini")   // "/home/ana/.local/share/tavex/drive_c/Datos/a.ini"
UTILVEL90_EXPORT UnicodeString RutaNativa(std::u16string_view ruta);

}  // namespace vel

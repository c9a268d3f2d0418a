#pragma once

#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// Folder of the release that the settings name: "Sistemas Tavex\VEL" and "VersionVel" of section "Sistema"
/// ("9.00" when empty) in the common files folder, with a trailing backslash.
UTILVEL90_EXPORT UnicodeString DameRutaVersionVel();

/// The system's short name: the first line, in capitals and trimmed, of the file in the library's folder that
/// "AlsConfig.ini" there names ("Verfile" of section "GENERAL"); "VEL" when either file is missing or the
/// line is empty.
UTILVEL90_EXPORT UnicodeString GetNombreSistema();

}  // namespace vel

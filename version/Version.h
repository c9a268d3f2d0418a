#pragma once

#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// Product label of this library's version resource, which names the release's folders ("VEL9.00"). Read once
/// per process and kept; an empty one is read again. Safe for threads, as all functions here.
UTILVEL90_EXPORT UnicodeString DameVerVEL();

/// File version of this library's version resource ("9.2.0"), kept likewise; after "Tavex-VEL " when
/// `conProducto`.
UTILVEL90_EXPORT UnicodeString DameVersionCompVEL(bool conProducto);

/// Product name and version as logs have them: "Tavex-VEL 9.00".
UTILVEL90_EXPORT UnicodeString DameVerVELBitacora();

/// Name of the settings file: "VELWIN90.INI".
UTILVEL90_EXPORT UnicodeString DameNombreArchIni();

}  // namespace vel

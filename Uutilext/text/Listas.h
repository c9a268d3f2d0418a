#pragma once

#include <string_view>

#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// Moves comma-separated items from the front of `origen` to the end of `destino` while the destination's
/// length and the next item's do not exceed `limite` together (the comma between them is not counted), and
/// while the destination, as text, stands before the limit's decimal digits: one that begins with a letter
/// takes nothing more. Callers rely on that comparison.
///
///     destino u"", origen u"12,345,6", limite 3:    u"12" and u"345,6"
///     destino u"", origen u"A1,B2,C3", limite 10:   u"A1" and u"B2,C3"
UTILVEL90_EXPORT void DivideCadena(UnicodeString& destino, UnicodeString& origen, int limite);

/// How often `buscado` occurs in `texto`, left to right and not overlapping; 0 when it is empty.
///
///     CuentaVecesStr(u"aa", u"aaaaa") == 2
UTILVEL90_EXPORT int CuentaVecesStr(std::u16string_view buscado, std::u16string_view texto) noexcept;

}  // namespace vel

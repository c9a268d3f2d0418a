#pragma once

#include <string_view>

#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// Splits one address line into street, exterior and interior number, and two cross streets, at keywords with
/// a blank on either side and in any case: " # ", " NUMERO ", " NO. " ... for the exterior number,
/// " INTERIOR ", " INT. " ... for the interior one, " X ", " ENTRE " ... for the first cross street, " Y "
/// for the second. In each group the first keyword of its list that occurs counts, wherever another one
/// stands. All five outputs are written, trimmed; those without a keyword become empty, and a line without
/// any is the street.
///
///     "AV. JUAREZ NUMERO 120 INT. 4 ENTRE HIDALGO Y MORELOS"
///         // "AV. JUAREZ", "120", "4", "HIDALGO", "MORELOS"
UTILVEL90_EXPORT void DividirDireccion(std::u16string_view direccion, UnicodeString& calle,
                                       UnicodeString& numExterior, UnicodeString& numInterior,
                                       UnicodeString& cruce1, UnicodeString& cruce2);

/// Splits a town text at its first two commas, nothing trimmed. Without a comma a text that is not empty goes
/// to `primera` alone. Otherwise `primera` and `segunda` both get what stands before the first comma, and
/// `cuarta` what stands after the last comma used, when there is anything; `tercera` becomes empty when only
/// one comma stands before more text. Outputs not named stay as they were: callers rely on it.
///
///     "Mérida, Yucatán"            // "Mérida", "Mérida", "", " Yucatán"
///     "Mérida, Yucatán, México"    // "Mérida", "Mérida", as it was, " México"
UTILVEL90_EXPORT void DividePoblacion(std::u16string_view poblacion, UnicodeString& primera,
                                      UnicodeString& segunda, UnicodeString& tercera, UnicodeString& cuarta);

}  // namespace vel

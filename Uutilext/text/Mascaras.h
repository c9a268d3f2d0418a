#pragma once

#include <string_view>

#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// A display mask for amounts with thousands separators: 7 and 2 give "#,###,##0.00". The point stays without
/// decimals too. Negative decimals count as none; integer digits below -2 give the empty text. A count above
/// one million raises EInvalidOperation.
///
///     FormatoMiles(7, 2) == u"#,###,##0.00"    FormatoMiles(3, 0) == u"##0."
UTILVEL90_EXPORT UnicodeString FormatoMiles(int enteros, int decimales);

/// True when the value begins with the mask's characters, case counted, where "?" stands for any one.
/// Question marks at the mask's end are dropped first, so a mask of nothing else accepts every value.
///
///     p_mascarilla(u"A?1??", u"AB1") == true    p_mascarilla(u"A?1??", u"AB2xyz") == false
UTILVEL90_EXPORT bool p_mascarilla(std::u16string_view mascara, std::u16string_view valor) noexcept;

/// True when the series holds none of the characters that a file name cannot: \ / : * ? " < > | . It ends up
/// in the file names of stamped documents.
UTILVEL90_EXPORT bool EsSerieValida(std::u16string_view serie) noexcept;

/// True for a natural person's taxpayer code (RFC): 13 or more characters, blanks and "-" not counted; a
/// legal entity's has 12.
UTILVEL90_EXPORT bool DameTipoContribuyente(std::u16string_view rfc) noexcept;

}  // namespace vel

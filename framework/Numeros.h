#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// Longest text of FloatToStr: sign, 15 digits, point, "E", sign and 3 exponent digits fit.
inline constexpr std::size_t kMaxFloatText = 32;

/// General float text: at most 15 significant digits, correctly rounded, trailing zeros dropped, "."
/// always. Fixed notation while the decimal exponent is from -4 to 14 ("0.0001", "123456789012345"), else
/// scientific with a capital E, no plus sign and no leading zeros ("1.5E-7", "1E15"). Zero of either sign
/// is "0"; "INF", "-INF" and "NAN" stand for what is no number. Never depends on the locale.
///
///     FloatToStr(0.1 + 0.2) == u"0.3"    FloatToStr(1e15) == u"1E15"    FloatToStr(-0.0) == u"0"
UTILVEL90_EXPORT UnicodeString FloatToStr(double valor);

/// FloatToStr into ASCII characters: fills the beginning of `salida` and returns how many.
UTILVEL90_EXPORT std::size_t FloatToChars(double valor, std::span<char, kMaxFloatText> salida) noexcept;

/// The double that FloatToStr's text of the value reads back to: the value rounded to 15 significant digits.
/// Zero of either sign gives 0; what is no finite number comes back unchanged.
UTILVEL90_EXPORT double RoundToText(double valor) noexcept;

/// Text to double: surrounding blanks, a sign, digits with at most one ".", an exponent; nothing else
/// ("5.", ".5" and "+5" are numbers; "", ".", "0x10", "INF", "1,5" are not). Correctly rounded. A value
/// too large for a double does not convert; one too small gives zero. Returns false and leaves `valor`
/// alone when the text does not convert.
UTILVEL90_EXPORT bool TryStrToFloat(std::u16string_view texto, double& valor);
UTILVEL90_EXPORT bool TryStrToFloat(std::string_view texto, double& valor) noexcept;

/// TryStrToFloat that raises EConvertError ("'x' no es un valor de punto flotante válido").
UTILVEL90_EXPORT double StrToFloat(std::u16string_view texto);

/// Decimal text of a whole number: "-12".
UTILVEL90_EXPORT UnicodeString IntToStr(std::int64_t valor);

/// Appends IntToStr(valor) to a text.
UTILVEL90_EXPORT void AppendInt(UnicodeString& texto, std::int64_t valor);

/// Text to integer: leading blanks, a sign, decimal digits; nothing else, no trailing blank. Returns false
/// and leaves `valor` alone when the text does not convert or the value does not fit.
UTILVEL90_EXPORT bool TryStrToInt(std::u16string_view texto, std::int32_t& valor) noexcept;
UTILVEL90_EXPORT bool TryStrToInt64(std::u16string_view texto, std::int64_t& valor) noexcept;

/// TryStrToInt that raises EConvertError ("'x' no es un valor entero válido").
UTILVEL90_EXPORT std::int32_t StrToInt(std::u16string_view texto);
UTILVEL90_EXPORT std::int64_t StrToInt64(std::u16string_view texto);

/// Text to boolean: "True" or "False" in any case, or a number (zero is false, any other is true).
UTILVEL90_EXPORT bool TryStrToBool(std::u16string_view texto, bool& valor);

/// TryStrToBool that raises EConvertError ("'x' no es un valor booleano válido").
UTILVEL90_EXPORT bool StrToBool(std::u16string_view texto);

}  // namespace vel

#pragma once

#include <string_view>

#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// The text in capitals, by the same rules on every machine: Unicode's simple mappings, which are those of
/// Spanish, whatever the locale; platform/TablaCaracteres.h states their version. The length never changes: a
/// letter whose capital is longer ("ß"), or that stands beyond the Basic Multilingual Plane, stays as it is.
///
///     Mayusculas(u"Peña ß") == u"PEÑA ß"
UTILVEL90_EXPORT UnicodeString Mayusculas(std::u16string_view texto);

/// The text in small letters, by the rules of Mayusculas.
UTILVEL90_EXPORT UnicodeString Minusculas(std::u16string_view texto);

/// Unicode's tests: a decimal digit of any script; a letter of any script or such a digit. Half of a
/// surrogate pair is neither.
UTILVEL90_EXPORT bool EsDigito(char16_t c) noexcept;
UTILVEL90_EXPORT bool EsAlfanumerico(char16_t c) noexcept;

}  // namespace vel

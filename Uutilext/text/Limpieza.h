#pragma once

#include <string_view>

#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// Deletes the characters , - _ . : * ; from the text, which the tax authority's fields do not take.
///
///     "A.B-1: 2"    // "AB1 2"
UTILVEL90_EXPORT void QuitaCaracteresExtraniosSAT(UnicodeString& texto);

/// The text unchanged when all of it is a number (StrToFloat); else only its digits, of any script.
///
///     DevuelveSoloNumeros(u"Tel. 999-123") == u"999123"    DevuelveSoloNumeros(u"-1.5") == u"-1.5"
UTILVEL90_EXPORT UnicodeString DevuelveSoloNumeros(std::u16string_view texto);

/// The text with every run of blanks (U+0020) as one blank, trimmed at both ends.
UTILVEL90_EXPORT UnicodeString DejaSoloUnEspacioEntrePalabras(std::u16string_view texto);

/// The text trimmed and without any blank (U+0020).
UTILVEL90_EXPORT UnicodeString QuitaBlancos(std::u16string_view texto);

/// The text with each "&" doubled, so that a caption shows it.
UTILVEL90_EXPORT UnicodeString MuestraAmpersAnd(std::u16string_view texto);

/// The text in capitals, only its letters and digits of any script, "&" and "@".
///
///     RegresaCadAlfaNum(u"Peña & Cía., S.A.") == u"PEÑA&CÍASA"
UTILVEL90_EXPORT UnicodeString RegresaCadAlfaNum(std::u16string_view texto);

}  // namespace vel

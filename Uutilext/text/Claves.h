#pragma once

#include <cstdint>
#include <string_view>

#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// Catalog keys, document keys and folios. Keys of digits alone are stored aligned to the right with blanks
/// in a fixed width, all others trimmed. A digit is one of "0" to "9".

/// The value aligned to the right in `ancho` characters, or its first `ancho` characters when it is longer;
/// empty for an empty value or a width below 1. A width above one million raises EInvalidOperation.
///
///     FormateaValor(u"12", 5) == u"   12"    FormateaValor(u"123456", 5) == u"12345"
UTILVEL90_EXPORT UnicodeString FormateaValor(std::u16string_view valor, int ancho);

/// A key of digits alone as FormateaValor has it; any other trimmed.
///
///     FormateaValorCve(u"12", 5) == u"   12"    FormateaValorCve(u"A-1 ", 6) == u"A-1"
UTILVEL90_EXPORT UnicodeString FormateaValorCve(std::u16string_view clave, int ancho);

/// What stands before the digits at the end of the trimmed text: "A1B2" gives "A1B".
UTILVEL90_EXPORT UnicodeString DameParteAlfanumerica(std::u16string_view texto);

/// The number that the digits at the text's end make (blanks after them are dropped); 0 when there are none,
/// -1 when it does not fit or there are more than ten.
///
///     DameParteNumerica(u"F0009") == 9    DameParteNumerica(u"9F") == 0
UTILVEL90_EXPORT std::int32_t DameParteNumerica(std::u16string_view texto);

/// A document key: a whole number that does not begin with "0" aligned to the right in 10 characters,
/// anything else trimmed.
///
///     FormateaCveDocto(u"15") == u"        15"    FormateaCveDocto(u" 015") == u"015"
UTILVEL90_EXPORT UnicodeString FormateaCveDocto(std::u16string_view clave);

/// The folio that follows `anterior`, with its series and the new consecutive number; zeros that filled the
/// old number fill the new one to the same width. Aligned as a key of 9 characters; a longer one raises
/// Exception.
///
///     FormateaFolioCxCP(u"F0009", u"10") == u"F0010"
UTILVEL90_EXPORT UnicodeString FormateaFolioCxCP(std::u16string_view anterior, std::u16string_view nuevo);

}  // namespace vel

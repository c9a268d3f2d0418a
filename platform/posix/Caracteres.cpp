#include "platform/Caracteres.h"

#include <unicode/uchar.h>

namespace vel {
namespace {

// Maps each character by itself: Unicode's simple mappings, which never change the number of characters.
template <typename Ascii>
UnicodeString Convierte(std::u16string_view texto, Ascii ascii, UChar32 (*letra)(UChar32)) {
  UnicodeString salida(texto);
  for (char16_t& c : salida) {
    if (c < 0x80) {
      c = ascii(c);
      continue;
    }
    const UChar32 nueva = letra(c);
    if (nueva <= 0xFFFF) c = static_cast<char16_t>(nueva);
  }
  return salida;
}

}  // namespace

UnicodeString Mayusculas(std::u16string_view texto) {
  return Convierte(
      texto, [](char16_t c) { return c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - 32) : c; },
      u_toupper);
}

UnicodeString Minusculas(std::u16string_view texto) {
  return Convierte(
      texto, [](char16_t c) { return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c; },
      u_tolower);
}

bool EsDigito(char16_t c) noexcept { return u_isdigit(c) != 0; }

bool EsAlfanumerico(char16_t c) noexcept { return u_isalnum(c) != 0; }

}  // namespace vel

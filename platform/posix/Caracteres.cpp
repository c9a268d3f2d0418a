#include "platform/Caracteres.h"

#include <array>
#include <unicode/uchar.h>

namespace vel {
namespace {

using Letra = UChar32 (*)(UChar32);

// One of Unicode's simple mappings, which never change the number of characters.
char16_t Mapea(char16_t c, Letra letra) noexcept {
  const UChar32 nueva = letra(c);
  return nueva <= 0xFFFF ? static_cast<char16_t>(nueva) : c;
}

// The mapping of the characters of Latin-1, which nearly all texts are made of.
using Tabla = std::array<char16_t, 256>;

Tabla CreaTabla(Letra letra) noexcept {
  Tabla tabla{};
  for (std::size_t i = 0; i < tabla.size(); ++i) tabla[i] = Mapea(static_cast<char16_t>(i), letra);
  return tabla;
}

UnicodeString Convierte(std::u16string_view texto, const Tabla& tabla, Letra letra) {
  UnicodeString salida(texto);
  for (char16_t& c : salida) c = c < tabla.size() ? tabla[c] : Mapea(c, letra);
  return salida;
}

}  // namespace

UnicodeString Mayusculas(std::u16string_view texto) {
  static const Tabla tabla = CreaTabla(u_toupper);
  return Convierte(texto, tabla, u_toupper);
}

UnicodeString Minusculas(std::u16string_view texto) {
  static const Tabla tabla = CreaTabla(u_tolower);
  return Convierte(texto, tabla, u_tolower);
}

bool EsDigito(char16_t c) noexcept { return u_isdigit(c) != 0; }

bool EsAlfanumerico(char16_t c) noexcept { return u_isalnum(c) != 0; }

}  // namespace vel

#include "platform/PaginaCodigos.h"

#include <algorithm>
#include <array>

namespace vel {
namespace {

// The characters of bytes 0x80 to 0x9F; every other byte is the character of the same number.
// Source: WHATWG, Encoding Standard, index windows-1252.
constexpr std::array<char16_t, 32> kAltos = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                             0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                             0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                             0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

// The byte of a character, or -1.
int ByteDe(char16_t c) {
  if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) return c;
  const auto it = std::find(kAltos.begin(), kAltos.end(), c);
  return it == kAltos.end() ? -1 : 0x80 + static_cast<int>(it - kAltos.begin());
}

}  // namespace

AnsiString ACp1252(std::u16string_view texto) {
  AnsiString salida(texto.size(), '?');
  for (std::size_t i = 0; i < texto.size(); ++i) {
    const int byte = ByteDe(texto[i]);
    if (byte >= 0) salida[i] = static_cast<char>(static_cast<unsigned char>(byte));
  }
  return salida;
}

bool CabeEnCp1252(std::u16string_view texto) {
  return std::all_of(texto.begin(), texto.end(), [](char16_t c) { return ByteDe(c) >= 0; });
}

UnicodeString DeCp1252(std::string_view texto) {
  UnicodeString salida(texto.size(), u'\0');
  for (std::size_t i = 0; i < texto.size(); ++i) {
    const auto byte = static_cast<unsigned char>(texto[i]);
    salida[i] = byte >= 0x80 && byte <= 0x9F ? kAltos[byte - 0x80U] : byte;
  }
  return salida;
}

}  // namespace vel

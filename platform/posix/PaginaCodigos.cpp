#include "platform/PaginaCodigos.h"

#include <algorithm>
#include <array>
#include <new>
#include <unicode/ucnv.h>

namespace vel {
namespace {

// Bytes 0x80 to 0x9F; ICU has the table, all other bytes are the character of the same number.
using Altos = std::array<char16_t, 32>;

Altos LeeAltos() {
  UErrorCode error = U_ZERO_ERROR;
  const icu::LocalUConverterPointer conversor(ucnv_open("windows-1252", &error));
  std::array<char, 32> bytes{};
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(0x80 + i);
  Altos altos{};
  ucnv_toUChars(conversor.getAlias(), altos.data(), static_cast<std::int32_t>(altos.size()), bytes.data(),
                static_cast<std::int32_t>(bytes.size()), &error);
  // The table is part of ICU's data; without it nothing here can work.
  if (U_FAILURE(error)) throw std::bad_alloc();
  return altos;
}

const Altos& TablaAltos() {
  static const Altos altos = LeeAltos();
  return altos;
}

// The byte of a character, or -1.
int ByteDe(char16_t c) {
  if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) return c;
  const Altos& altos = TablaAltos();
  const auto it = std::find(altos.begin(), altos.end(), c);
  return it == altos.end() ? -1 : 0x80 + static_cast<int>(it - altos.begin());
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
    salida[i] = byte >= 0x80 && byte <= 0x9F ? TablaAltos()[byte - 0x80U] : byte;
  }
  return salida;
}

}  // namespace vel

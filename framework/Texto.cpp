#include "framework/Texto.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace vel {
namespace {

constexpr char32_t kReemplazo = 0xFFFD;

bool EsBlancoOControl(char16_t c) noexcept { return c <= u' '; }

void AgregaUtf8(std::string& salida, char32_t c) {
  const auto byte = [&salida](char32_t b) {
    salida.push_back(static_cast<char>(static_cast<unsigned char>(b)));
  };
  if (c < 0x80) {
    byte(c);
  } else if (c < 0x800) {
    byte(0xC0 | (c >> 6));
    byte(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    byte(0xE0 | (c >> 12));
    byte(0x80 | ((c >> 6) & 0x3F));
    byte(0x80 | (c & 0x3F));
  } else {
    byte(0xF0 | (c >> 18));
    byte(0x80 | ((c >> 12) & 0x3F));
    byte(0x80 | ((c >> 6) & 0x3F));
    byte(0x80 | (c & 0x3F));
  }
}

char16_t* EscribeUtf16(char16_t* destino, char32_t c) noexcept {
  if (c < 0x10000) {
    *destino++ = static_cast<char16_t>(c);
  } else {
    *destino++ = static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
    *destino++ = static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
  }
  return destino;
}

struct Decodificado {
  char32_t codigo;
  std::size_t bytes;
  bool valido;
};

// Decodes the sequence at the start of a non-empty text (Unicode 15, table 3-7). An ill-formed one counts
// the bytes of its maximal well-formed beginning, at least one.
Decodificado DecodificaUtf8(std::string_view texto) noexcept {
  const auto en = [&texto](std::size_t i) { return static_cast<std::uint8_t>(texto[i]); };
  const std::uint8_t primero = en(0);
  if (primero < 0x80) return {primero, 1, true};
  std::size_t largo = 0;
  std::uint8_t minimo = 0x80;
  std::uint8_t maximo = 0xBF;
  char32_t codigo = 0;
  if (primero >= 0xC2 && primero <= 0xDF) {
    largo = 2;
    codigo = primero & 0x1FU;
  } else if (primero >= 0xE0 && primero <= 0xEF) {
    largo = 3;
    codigo = primero & 0x0FU;
    if (primero == 0xE0) minimo = 0xA0;
    if (primero == 0xED) maximo = 0x9F;
  } else if (primero >= 0xF0 && primero <= 0xF4) {
    largo = 4;
    codigo = primero & 0x07U;
    if (primero == 0xF0) minimo = 0x90;
    if (primero == 0xF4) maximo = 0x8F;
  } else {
    return {kReemplazo, 1, false};
  }
  for (std::size_t i = 1; i < largo; ++i) {
    if (i >= texto.size() || en(i) < minimo || en(i) > maximo) return {kReemplazo, i, false};
    codigo = (codigo << 6) | (en(i) & 0x3FU);
    minimo = 0x80;
    maximo = 0xBF;
  }
  return {codigo, largo, true};
}

// Length of the ASCII beginning of a text, by words of eight bytes and then by bytes.
std::size_t LargoAscii(std::string_view texto) noexcept {
  constexpr std::uint64_t kAltos = 0x8080808080808080U;
  std::size_t i = 0;
  for (; i + sizeof(std::uint64_t) <= texto.size(); i += sizeof(std::uint64_t)) {
    std::uint64_t ocho = 0;
    std::memcpy(&ocho, texto.data() + i, sizeof ocho);
    if ((ocho & kAltos) != 0) break;
  }
  while (i < texto.size() && static_cast<unsigned char>(texto[i]) < 0x80) ++i;
  return i;
}

// Copies the ASCII characters at the beginning of a text as UTF-16, in blocks that compilers turn into vector
// instructions, and returns how many they are.
std::size_t EnsanchaAscii(std::string_view texto, char16_t* destino) noexcept {
  constexpr std::uint64_t kAltos = 0x8080808080808080U;
  constexpr std::size_t kBloque = 16;
  std::size_t i = 0;
  for (; i + kBloque <= texto.size(); i += kBloque) {
    std::array<std::uint64_t, 2> dobles;
    std::memcpy(dobles.data(), texto.data() + i, kBloque);
    if (((dobles[0] | dobles[1]) & kAltos) != 0) break;
    for (std::size_t k = 0; k < kBloque; ++k) destino[i + k] = static_cast<unsigned char>(texto[i + k]);
  }
  for (; i < texto.size() && static_cast<unsigned char>(texto[i]) < 0x80; ++i) {
    destino[i] = static_cast<unsigned char>(texto[i]);
  }
  return i;
}

}  // namespace

std::string UTF8Encode(std::u16string_view texto) {
  std::string salida;
  salida.reserve(texto.size());
  // Most texts are ASCII from their beginning on.
  const auto ascii = std::find_if(texto.begin(), texto.end(), [](char16_t c) { return c >= 0x80; });
  salida.assign(texto.begin(), ascii);
  for (auto i = salida.size(); i < texto.size(); ++i) {
    char32_t c = texto[i];
    if (c >= 0xD800 && c <= 0xDFFF) {
      const bool par =
          c <= 0xDBFF && i + 1 < texto.size() && texto[i + 1] >= 0xDC00 && texto[i + 1] <= 0xDFFF;
      c = par ? 0x10000 + ((c - 0xD800) << 10) + (texto[++i] - 0xDC00U) : kReemplazo;
    }
    AgregaUtf8(salida, c);
  }
  return salida;
}

UnicodeString UTF8ToString(std::string_view utf8) {
  // No text has more UTF-16 code units than UTF-8 bytes.
  UnicodeString salida(utf8.size(), u'\0');
  char16_t* fin = salida.data();
  // Most texts are ASCII but for a letter here and there: runs are widened at once.
  for (;;) {
    const std::size_t ascii = EnsanchaAscii(utf8, fin);
    fin += ascii;
    utf8.remove_prefix(ascii);
    if (utf8.empty()) break;
    const Decodificado d = DecodificaUtf8(utf8);
    fin = EscribeUtf16(fin, d.codigo);
    utf8.remove_prefix(d.bytes);
  }
  salida.resize(static_cast<std::size_t>(fin - salida.data()));
  return salida;
}

bool IsUTF8(std::string_view bytes) noexcept {
  for (;;) {
    bytes.remove_prefix(LargoAscii(bytes));
    if (bytes.empty()) return true;
    const Decodificado d = DecodificaUtf8(bytes);
    if (!d.valido) return false;
    bytes.remove_prefix(d.bytes);
  }
}

bool IsASCII(std::string_view bytes) noexcept { return LargoAscii(bytes) == bytes.size(); }

std::u16string_view TrimLeftView(std::u16string_view texto) noexcept {
  const auto primero = std::find_if_not(texto.begin(), texto.end(), EsBlancoOControl);
  return texto.substr(static_cast<std::size_t>(primero - texto.begin()));
}

std::u16string_view TrimRightView(std::u16string_view texto) noexcept {
  const auto ultimo = std::find_if_not(texto.rbegin(), texto.rend(), EsBlancoOControl);
  return texto.substr(0, static_cast<std::size_t>(texto.rend() - ultimo));
}

std::u16string_view TrimView(std::u16string_view texto) noexcept {
  return TrimLeftView(TrimRightView(texto));
}

UnicodeString Trim(std::u16string_view texto) { return UnicodeString(TrimView(texto)); }

std::size_t Pos(std::u16string_view buscado, std::u16string_view texto) noexcept {
  if (buscado.empty()) return 0;
  const std::size_t indice = texto.find(buscado);
  return indice == std::u16string_view::npos ? 0 : indice + 1;
}

std::u16string_view Copy(std::u16string_view texto, long long inicio, long long cuenta) noexcept {
  const auto largo = static_cast<long long>(texto.size());
  inicio = std::max(inicio, 1LL);
  if (inicio > largo || cuenta < 1) return {};
  return texto.substr(static_cast<std::size_t>(inicio - 1), static_cast<std::size_t>(cuenta));
}

UnicodeString StringReplace(std::u16string_view texto, std::u16string_view viejo, std::u16string_view nuevo) {
  UnicodeString salida;
  if (viejo.empty()) return UnicodeString(texto);
  salida.reserve(texto.size());
  for (std::size_t desde = 0;;) {
    const std::size_t indice = texto.find(viejo, desde);
    if (indice == std::u16string_view::npos) return salida.append(texto.substr(desde));
    salida.append(texto.substr(desde, indice - desde)).append(nuevo);
    desde = indice + viejo.size();
  }
}

char16_t FoldCase(char16_t c) noexcept {
  if (c < 0x80) return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
  if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return static_cast<char16_t>(c + 32);
  if (c < 0x100 || c > 0x17E) return c;
  if (c == 0x178) return 0xFF;
  // Dotted and dotless I, kra, the apostrophe n: letters of this block without a partner beside them.
  if (c == 0x130 || c == 0x131 || c == 0x138 || c == 0x149) return c;
  const bool mayusculaImpar = (c >= 0x139 && c <= 0x148) || c >= 0x179;
  const bool esImpar = (c & 1) != 0;
  return esImpar == mayusculaImpar ? static_cast<char16_t>(c + 1) : c;
}

int CompareText(std::u16string_view a, std::u16string_view b) noexcept {
  const std::size_t comun = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < comun; ++i) {
    if (a[i] == b[i]) continue;
    const char16_t x = FoldCase(a[i]);
    const char16_t y = FoldCase(b[i]);
    if (x != y) return x < y ? -1 : 1;
  }
  if (a.size() == b.size()) return 0;
  return a.size() < b.size() ? -1 : 1;
}

bool SameText(std::u16string_view a, std::u16string_view b) noexcept {
  return a.size() == b.size() && CompareText(a, b) == 0;
}

}  // namespace vel

#include "platform/TextoArchivo.h"

#include "platform/PaginaCodigos.h"

namespace vel {
namespace {

constexpr std::string_view kMarcaUtf8 = "\xEF\xBB\xBF";
constexpr std::string_view kMarcaUtf16 = "\xFF\xFE";
constexpr std::string_view kMarcaUtf16Inversa = "\xFE\xFF";

UnicodeString DeUtf16(std::string_view bytes) {
  UnicodeString texto(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < texto.size(); ++i) {
    const auto bajo = static_cast<unsigned char>(bytes[2 * i]);
    const auto alto = static_cast<unsigned char>(bytes[2 * i + 1]);
    texto[i] = static_cast<char16_t>(alto << 8 | bajo);
  }
  return texto;
}

std::string AUtf16(std::u16string_view texto) {
  std::string bytes;
  bytes.reserve(2 * texto.size());
  for (const char16_t c : texto) {
    bytes.push_back(static_cast<char>(c & 0xFF));
    bytes.push_back(static_cast<char>(c >> 8));
  }
  return bytes;
}

std::string Codifica(std::u16string_view texto, Codificacion codificacion) {
  if (codificacion == Codificacion::Windows1252) return ACp1252(texto);
  return std::string(codificacion == Codificacion::Utf8ConMarca ? kMarcaUtf8 : "") + UTF8Encode(texto);
}

}  // namespace

Codificacion ReconoceCodificacion(std::string_view bytes) noexcept {
  if (bytes.substr(0, kMarcaUtf16.size()) == kMarcaUtf16) return Codificacion::Utf16;
  if (bytes.substr(0, kMarcaUtf8.size()) == kMarcaUtf8) return Codificacion::Utf8ConMarca;
  return !IsASCII(bytes) && IsUTF8(bytes) ? Codificacion::Utf8 : Codificacion::Windows1252;
}

std::string_view SinMarca(std::string_view bytes, Codificacion codificacion) noexcept {
  switch (codificacion) {
    case Codificacion::Utf8ConMarca:
      return bytes.substr(kMarcaUtf8.size());
    case Codificacion::Utf16:
      return bytes.substr(kMarcaUtf16.size());
    case Codificacion::Windows1252:
    case Codificacion::Utf8:
      break;
  }
  return bytes;
}

UnicodeString DecodificaParte(std::string_view parte, Codificacion codificacion) {
  // Most settings files are ASCII, for which the conversion of runs is faster.
  return codificacion == Codificacion::Windows1252 && !IsASCII(parte) ? DeCp1252(parte) : UTF8ToString(parte);
}

TextoArchivo DecodificaArchivo(std::string_view bytes) {
  const Codificacion codificacion = ReconoceCodificacion(bytes);
  bytes = SinMarca(bytes, codificacion);
  if (codificacion != Codificacion::Utf16) return {DecodificaParte(bytes, codificacion), codificacion, {}};
  return {DeUtf16(bytes), codificacion, std::string(bytes.substr(bytes.size() / 2 * 2))};
}

std::string CodificaArchivo(const TextoArchivo& archivo) {
  if (archivo.codificacion != Codificacion::Utf16) {
    std::string bytes = Codifica(archivo.texto, archivo.codificacion);
    // Also a Windows-1252 text whose bytes happen to be good UTF-8 would come back as another.
    if (DecodificaArchivo(bytes).texto == archivo.texto) return bytes;
  }
  return std::string(kMarcaUtf16) + AUtf16(archivo.texto) + archivo.resto;
}

bool SeReescribeIgual(std::string_view bytes, const TextoArchivo& leido) {
  return bytes.substr(0, kMarcaUtf16Inversa.size()) != kMarcaUtf16Inversa && CodificaArchivo(leido) == bytes;
}

}  // namespace vel

#include "Uutilext/config/ArchivoIni.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

#include "framework/Excepciones.h"
#include "platform/Archivos.h"
#include "platform/PaginaCodigos.h"

namespace vel {
namespace {

enum class Codificacion : std::uint8_t { Windows1252, Utf8, Utf8ConMarca, Utf16 };

constexpr std::string_view kMarcaUtf8 = "\xEF\xBB\xBF";
constexpr std::string_view kMarcaUtf16 = "\xFF\xFE";

Codificacion Reconoce(std::string_view bytes) {
  if (bytes.substr(0, kMarcaUtf16.size()) == kMarcaUtf16) return Codificacion::Utf16;
  if (bytes.substr(0, kMarcaUtf8.size()) == kMarcaUtf8) return Codificacion::Utf8ConMarca;
  // ASCII alone reads the same either way, and Windows-1252 is what a new file has.
  const bool ascii =
      std::all_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  return !ascii && IsUTF8(bytes) ? Codificacion::Utf8 : Codificacion::Windows1252;
}

UnicodeString Decodifica(std::string_view bytes, Codificacion codificacion) {
  switch (codificacion) {
    case Codificacion::Utf8:
      return UTF8ToString(bytes);
    case Codificacion::Utf8ConMarca:
      return UTF8ToString(bytes.substr(kMarcaUtf8.size()));
    case Codificacion::Windows1252:
      return DeCp1252(bytes);
    case Codificacion::Utf16:
      break;
  }
  bytes.remove_prefix(kMarcaUtf16.size());
  UnicodeString texto(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < texto.size(); ++i) {
    const auto bajo = static_cast<unsigned char>(bytes[2 * i]);
    const auto alto = static_cast<unsigned char>(bytes[2 * i + 1]);
    texto[i] = static_cast<char16_t>(alto << 8 | bajo);
  }
  return texto;
}

std::string Codifica(const UnicodeString& texto, Codificacion codificacion) {
  switch (codificacion) {
    case Codificacion::Utf8:
      return UTF8Encode(texto);
    case Codificacion::Utf8ConMarca:
      return std::string(kMarcaUtf8) + UTF8Encode(texto);
    case Codificacion::Windows1252:
      if (CabeEnCp1252(texto)) return ACp1252(texto);
      break;
    case Codificacion::Utf16:
      break;
  }
  std::string bytes(kMarcaUtf16);
  bytes.reserve(bytes.size() + 2 * texto.size());
  for (const char16_t c : texto) {
    bytes.push_back(static_cast<char>(c & 0xFF));
    bytes.push_back(static_cast<char>(c >> 8));
  }
  return bytes;
}

[[noreturn]] void FallaArchivoIni(std::u16string_view mensaje, std::u16string_view archivo) {
  throw Exception(UnicodeString(mensaje).append(u"\"").append(archivo).append(
      u"\"\nCompruebe que tenga los permisos necesarios."));
}

}  // namespace

TextoIni LeeIni(std::u16string_view archivo) {
  const std::optional<std::string> bytes = LeeArchivo(archivo);
  return bytes.has_value() ? TextoIni(Decodifica(*bytes, Reconoce(*bytes))) : TextoIni();
}

void CambiaIni(std::u16string_view archivo, std::u16string_view mensaje,
               const std::function<void(TextoIni&)>& cambio) {
  const CandadoArchivo candado(archivo);
  if (candado.Falla().Hubo()) FallaArchivoIni(mensaje, archivo);
  std::string bytes;
  const FallaArchivo lectura = LeeArchivo(archivo, bytes);
  if (lectura.Hubo() && lectura.clase != ClaseFalla::NoExiste) FallaArchivoIni(mensaje, archivo);
  const Codificacion codificacion = Reconoce(bytes);
  // Half a character at the end of a damaged file is kept too.
  const std::string cola =
      codificacion == Codificacion::Utf16 && bytes.size() % 2 != 0 ? bytes.substr(bytes.size() - 1) : "";
  TextoIni texto(Decodifica(bytes, codificacion));
  const UnicodeString anterior = texto.Texto();
  cambio(texto);
  if (texto.Texto() == anterior) return;
  if (ReemplazaArchivo(archivo, Codifica(texto.Texto(), codificacion) + cola).Hubo())
    FallaArchivoIni(mensaje, archivo);
}

}  // namespace vel

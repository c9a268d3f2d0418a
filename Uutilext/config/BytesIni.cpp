#include "Uutilext/config/BytesIni.h"

#include <algorithm>

#include "framework/TextoIni.h"

namespace vel {
namespace {

bool EsAscii(std::u16string_view texto) noexcept {
  return std::all_of(texto.begin(), texto.end(), [](char16_t c) { return c < 0x80; });
}

// Whether the text of the bytes, written back, would be other bytes. Every byte of Windows-1252 is a
// character; the mark of UTF-16 in the other byte order is none.
bool EstaDanado(std::string_view bytes, Codificacion codificacion) noexcept {
  const bool otroOrden = bytes.substr(0, 2) == "\xFE\xFF";
  return otroOrden || (codificacion == Codificacion::Utf8ConMarca && !IsUTF8(bytes));
}

}  // namespace

BytesIni::BytesIni(std::string_view bytes) : bytes_(bytes), codificacion_(ReconoceCodificacion(bytes)) {}

bool BytesIni::EsNombre(std::string_view nombre, std::u16string_view buscado) const {
  if (!IsASCII(nombre)) return SameText(DecodificaParte(nombre, codificacion_), buscado);
  return nombre.size() == buscado.size() &&
         std::equal(nombre.begin(), nombre.end(), buscado.begin(), [](char a, char16_t b) {
           return FoldCase(static_cast<unsigned char>(a)) == FoldCase(b);
         });
}

std::optional<ini::Linea<char>> BytesIni::Linea(std::u16string_view seccion,
                                                std::u16string_view clave) const {
  return ini::Busca(
      SinMarca(bytes_, codificacion_), TrimView(seccion), TrimView(clave),
      [this](std::string_view nombre, std::u16string_view buscado) { return EsNombre(nombre, buscado); });
}

std::optional<UnicodeString> BytesIni::Valor(std::u16string_view seccion, std::u16string_view clave) const {
  if (codificacion_ == Codificacion::Utf16) {
    const TextoIni texto(DecodificaArchivo(bytes_).texto);
    const std::optional<std::u16string_view> valor = texto.Valor(seccion, clave);
    return valor.has_value() ? std::optional<UnicodeString>(*valor) : std::nullopt;
  }
  const auto linea = Linea(seccion, clave);
  return linea.has_value() ? std::optional(DecodificaParte(linea->valor, codificacion_)) : std::nullopt;
}

std::optional<std::string> BytesIni::ConValor(std::u16string_view seccion, std::u16string_view clave,
                                              std::u16string_view valor) const {
  TextoIni::Valida(seccion, clave, valor);
  if (codificacion_ == Codificacion::Utf16 || !EsAscii(valor) || EstaDanado(bytes_, codificacion_)) {
    return std::nullopt;
  }
  const auto linea = Linea(seccion, clave);
  if (!linea.has_value()) return std::nullopt;
  const std::string_view actual = ini::LugarDelValor(*linea, valor);
  std::string cambiado;
  cambiado.reserve(bytes_.size() + valor.size());
  cambiado.append(bytes_.data(), actual.data());
  for (const char16_t c : valor) cambiado.push_back(static_cast<char>(c));
  cambiado.append(actual.data() + actual.size(), bytes_.data() + bytes_.size());
  // The value replaced may be all that told the encoding.
  const bool igualQueAntes = ReconoceCodificacion(cambiado) == codificacion_ || IsASCII(cambiado);
  return igualQueAntes ? std::optional(std::move(cambiado)) : std::nullopt;
}

}  // namespace vel

#include "framework/Xml.h"

namespace vel::xml {

bool CabeEnXml(std::u16string_view texto) noexcept {
  for (std::size_t i = 0; i < texto.size(); ++i) {
    const char16_t c = texto[i];
    if (c >= 0xD800 && c <= 0xDFFF) {
      const bool par =
          c <= 0xDBFF && i + 1 < texto.size() && texto[i + 1] >= 0xDC00 && texto[i + 1] <= 0xDFFF;
      if (!par) return false;
      ++i;
    } else if (!EsCaracter(c)) {
      return false;
    }
  }
  return true;
}

std::pair<std::uint32_t, std::size_t> Caracter(std::string_view utf8) noexcept {
  const auto byte = [utf8](std::size_t i) {
    return static_cast<std::uint32_t>(static_cast<unsigned char>(utf8[i]));
  };
  const std::uint32_t primero = byte(0);
  if (primero < 0x80) return {primero, 1};
  const std::size_t bytes = primero < 0xE0 ? 2 : primero < 0xF0 ? 3 : 4;
  std::uint32_t codigo = primero & (0x7FU >> bytes);
  for (std::size_t i = 1; i < bytes; ++i) codigo = codigo << 6 | (byte(i) & 0x3F);
  return {codigo, bytes};
}

void AgregaUtf8(std::string& salida, std::uint32_t codigo) {
  const auto agrega = [&salida](std::uint32_t byte) { salida.push_back(static_cast<char>(byte)); };
  if (codigo < 0x80) return agrega(codigo);
  if (codigo < 0x800) {
    agrega(0xC0 | codigo >> 6);
  } else {
    if (codigo < 0x10000) {
      agrega(0xE0 | codigo >> 12);
    } else {
      agrega(0xF0 | codigo >> 18);
      agrega(0x80 | (codigo >> 12 & 0x3F));
    }
    agrega(0x80 | (codigo >> 6 & 0x3F));
  }
  agrega(0x80 | (codigo & 0x3F));
}

void AgregaAtributo(std::string& salida, std::string_view nombre, std::string_view valor) {
  salida.append(" ").append(nombre).append("=\"");
  AgregaEscapado(salida, valor);
  salida += '"';
}

void AgregaEscapado(std::string& salida, std::string_view texto) {
  std::size_t desde = 0;
  for (std::size_t i = 0; i < texto.size(); ++i) {
    const char c = texto[i];
    // A reader would turn control characters into blanks if they stood as they are.
    const bool control = static_cast<unsigned char>(c) < 0x20;
    if (!control && c != '&' && c != '<' && c != '>' && c != '"') continue;
    salida.append(texto.substr(desde, i - desde));
    desde = i + 1;
    if (control) {
      salida.append("&#").append(std::to_string(static_cast<int>(c))).append(";");
    } else {
      salida.append(c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '>' ? "&gt;" : "&quot;");
    }
  }
  salida.append(texto.substr(desde));
}

}  // namespace vel::xml

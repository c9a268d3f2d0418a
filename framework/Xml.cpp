#include "framework/Xml.h"

namespace vel::xml {
namespace {

// A reader would turn control characters into blanks if they stood as they are.
bool EsLlano(std::uint32_t c) noexcept { return c >= 0x20 && c != '&' && c != '<' && c != '>' && c != '"'; }

void AgregaReferencia(std::string& salida, char c) {
  if (static_cast<unsigned char>(c) < 0x20) {
    salida.append("&#").append(std::to_string(static_cast<int>(c))).append(";");
  } else {
    salida.append(c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '>' ? "&gt;" : "&quot;");
  }
}

}  // namespace

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
    if (EsLlano(static_cast<unsigned char>(texto[i]))) continue;
    salida.append(texto.substr(desde, i - desde));
    desde = i + 1;
    AgregaReferencia(salida, texto[i]);
  }
  salida.append(texto.substr(desde));
}

bool AgregaEscapado(std::string& salida, std::u16string_view texto) {
  for (std::size_t i = 0; i < texto.size();) {
    std::size_t fin = i;
    while (fin < texto.size() && texto[fin] < 0x80 && EsLlano(texto[fin])) ++fin;
    const std::size_t antes = salida.size();
    salida.resize(antes + (fin - i));
    for (char* p = salida.data() + antes; i < fin; ++i) *p++ = static_cast<char>(texto[i]);
    if (i == texto.size()) break;
    const char16_t c = texto[i++];
    if (c >= 0xD800 && c <= 0xDFFF) {
      const bool par = c <= 0xDBFF && i < texto.size() && texto[i] >= 0xDC00 && texto[i] <= 0xDFFF;
      if (!par) return false;
      AgregaUtf8(salida, 0x10000U + ((c - 0xD800U) << 10) + (texto[i++] - 0xDC00U));
    } else if (!EsCaracter(c)) {
      return false;
    } else if (c < 0x80) {
      AgregaReferencia(salida, static_cast<char>(c));
    } else {
      AgregaUtf8(salida, c);
    }
  }
  return true;
}

}  // namespace vel::xml

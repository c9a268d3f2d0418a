#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

// What the XML readers and writers of this folder share.
namespace vel::xml {

/// Whether XML has the code point (XML 1.0, production 2).
inline bool EsCaracter(std::uint32_t codigo) noexcept {
  if (codigo < 0x20) return codigo == '\t' || codigo == '\n' || codigo == '\r';
  return codigo < 0xD800 || (codigo > 0xDFFF && codigo < 0xFFFE) || (codigo > 0xFFFF && codigo < 0x110000);
}

/// False for a text with a character that XML does not have, or half of one.
bool CabeEnXml(std::u16string_view texto) noexcept;

/// The character at the front of well-formed UTF-8 that is not empty, and its length in bytes.
std::pair<std::uint32_t, std::size_t> Caracter(std::string_view utf8) noexcept;

/// Appends a character as UTF-8.
void AgregaUtf8(std::string& salida, std::uint32_t codigo);

/// Appends ` nombre="valor"`, with references where XML needs them; the value is UTF-8 of XML's characters.
void AgregaAtributo(std::string& salida, std::string_view nombre, std::string_view valor);

/// Appends a text so that it reads back the same, in an attribute and between tags.
void AgregaEscapado(std::string& salida, std::string_view texto);

/// The same for a text in UTF-16. False, with a part of it appended, for one that does not fit in XML
/// (CabeEnXml).
bool AgregaEscapado(std::string& salida, std::u16string_view texto);

}  // namespace vel::xml

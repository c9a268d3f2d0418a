#pragma once

#include <cstdint>
#include <string_view>

// What the XML readers and writers of this folder share.
namespace vel::xml {

/// Whether XML has the code point (XML 1.0, production 2).
inline bool EsCaracter(std::uint32_t codigo) noexcept {
  if (codigo < 0x20) return codigo == '\t' || codigo == '\n' || codigo == '\r';
  return codigo < 0xD800 || (codigo > 0xDFFF && codigo < 0xFFFE) || (codigo > 0xFFFF && codigo < 0x110000);
}

/// What the parser found wrong, for users; `estado` is its pugi::xml_parse_status.
std::u16string_view Descripcion(int estado) noexcept;

}  // namespace vel::xml

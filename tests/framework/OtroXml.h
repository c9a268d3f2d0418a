#pragma once

#include <expat.h>
#include <string>

namespace pruebas {

/// Whether a parser that shares nothing with ours takes the bytes for an XML document.
inline bool OtroLectorAcepta(const std::string& bytes) {
  const XML_Parser lector = XML_ParserCreate(nullptr);
  const bool acepta = XML_Parse(lector, bytes.data(), static_cast<int>(bytes.size()), 1) == XML_STATUS_OK;
  XML_ParserFree(lector);
  return acepta;
}

/// The text with its \\n, \\r, \\t and \\xNN replaced by the bytes that they stand for.
inline std::string Descifra(const std::string& texto) {
  std::string salida;
  for (std::size_t i = 0; i < texto.size(); ++i) {
    if (texto[i] != '\\') {
      salida += texto[i];
    } else if (texto[++i] == 'x') {
      salida += static_cast<char>(std::stoi(texto.substr(i + 1, 2), nullptr, 16));
      i += 2;
    } else {
      salida += texto[i] == 'n' ? '\n' : texto[i] == 'r' ? '\r' : '\t';
    }
  }
  return salida;
}

}  // namespace pruebas

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

}  // namespace pruebas

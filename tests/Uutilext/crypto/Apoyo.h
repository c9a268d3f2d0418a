#pragma once

#include <string>
#include <string_view>

#include "framework/Texto.h"

namespace pruebas {

inline std::string RutaDato(const std::string& nombre) {
  return std::string(DATOS_PRUEBA) + "/crypto/" + nombre;
}

inline vel::UnicodeString Dato(const std::string& nombre) { return vel::UTF8ToString(RutaDato(nombre)); }

inline const unsigned char* Bytes(const std::string& texto) {
  return reinterpret_cast<const unsigned char*>(texto.data());
}

inline std::string Hex(std::string_view bytes) {
  std::string texto;
  for (const char c : bytes) {
    texto += "0123456789abcdef"[static_cast<unsigned char>(c) >> 4];
    texto += "0123456789abcdef"[c & 0x0F];
  }
  return texto;
}

}  // namespace pruebas

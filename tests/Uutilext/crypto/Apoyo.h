#pragma once

#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace pruebas {

inline std::string RutaDato(const std::string& nombre) {
  return std::string(DATOS_PRUEBA) + "/crypto/" + nombre;
}

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

// The lines of a file of cases, parted at "; ".
inline std::vector<std::vector<std::string>> Casos(const std::string& nombre) {
  std::ifstream archivo(RutaDato(nombre));
  std::vector<std::vector<std::string>> casos;
  for (std::string linea; std::getline(archivo, linea);) {
    if (linea.empty() || linea[0] == '#') continue;
    auto& campos = casos.emplace_back();
    for (std::size_t fin; (fin = linea.find("; ")) != std::string::npos; linea.erase(0, fin + 2)) {
      campos.push_back(linea.substr(0, fin));
    }
    campos.push_back(linea);
  }
  return casos;
}

}  // namespace pruebas

#pragma once

#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace pruebas {

/// The lines of a file of cases in tests/data, parted at `corte`; empty ones and those that begin with "#"
/// are left out.
inline std::vector<std::vector<std::string>> Casos(const std::string& nombre, const std::string& corte) {
  std::ifstream archivo(std::string(DATOS_PRUEBA) + "/" + nombre);
  if (!archivo) throw std::runtime_error("missing: " + nombre);
  std::vector<std::vector<std::string>> casos;
  for (std::string linea; std::getline(archivo, linea);) {
    if (linea.empty() || linea[0] == '#') continue;
    auto& campos = casos.emplace_back();
    for (std::size_t fin; (fin = linea.find(corte)) != std::string::npos;
         linea.erase(0, fin + corte.size())) {
      campos.push_back(linea.substr(0, fin));
    }
    campos.push_back(linea);
  }
  if (casos.empty()) throw std::runtime_error("no cases: " + nombre);
  return casos;
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

#pragma once

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

#include "framework/Texto.h"

// What the example programs share: reading an input file and printing aligned columns in UTF-8.
namespace ejemplo {

inline std::string LeeArchivo(const std::string& ruta) {
  std::ifstream entrada(ruta, std::ios::binary);
  if (!entrada) throw std::runtime_error("No se puede leer " + ruta);
  return {std::istreambuf_iterator<char>(entrada), {}};
}

/// A text cut or filled with blanks to a width in characters; a negative width aligns to the right.
inline std::string Columna(std::u16string_view texto, int ancho) {
  const auto largo = static_cast<std::size_t>(std::abs(ancho));
  vel::UnicodeString celda(texto.substr(0, largo));
  const std::size_t falta = largo - celda.size();
  celda.insert(ancho < 0 ? 0 : celda.size(), falta, u' ');
  return vel::UTF8Encode(celda);
}

/// An amount with its decimals, aligned to the right.
inline std::string Monto(double valor, int ancho = 12, int decimales = 2) {
  char texto[64];
  static_cast<void>(std::snprintf(texto, sizeof texto, "%*.*f", ancho, decimales, valor));
  return texto;
}

/// Runs the program's body: prints an error to the standard error output and gives the exit code.
template <typename Cuerpo>
int Principal(int argc, char** argv, Cuerpo cuerpo) {
  if (argc < 2) {
    std::cerr << "Uso: " << argv[0] << " <carpeta de datos>\n";
    return 2;
  }
  try {
    cuerpo(std::string(argv[1]));
    return 0;
  } catch (const std::exception& e) {
    std::cerr << e.what() << '\n';
    return 1;
  }
}

}  // namespace ejemplo

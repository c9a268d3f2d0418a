#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "framework/Variant.h"
#include "tests/Reales.h"

namespace pruebas {

/// A value of a case file: the letter of its kind and its text, as "i7", "l7" (64 bits), "d0.5", "f45427.25"
/// (days), "b1", "ttext", "n" (null) and "e" (empty); "[" begins an array of values parted by "~".
inline vel::Variant ValorDe(const std::string& texto) {
  const std::string resto = texto.substr(1);
  switch (texto[0]) {
    case 'i':
      return vel::Variant(std::stoi(resto));
    case 'l':
      return vel::Variant(std::stoll(resto));
    case 'd':
      return vel::Variant(pruebas::Real(resto));
    case 'f':
      return vel::Variant(vel::TDateTime(pruebas::Real(resto)));
    case 'b':
      return vel::Variant(resto == "1");
    case 't':
      return vel::Variant(vel::UTF8ToString(resto));
    case 'n':
      return vel::Variant::Null();
    case 'e':
      return {};
    default:
      break;
  }
  std::vector<vel::Variant> elementos;
  std::istringstream partes = pruebas::Entrada(resto);
  for (std::string uno; std::getline(partes, uno, '~');) elementos.push_back(ValorDe(uno));
  return vel::VarArrayOf(std::move(elementos));
}

inline vel::TFieldType TipoDe(const std::string& numero) {
  return static_cast<vel::TFieldType>(std::stoi(numero));
}

}  // namespace pruebas

// Prints digests of what the library says of all 65,536 code units, to be compared with the same program's on
// another system.

#include <cstdio>
#include <string>

#include "facil/Resumenes.h"
#include "framework/Texto.h"
#include "platform/Caracteres.h"

int main() {
  std::string capitales;
  std::string minusculas;
  std::string clases;
  int distintas = 0;
  const auto agrega = [](std::string& bytes, const vel::UnicodeString& texto) {
    for (const char16_t c : texto) {
      bytes += static_cast<char>(c & 0xFF);
      bytes += static_cast<char>(c >> 8);
    }
  };
  for (unsigned c = 0; c <= 0xFFFF; ++c) {
    const vel::UnicodeString letra(1, static_cast<char16_t>(c));
    const vel::UnicodeString capital = vel::Mayusculas(letra);
    const vel::UnicodeString minuscula = vel::Minusculas(letra);
    agrega(capitales, capital);
    agrega(minusculas, minuscula);
    clases += static_cast<char>((vel::EsDigito(letra[0]) ? 1 : 0) + (vel::EsAlfanumerico(letra[0]) ? 2 : 0));
    if (capital != letra || minuscula != letra) ++distintas;
  }
  std::printf("capitales %s\nminusculas %s\nclases %s\n%d letras con pareja\n",
              vel::facil::Sha256(capitales).Hex().c_str(), vel::facil::Sha256(minusculas).Hex().c_str(),
              vel::facil::Sha256(clases).Hex().c_str(), distintas);
}

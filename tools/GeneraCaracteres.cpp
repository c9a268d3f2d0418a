// What the library knows of characters, made from ICU:
//
//     genera_caracteres <root of the sources>              writes both files below
//     genera_caracteres --compara <root of the sources>    compares; code 77 when the table states another
//                                                          version of Unicode than this ICU's
//
// platform/TablaCaracteres.h is the table. tests/data/textos/caracteres.txt is made apart, from ICU's answers
// character by character, so that the tests hold the table and what reads it against something.

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <unicode/uchar.h>
#include <utility>
#include <vector>

namespace {

constexpr UChar32 kCaracteres = 0x10000;

// One of Unicode's simple mappings; what lies beyond the Basic Multilingual Plane would take two units.
UChar32 Mapea(UChar32 c, UChar32 (*letra)(UChar32)) {
  const UChar32 nueva = letra(c);
  return nueva < kCaracteres ? nueva : c;
}

template <typename... Numeros>
std::string Formatea(const char* formato, Numeros... numeros) {
  std::array<char, 128> texto;
  std::snprintf(texto.data(), texto.size(), formato, numeros...);
  return texto.data();
}

// The entries of a table, as many in a line as it takes.
std::string Renglones(const std::vector<std::string>& entradas) {
  std::string texto;
  std::size_t largo = 0;
  for (const std::string& entrada : entradas) {
    if (largo == 0 || largo + entrada.size() + 2 > 110) {
      texto += "\n    ";
      largo = 4;
    } else {
      texto += ' ';
      ++largo;
    }
    texto += entrada + ',';
    largo += entrada.size() + 1;
  }
  return texto + "\n};\n\n";
}

std::string TablaLetras(UChar32 (*letra)(UChar32)) {
  struct Tramo {
    // The step is 0 while there is one character only.
    UChar32 primero, ultimo, paso, destino;
  };
  std::vector<Tramo> tramos;
  for (UChar32 c = 0; c < kCaracteres; ++c) {
    const UChar32 nueva = Mapea(c, letra);
    if (nueva == c) continue;
    if (!tramos.empty()) {
      Tramo& t = tramos.back();
      const UChar32 salto = c - t.ultimo;
      const bool alcanza = t.paso == 0 ? salto <= 2 : salto == t.paso;
      if (alcanza && nueva - t.destino == c - t.primero) {
        t.ultimo = c;
        t.paso = salto;
        continue;
      }
    }
    tramos.push_back({c, c, 0, nueva});
  }
  std::vector<std::string> entradas;
  entradas.reserve(tramos.size());
  for (const Tramo& t : tramos) {
    entradas.push_back(
        Formatea("{0x%04X, 0x%04X, %d, 0x%04X}", t.primero, t.ultimo, t.paso == 2 ? 2 : 1, t.destino));
  }
  return Renglones(entradas);
}

std::string TablaTramos(UBool (*es)(UChar32)) {
  std::vector<std::string> entradas;
  for (UChar32 c = 0; c < kCaracteres; ++c) {
    if (!es(c)) continue;
    const UChar32 primero = c;
    while (c + 1 < kCaracteres && es(c + 1)) ++c;
    entradas.push_back(Formatea("{0x%04X, 0x%04X}", primero, c));
  }
  return Renglones(entradas);
}

// How a file tells its version.
constexpr std::string_view kVersion = "Unicode " U_UNICODE_VERSION;

std::string Tabla() {
  std::string texto = R"(#pragma once

// Of @: made by tools/GeneraCaracteres.cpp, which is what to change; a test compares.
// clang-format off

namespace vel::caracteres {

// The characters from the first to the last, each or every second one (`paso`): the first becomes `destino`, the
// one n above it the one n above `destino`.
struct Letras {
  char16_t primero, ultimo, paso, destino;
};

// All characters from the first to the last.
struct Tramo {
  char16_t primero, ultimo;
};

)";
  texto.replace(texto.find('@'), 1, kVersion);
  texto +=
      "// Letters with another capital, by the simple mappings.\ninline constexpr Letras kAMayusculas[] = {";
  texto += TablaLetras(u_toupper);
  texto += "// Letters with another small letter.\ninline constexpr Letras kAMinusculas[] = {";
  texto += TablaLetras(u_tolower);
  texto += "// Letters (L) and decimal digits (Nd).\ninline constexpr Tramo kAlfanumericos[] = {";
  texto += TablaTramos(u_isalnum);
  texto += "// Decimal digits (Nd).\ninline constexpr Tramo kDigitos[] = {";
  texto += TablaTramos(u_isdigit);
  return texto + "}  // namespace vel::caracteres\n";
}

std::string Referencia() {
  std::string texto =
      R"(# Of @, made by tools/GeneraCaracteres.cpp. For each 4,096 characters: the first|how many have another
# capital|another small letter|are digits|digits or letters|FNV-1a (64 bits) of all answers: for each character the
# bytes of its capital and of its small letter, lower one first, then 1 for a digit and 2 for a digit or letter.
)";
  texto.replace(texto.find('@'), 1, kVersion);
  constexpr UChar32 kGrupo = 0x1000;
  for (UChar32 inicio = 0; inicio < kCaracteres; inicio += kGrupo) {
    int conMayuscula = 0;
    int conMinuscula = 0;
    int digitos = 0;
    int alfanumericos = 0;
    std::uint64_t suma = 0xCBF29CE484222325;
    for (UChar32 c = inicio; c < inicio + kGrupo; ++c) {
      const UChar32 mayuscula = Mapea(c, u_toupper);
      const UChar32 minuscula = Mapea(c, u_tolower);
      const int digito = u_isdigit(c) ? 1 : 0;
      const int alfanumerico = u_isalnum(c) ? 1 : 0;
      conMayuscula += mayuscula != c ? 1 : 0;
      conMinuscula += minuscula != c ? 1 : 0;
      digitos += digito;
      alfanumericos += alfanumerico;
      for (const UChar32 byte :
           {mayuscula & 0xFF, mayuscula >> 8, minuscula & 0xFF, minuscula >> 8, digito + 2 * alfanumerico}) {
        suma = (suma ^ static_cast<std::uint64_t>(byte)) * 0x100000001B3;
      }
    }
    texto += Formatea("%04X|%d|%d|%d|%d|%016llX\n", inicio, conMayuscula, conMinuscula, digitos,
                      alfanumericos, static_cast<unsigned long long>(suma));
  }
  return texto;
}

std::string Lee(const std::string& ruta) {
  std::ifstream archivo(ruta, std::ios::binary);
  return {std::istreambuf_iterator<char>(archivo), {}};
}

}  // namespace

int main(int argc, char** argv) {
  const bool compara = argc == 3 && std::string_view(argv[1]) == "--compara";
  if (argc != 2 && !compara) {
    std::fprintf(stderr, "genera_caracteres [--compara] <root of the sources>\n");
    return 1;
  }
  int codigo = 0;
  const std::pair<const char*, std::string> archivos[] = {{"platform/TablaCaracteres.h", Tabla()},
                                                          {"tests/data/textos/caracteres.txt", Referencia()}};
  for (const auto& [nombre, texto] : archivos) {
    const std::string ruta = std::string(argv[argc - 1]) + "/" + nombre;
    if (!compara) {
      std::ofstream archivo(ruta, std::ios::binary);
      archivo << texto;
      if (archivo.flush()) continue;
      std::fprintf(stderr, "cannot be written: %s\n", ruta.c_str());
      return 1;
    }
    const std::string escrito = Lee(ruta);
    if (escrito.find("Of " + std::string(kVersion)) == std::string::npos) {
      std::fprintf(stderr, "%s: of another version than this ICU's, %s\n", ruta.c_str(), kVersion.data());
      return 77;
    }
    if (escrito != texto) {
      std::fprintf(stderr, "%s: not what %s gives\n", ruta.c_str(), kVersion.data());
      codigo = 1;
    }
  }
  return codigo;
}

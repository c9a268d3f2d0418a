// Text functions against a plain copy of the text, character by character into a reserved string: the least
// that a function which looks at every character can do without special instructions.

#include <string>
#include <vector>

#include "Uutilext/text/Direcciones.h"
#include "Uutilext/text/Limpieza.h"
#include "benchmarks/Medicion.h"
#include "framework/Texto.h"

namespace {

using vel::UnicodeString;

UnicodeString Copia(const UnicodeString& texto) {
  UnicodeString copia;
  copia.reserve(texto.size());
  for (const char16_t c : texto) copia.push_back(c);
  return copia;
}

// What the functions give, written with the simplest means.
UnicodeString SinCaracteres(std::u16string_view texto, std::u16string_view quita) {
  UnicodeString salida;
  for (const char16_t c : texto) {
    if (quita.find(c) == std::u16string_view::npos) salida.push_back(c);
  }
  return salida;
}

UnicodeString Texto(std::size_t largo) {
  const std::u16string_view pieza = u"Av. Juárez & Peña #120  int. 4, entre Hidalgo y Morelos; ";
  UnicodeString texto;
  while (texto.size() < largo) texto.append(pieza);
  texto.resize(largo);
  return texto;
}

UnicodeString Sat(UnicodeString texto) {
  vel::QuitaCaracteresExtraniosSAT(texto);
  return texto;
}

}  // namespace

int main(int argc, char** argv) {
  const UnicodeString texto = Texto(5'000);
  medicion::Exige(Copia(texto) == texto, "Copia");
  medicion::Exige(Sat(texto) == SinCaracteres(texto, u",-_.:*;"), "QuitaCaracteresExtraniosSAT");
  medicion::Exige(vel::QuitaBlancos(texto) == SinCaracteres(vel::Trim(texto), u" "), "QuitaBlancos");
  std::size_t total = 0;
  const auto contra = [&](const char* nombre, UnicodeString (*funcion)(std::u16string_view)) {
    return medicion::Comparacion{.nombre = nombre,
                                 .propio = [&total, &texto, funcion] { total += funcion(texto).size(); },
                                 .par = [&total, &texto] { total += Copia(texto).size(); },
                                 .limite = 2,
                                 .nombrePar = "plain copy"};
  };
  std::vector<medicion::Comparacion> comparaciones{
      contra("QuitaBlancos", vel::QuitaBlancos),
      contra("DejaSoloUnEspacioEntrePalabras", vel::DejaSoloUnEspacioEntrePalabras),
      contra("MuestraAmpersAnd", vel::MuestraAmpersAnd), contra("RegresaCadAlfaNum", vel::RegresaCadAlfaNum),
      contra("DevuelveSoloNumeros", vel::DevuelveSoloNumeros)};
  comparaciones.push_back({.nombre = "QuitaCaracteresExtraniosSAT",
                           .propio = [&] { total += Sat(texto).size(); },
                           .par = [&] { total += Copia(texto).size(); },
                           .limite = 2,
                           .nombrePar = "plain copy"});
  return medicion::Ejecuta(argc, argv, std::move(comparaciones),
                           {{.nombre = "DividirDireccion per character",
                             .tamanos = {100, 1'000, 10'000},
                             .prepara =
                                 [&total](std::size_t n) {
                                   return [direccion = Texto(n), &total] {
                                     UnicodeString a, b, c, d, e;
                                     vel::DividirDireccion(direccion, a, b, c, d, e);
                                     total += a.size() + e.size();
                                   };
                                 },
                             .limite = 1.2}});
}

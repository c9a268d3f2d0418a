// Text functions against a plain copy of the text, character by character into a reserved string: the least
// that a function which looks at every character can do without special instructions. Capitals against ICU.

#include <cstdint>
#include <functional>
#include <iterator>
#include <random>
#include <string>
#include <unicode/uchar.h>
#include <vector>

#include "Uutilext/text/Correo.h"
#include "Uutilext/text/Direcciones.h"
#include "Uutilext/text/Limpieza.h"
#include "benchmarks/Medicion.h"
#include "framework/Numeros.h"
#include "framework/Texto.h"
#include "platform/Caracteres.h"

namespace {

using vel::UnicodeString;

UnicodeString Copia(const UnicodeString& texto) {
  UnicodeString copia;
  copia.reserve(texto.size());
  for (const char16_t c : texto) copia.push_back(c);
  return copia;
}

// What the functions give, written with the simplest means.
UnicodeString SoloSi(std::u16string_view texto, const std::function<bool(char16_t)>& pasa) {
  UnicodeString salida;
  for (const char16_t c : texto) {
    if (pasa(c)) salida.push_back(c);
  }
  return salida;
}

UnicodeString Repite(std::u16string_view texto, std::u16string_view viejo, std::u16string_view nuevo) {
  UnicodeString salida(texto);
  while (salida.find(viejo) != UnicodeString::npos) salida = vel::StringReplace(salida, viejo, nuevo);
  return salida;
}

// Different addresses, many of each domain.
UnicodeString Correos(std::size_t cuantos) {
  UnicodeString correos;
  for (std::size_t i = 0; i < cuantos; ++i) {
    const auto numero = static_cast<std::int64_t>(i);
    correos += u"usuario" + vel::IntToStr(numero) + u"@empresa" + vel::IntToStr(numero % 50) + u".com.mx;";
  }
  return correos;
}

// Pieces of addresses in no order, so that the processor cannot learn where the blanks are.
UnicodeString Texto(std::size_t largo) {
  const std::u16string_view piezas[] = {
      u"Av. Juárez ",        u"& Peña ",    u"#120  ",   u"int. 4, ", u"entre ",
      u"Hidalgo   y ",       u"Morelos; ",  u"C_12-B: ", u"ÑANDÚ ",   u"5 ",
      u"a Fraccionamiento ", u"2 de Abril*"};
  std::mt19937 azar(11);
  UnicodeString texto;
  while (texto.size() < largo) texto.append(piezas[azar() % std::size(piezas)]);
  texto.resize(largo);
  return texto;
}

UnicodeString MayusculasIcu(const UnicodeString& texto) {
  UnicodeString salida(texto);
  for (char16_t& c : salida) c = static_cast<char16_t>(u_toupper(c));
  return salida;
}

UnicodeString Sat(UnicodeString texto) {
  vel::QuitaCaracteresExtraniosSAT(texto);
  return texto;
}

}  // namespace

int main(int argc, char** argv) {
  const UnicodeString texto = Texto(5'000);
  medicion::Exige(Copia(texto) == texto, "Copia");
  const auto extranio = [](char16_t c) { return std::u16string_view(u",-_.:*;").find(c) < 7; };
  medicion::Exige(Sat(texto) == SoloSi(texto, [&](char16_t c) { return !extranio(c); }),
                  "QuitaCaracteresExtraniosSAT");
  medicion::Exige(vel::QuitaBlancos(texto) == Repite(vel::Trim(texto), u" ", u""), "QuitaBlancos");
  medicion::Exige(vel::DejaSoloUnEspacioEntrePalabras(texto) == Repite(vel::Trim(texto), u"  ", u" "),
                  "DejaSoloUnEspacioEntrePalabras");
  medicion::Exige(Repite(vel::MuestraAmpersAnd(texto), u"&&", u"&") == texto, "MuestraAmpersAnd");
  medicion::Exige(vel::DevuelveSoloNumeros(texto) == SoloSi(texto, vel::EsDigito), "DevuelveSoloNumeros");
  medicion::Exige(vel::RegresaCadAlfaNum(texto) ==
                      SoloSi(vel::Mayusculas(texto),
                             [](char16_t c) { return vel::EsAlfanumerico(c) || c == u'&' || c == u'@'; }),
                  "RegresaCadAlfaNum");
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
  UnicodeString griego;
  while (griego.size() < texto.size()) griego += u"όλοι οι άνθρωποι, Здравствуйте; ";
  const auto contraIcu = [&](const char* nombre, const UnicodeString& suyo) {
    medicion::Exige(vel::Mayusculas(suyo) == MayusculasIcu(suyo), nombre);
    comparaciones.push_back({.nombre = nombre,
                             .propio = [&total, &suyo] { total += vel::Mayusculas(suyo).size(); },
                             .par = [&total, &suyo] { total += MayusculasIcu(suyo).size(); },
                             .limite = 1,
                             .nombrePar = "bare ICU"});
  };
  contraIcu("Mayusculas", texto);
  contraIcu("Mayusculas, Greek and Cyrillic", griego);
  return medicion::Ejecuta(
      argc, argv, std::move(comparaciones),
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
        .limite = 1.2},
       {.nombre = "ValidarCorreo per different address",
        .tamanos = {200, 2'000, 20'000},
        .prepara = [](std::size_t n) { return [correos = Correos(n)] { vel::ValidarCorreo(correos); }; },
        .limite = 2}});
}

#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

#include "Uutilext/text/Claves.h"
#include "Uutilext/text/Correo.h"
#include "Uutilext/text/Direcciones.h"
#include "Uutilext/text/Limpieza.h"
#include "Uutilext/text/Listas.h"
#include "Uutilext/text/Mascaras.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "tests/Casos.h"
#include "tests/Mensaje.h"

namespace vel {
namespace {

using Textos = std::vector<UnicodeString>;

// What a function gives for the arguments of a case.
using Funcion = std::function<Textos(const Textos&)>;

Funcion Uno(UnicodeString (*funcion)(std::u16string_view)) {
  return [funcion](const Textos& a) { return Textos{funcion(a[0])}; };
}

const std::map<std::string, Funcion> kFunciones{
    {"FormateaValor", [](const Textos& a) { return Textos{FormateaValor(a[0], StrToInt(a[1]))}; }},
    {"FormateaValorCve", [](const Textos& a) { return Textos{FormateaValorCve(a[0], StrToInt(a[1]))}; }},
    {"Partes",
     [](const Textos& a) {
       return Textos{DameParteAlfanumerica(a[0]), IntToStr(DameParteNumerica(a[0]))};
     }},
    {"FormateaCveDocto", Uno(FormateaCveDocto)},
    {"FormateaFolioCxCP", [](const Textos& a) { return Textos{FormateaFolioCxCP(a[0], a[1])}; }},
    {"FormatoMiles", [](const Textos& a) { return Textos{FormatoMiles(StrToInt(a[0]), StrToInt(a[1]))}; }},
    {"p_mascarilla", [](const Textos& a) { return Textos{p_mascarilla(a[0], a[1]) ? u"sí" : u"no"}; }},
    {"DivideCadena",
     [](Textos a) {
       DivideCadena(a[0], a[1], StrToInt(a[2]));
       return Textos{a[0], a[1]};
     }},
    {"DividirDireccion",
     [](const Textos& a) {
       Textos r(5, u"?");
       DividirDireccion(a[0], r[0], r[1], r[2], r[3], r[4]);
       return r;
     }},
    {"DividePoblacion",
     [](const Textos& a) {
       Textos r(4, u"?");
       DividePoblacion(a[0], r[0], r[1], r[2], r[3]);
       return r;
     }},
    {"ValidarCorreo",
     [](const Textos& a) {
       ValidarCorreo(a[0]);
       return Textos{u""};
     }},
    {"QuitaCaracteresExtraniosSAT",
     [](Textos a) {
       QuitaCaracteresExtraniosSAT(a[0]);
       return a;
     }},
    {"DevuelveSoloNumeros", Uno(DevuelveSoloNumeros)},
    {"DejaSoloUnEspacioEntrePalabras", Uno(DejaSoloUnEspacioEntrePalabras)},
    {"QuitaBlancos", Uno(QuitaBlancos)},
    {"MuestraAmpersAnd", Uno(MuestraAmpersAnd)},
    {"RegresaCadAlfaNum", Uno(RegresaCadAlfaNum)}};

UnicodeString Sin(const std::string& campo) {
  return StringReplace(StringReplace(UTF8ToString(campo), u"\\t", u"\t"), u"\\n", u"\n");
}

TEST(Textos, GiveTheResultsOfTheCaseFile) {
  for (const std::vector<std::string>& caso : pruebas::Casos("textos/casos.txt", "|")) {
    const auto flecha = std::find(caso.begin(), caso.end(), "=>");
    ASSERT_NE(flecha, caso.end()) << caso[0];
    Textos argumentos(caso.size());
    const auto fin = std::transform(caso.begin() + 1, flecha, argumentos.begin(), Sin);
    argumentos.erase(fin, argumentos.end());
    Textos esperado;
    // The row ends in "|", so its last field is empty and no result.
    std::transform(flecha + 1, caso.end() - 1, std::back_inserter(esperado), Sin);
    Textos obtenido;
    const std::string error = pruebas::MensajeDe([&] { obtenido = kFunciones.at(caso[0])(argumentos); });
    if (error != "none") obtenido = {u"error: " + UTF8ToString(error)};
    EXPECT_EQ(obtenido, esperado) << caso[0] << ' ' << caso[1];
  }
}

TEST(Textos, RefuseAbsurdSizes) {
  EXPECT_EQ(FormateaValor(u"1", 1'000'000).size(), 1'000'000U);
  EXPECT_THROW(FormateaValor(u"1", 1'000'001), EInvalidOperation);
  EXPECT_THROW(FormatoMiles(1'000'001, 0), EInvalidOperation);
  EXPECT_THROW(FormatoMiles(1, 2'000'000'000), EInvalidOperation);
}

TEST(Textos, AreTestedAndCounted) {
  for (const char16_t c : std::u16string_view(u"\\/:*?\"<>|"))
    EXPECT_FALSE(EsSerieValida(UnicodeString(u"A") + c));
  EXPECT_TRUE(EsSerieValida(u"A-B") && EsSerieValida(u""));
  EXPECT_TRUE(DameTipoContribuyente(u"VECJ-880326 XX4"));
  EXPECT_FALSE(DameTipoContribuyente(u"ABC-680524-P76"));
  EXPECT_EQ(CuentaVecesStr(u"aa", u"aaaaa"), 2);
  EXPECT_EQ(CuentaVecesStr(u"", u"abc"), 0);
  EXPECT_EQ(CuentaVecesStr(u"ñ", u"ñañ"), 2);
}

TEST(DividirDireccion, TakesLongAddressesAndAnOutputThatHoldsTheAddress) {
  UnicodeString partes[5] = {u"Una calle bastante larga # 12 ENTRE Otra y Otra más"};
  DividirDireccion(partes[0], partes[0], partes[1], partes[2], partes[3], partes[4]);
  EXPECT_EQ(partes[0], u"Una calle bastante larga");
  EXPECT_EQ(partes[4], u"Otra más");
  for (const std::size_t n : {9'997U, 9'998U, 9'999U, 20'000U}) {
    const UnicodeString larga = UnicodeString(n, u'a') + u" # 5 " + UnicodeString(n, u'b') + u" Y c";
    DividirDireccion(larga, partes[0], partes[1], partes[2], partes[3], partes[4]);
    EXPECT_EQ(partes[0], UnicodeString(n, u'a'));
    EXPECT_EQ(partes[1], u"5 " + UnicodeString(n, u'b'));
    EXPECT_EQ(partes[4], u"c");
  }
}

}  // namespace
}  // namespace vel

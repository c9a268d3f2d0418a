#include "framework/Numeros.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <random>
#include <string>

#include "framework/DecimalCorto.h"
#include "framework/Excepciones.h"
#include "tests/Casos.h"
#include "tests/Mensaje.h"
#include "tests/Reales.h"

namespace vel {
namespace {

UnicodeString Resultado(const std::string& funcion, const std::string& argumento) try {
  const UnicodeString texto = UTF8ToString(argumento);
  if (funcion == "FloatToStr") return FloatToStr(pruebas::Real(argumento));
  if (funcion == "StrToFloat") return FloatToStr(StrToFloat(texto));
  if (funcion == "StrToInt") return IntToStr(StrToInt(texto));
  if (funcion == "StrToInt64") return IntToStr(StrToInt64(texto));
  return IntToStr(StrToBool(texto) ? 1 : 0);
} catch (const EConvertError&) {
  return u"error";
}

TEST(Numeros, GiveTheResultsOfTheCaseFile) {
  for (const auto& c : pruebas::Casos("textos/numeros.txt", "|"))
    EXPECT_EQ(UTF8Encode(Resultado(c.at(0), pruebas::Descifra(c.at(1)))), c.at(2)) << c[0] << ' ' << c[1];
}

// The C library's %.15g holds the same digits in another notation; reading both back must agree.
TEST(FloatToStr, HoldsTheDigitsOfPrintf) {
  std::mt19937_64 azar(7);
  for (int i = 0; i < 200'000; ++i) {
    double valor = 0;
    if (i % 2 == 0) {
      valor = static_cast<double>(static_cast<std::int64_t>(azar() % 2'000'000'000'000)) / 1e6 - 1e6;
    } else {
      valor = std::ldexp(static_cast<double>(azar()), static_cast<int>(azar() % 2000) - 1060);
    }
    char esperado[40];
    // printf's digits, whatever locale the host has set.
    *std::to_chars(esperado, esperado + sizeof esperado, valor, std::chars_format::general, 15).ptr = '\0';
    double leido = 0;
    ASSERT_TRUE(TryStrToFloat(FloatToStr(valor), leido)) << esperado;
    ASSERT_EQ(leido, pruebas::Real(esperado)) << esperado;
  }
}

TEST(StrToFloat, TakesLongTextsAndSaysWhichIsNone) {
  const auto ceros = [](std::size_t n) { return UnicodeString(n, u'0'); };
  EXPECT_EQ(StrToFloat(u"1" + ceros(300) + u"." + ceros(5000)), 1e300);
  EXPECT_EQ(StrToFloat(u"0." + ceros(400) + u"1e5"), 0) << "the exponent does not make up for the digits";
  double valor = 99;
  EXPECT_FALSE(TryStrToFloat(u"1" + ceros(400) + u"e-5", valor));
  EXPECT_EQ(valor, 99);
  EXPECT_EQ(pruebas::MensajeDe([] { StrToFloat(u"doce"); }),
            "'doce' no es un valor de punto flotante válido");
}

}  // namespace
// The short way writes what the standard library writes, or leaves it to that.
TEST(DecimalCorto, WritesTheShortestText) {
  std::mt19937_64 azar(3);
  int cortos = 0;
  const auto prueba = [&cortos](double valor) {
    std::string texto;
    if (!vel::AgregaDecimalCorto(texto, valor)) return texto.empty();
    ++cortos;
    std::array<char, 32> buf;
    return texto == std::string(buf.data(), std::to_chars(buf.data(), buf.data() + buf.size(), valor).ptr);
  };
  for (const double valor :
       {0.0, -0.0, 0.001, 0.000999, 1e-6, 99'999.0, 100'000.0, 1e6, 1'230'000.0, 999'999'999.999999, 1e9,
        std::nan(""), HUGE_VAL, -HUGE_VAL, 1.0 / 3, 0.1 + 0.2, 4.9e-324}) {
    for (const double v : {valor, -valor, std::nextafter(valor, 0.0), std::nextafter(valor, HUGE_VAL)}) {
      ASSERT_TRUE(prueba(v)) << v;
    }
  }
  for (int i = 0; i < 300'000; ++i) {
    const auto entero = static_cast<double>((azar() % 1'000'000'000'000'000U) >> azar() % 50);
    const double valor = entero / std::pow(10.0, static_cast<double>(azar() % 8));
    for (const double v : {valor, std::nextafter(valor, 0.0)}) ASSERT_TRUE(prueba(v)) << v;
  }
  EXPECT_GT(cortos, 100'000);
}

}  // namespace vel

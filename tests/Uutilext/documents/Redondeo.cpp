#include "Uutilext/documents/Redondeo.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <span>
#include <stdexcept>
#include <vector>

#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "tests/Casos.h"
#include "tests/Reales.h"

namespace vel {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

TEST(Redondeo, GivesTheResultsOfTheCaseFile) {
  for (const auto& c : pruebas::Casos("documentos/redondeo.txt", "|")) {
    ASSERT_EQ(c.size(), 4U);
    const double valor = StrToFloat(UTF8ToString(c[1]));
    const double argumento = c[2].empty() ? 0 : StrToFloat(UTF8ToString(c[2]));
    const double r = c[0] == "Redondea"    ? Redondea(valor, static_cast<int>(argumento))
                     : c[0] == "Redondea8" ? Redondea8(valor, argumento)
                     : c[0] == "Redondea4" ? Redondea4(valor)
                     : c[0] != "g_redoTo"  ? throw std::runtime_error("no function " + c[0])
                                           : g_redoTo(valor, static_cast<int>(argumento));
    EXPECT_EQ(std::bit_cast<std::uint64_t>(r), std::bit_cast<std::uint64_t>(StrToFloat(UTF8ToString(c[3]))))
        << c[0] << ' ' << c[1] << ' ' << c[2] << " gave " << r;
  }
  EXPECT_EQ(g_redoTo(kInf, 2), kInf);
  EXPECT_TRUE(std::isnan(g_redoTo(kNaN, 2)));
  EXPECT_THROW(g_redoTo(1.5e308, 2), EConvertError);
}

TEST(Compara, CountsTheBoundaryAsEqual) {
  EXPECT_TRUE(Compara(1.0, 1.000001));
  EXPECT_FALSE(Compara(1.0, 1.0000011));
  EXPECT_TRUE(Compara(0, -0.000001));
  EXPECT_FALSE(Compara(kNaN, kNaN));
}

// The rounding done on texts.
double PorTexto(double valor, int n) {
  const auto texto = FloatToStr(valor);
  const auto punto = texto.find(u'.');
  if (n <= 0 || punto == UnicodeString::npos) return valor;
  if (texto.size() - punto - 1 <= static_cast<std::size_t>(n)) return valor;
  const double p = StrToFloat(u"1E-" + IntToStr(n));
  const auto w = FloatToStr(valor < 0 ? valor / p - 0.5 : valor / p + 0.5);
  return StrToFloat(w.substr(0, w.find(u'.'))) * p;
}

TEST(GRedoTo, EqualsTheTextRuleBitForBit) {
  std::mt19937_64 azar(20240515);
  const auto entero = [&azar](std::int64_t maximo) {
    return static_cast<double>(static_cast<std::int64_t>(azar() % static_cast<std::uint64_t>(maximo)));
  };
  // Where one way of rounding gives way to another.
  const auto esquinas = pruebas::Casos("documentos/esquinas.txt", "|");
  std::array<std::vector<double>, 24> columnas;
  for (int i = 0; i < 400'000; ++i) {
    const int n = 1 + static_cast<int>(azar() % (i % 7 == 0 ? 23 : 9));
    const double unidad = std::pow(10, n);
    // Amounts, halves, the fifteenth digit, just below a whole number of units, and all magnitudes.
    const double formas[] = {
        entero(1'000'000'000'000) / 1e6, (entero(100'000'000) + 0.5) / unidad,
        entero(2'000'000'000'000'000) / std::pow(10, static_cast<double>(azar() % 16)),
        (entero(1'000'000'000) + 1 - std::ldexp(1.0, -static_cast<int>(azar() % 53))) / unidad,
        std::ldexp(entero(1LL << 53), static_cast<int>(azar() % 400) - 250)};
    double valor = formas[i % 5];
    // The neighbours of halves.
    if (i % 10 == 6) valor = std::nextafter(valor, i % 4 == 0 ? kInf : 0);
    if (i % 64 == 0) valor = pruebas::Real(esquinas[static_cast<std::size_t>(azar() % esquinas.size())][0]);
    if (azar() % 2 == 0) valor = -valor;
    columnas[static_cast<std::size_t>(n)].push_back(valor);
    ASSERT_EQ(std::bit_cast<std::uint64_t>(g_redoTo(valor, n)),
              std::bit_cast<std::uint64_t>(PorTexto(valor, n)))
        << UTF8Encode(FloatToStr(valor)) << ", " << n;
    ASSERT_EQ(RoundToText(valor), StrToFloat(FloatToStr(valor))) << UTF8Encode(FloatToStr(valor));
  }
  // Columns give what single calls give.
  for (int n = 0; n < 24; ++n) {
    std::vector<double>& columna = columnas[static_cast<std::size_t>(n)];
    columna.insert(columna.end(), {kInf, 0.0, -kInf, -0.0, 2.5});
    std::vector<double> salida(columna.size());
    g_redoTo(columna, n, salida);
    g_redoTo(columna, -n, columna);
    for (std::size_t i = 0; i < salida.size(); ++i) {
      ASSERT_EQ(std::bit_cast<std::uint64_t>(salida[i]),
                std::bit_cast<std::uint64_t>(g_redoTo(columna[i], n)))
          << UTF8Encode(FloatToStr(columna[i])) << ", " << n;
    }
  }
  std::vector<double> iguales{1.005, 1.5e308};
  EXPECT_THROW(g_redoTo(iguales, 2, iguales), EConvertError);
  EXPECT_EQ(iguales[0], 1.005) << "whole or nothing";
  EXPECT_THROW(g_redoTo(iguales, 2, std::span(iguales).first(1)), EInvalidOperation);
}

}  // namespace
}  // namespace vel

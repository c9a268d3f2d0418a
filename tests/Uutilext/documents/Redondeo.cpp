#include "Uutilext/documents/Redondeo.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <random>

#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

TEST(Redondea, RoundsTwice) {
  const struct {
    double valor;
    int decimales;
    double esperado;
  } casos[] = {{2.675, 2, 2.68},
               {-2.675, 2, -2.68},
               {1.005, 2, 1.01},
               {1234.5, -1, 1240},
               {0.444444445, 8, 0.444444445},
               {1.0, 9, 0.1},
               {1.0, 10, 0.01},
               {0.12345675, 7, 0.1234568},
               {1.2344445, 6, 1.234445},
               {-7.5, 0, -8},
               {1e15 / 3, 3, 333333333333333.313},
               {0, 2, 0}};
  for (const auto& c : casos)
    EXPECT_EQ(Redondea(c.valor, c.decimales), c.esperado) << c.valor << ", " << c.decimales;
  EXPECT_EQ(Redondea(0.1 + 0.2, 8), 0.1 + 0.2) << "eight decimals return the value unchanged";
}

TEST(Compara, CountsTheBoundaryAsEqual) {
  EXPECT_TRUE(Compara(1.0, 1.000001));
  EXPECT_FALSE(Compara(1.0, 1.0000011));
  EXPECT_TRUE(Compara(0, -0.000001));
  EXPECT_FALSE(Compara(kNaN, kNaN));
}

TEST(Redondea8, RoundsHalvesUpward) {
  EXPECT_EQ(Redondea8(7.3, 0), 7.3);
  EXPECT_EQ(Redondea8(7.3, -0.000001), 7.3);
  EXPECT_EQ(Redondea8(7.25, 0.5), 7.5);
  EXPECT_EQ(Redondea8(-7.25, 0.5), -7.0);
  EXPECT_EQ(Redondea8(-2.5, 1), -2);
  EXPECT_EQ(Redondea8(2.499999995, 1), 3) << "the nudge";
}

TEST(Redondea4, KeepsFiveDecimals) {
  EXPECT_EQ(Redondea4(0.123455), 0.12346);
  EXPECT_EQ(Redondea4(1.2345649), 1.23456);
  EXPECT_EQ(Redondea4(-0.000005), 0);
}

TEST(GRedoTo, FollowsTheText) {
  const struct {
    double valor;
    int decimales;
    double esperado;
  } casos[] = {{1.23, 2, 1.23},
               {1.235, 2, 124 * 0.01},
               {-1.235, 2, -124 * 0.01},
               {5, 2, 5},
               {1.999, 0, 1.999},
               {1.999, -1, 1.999},
               {0.1 + 0.2, 1, 0.1 + 0.2},  // its text is 0.3
               {0.30000000000001, 1, 3 * 0.1},
               {2.5, 1, 2.5},
               {0.005, 2, 0.01},
               {-0.004, 2, -0.0},
               {1e-7, 2, 1e-7},  // "1E-7" holds no point
               {1.5e-7, 2, 0},   // "1.5E-7" has four characters after it
               {1.5e-7, 4, 1.5e-7},
               {1.23456789012345e15, 2, 1 * 0.01},
               {kInf, 2, kInf}};
  for (const auto& c : casos) {
    const double r = g_redoTo(c.valor, c.decimales);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(r), std::bit_cast<std::uint64_t>(c.esperado))
        << c.valor << ", " << c.decimales << " gave " << r;
  }
  EXPECT_TRUE(std::isnan(g_redoTo(kNaN, 2)));
  EXPECT_THROW(g_redoTo(1.5e308, 2), EConvertError);
}

// The rule as it is written, on texts.
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
  for (int i = 0; i < 400'000; ++i) {
    const int n = 1 + static_cast<int>(azar() % 9);
    double valor = 0;
    switch (i % 5) {
      case 0:
        valor = entero(1'000'000'000'000) / 1e6;
        break;
      case 1:  // halves and their neighbours
        valor = (entero(100'000'000) + 0.5) / std::pow(10, n);
        if (i % 2 == 0) valor = std::nextafter(valor, i % 4 == 0 ? kInf : 0);
        break;
      case 2:  // the fifteenth digit
        valor = entero(2'000'000'000'000'000) / std::pow(10, static_cast<double>(azar() % 16));
        break;
      case 3:  // just below a whole number of units
        valor =
            (entero(1'000'000'000) + 1 - std::ldexp(1.0, -static_cast<int>(azar() % 53))) / std::pow(10, n);
        break;
      default:
        valor = std::ldexp(entero(1LL << 53), static_cast<int>(azar() % 400) - 250);
    }
    if (azar() % 2 == 0) valor = -valor;
    ASSERT_EQ(std::bit_cast<std::uint64_t>(g_redoTo(valor, n)),
              std::bit_cast<std::uint64_t>(PorTexto(valor, n)))
        << UTF8Encode(FloatToStr(valor)) << ", " << n;
    ASSERT_EQ(RoundToText(valor), StrToFloat(FloatToStr(valor))) << UTF8Encode(FloatToStr(valor));
  }
}

}  // namespace
}  // namespace vel

#include "Uformula/Potencia.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace vel::formula {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// What GNU MPFR gives, to nearest. The first are the nearest to a middle of two doubles among many millions,
// the others lie at the ends of the range: doubles of fewer bits, and what rounds to infinity or to zero.
constexpr double kCasos[][3] = {{0x1.111a11233df2bp+0, 154, 0x1.4a4226dfd5b5cp+14},
                                {0x1.20498d11cbda6p+0, 136 / 12.0, 0x1.ebdd8ce90b82fp+1},
                                {0x1.84e4bd7ce926fp+2, -0x1.756b69e80eaa2p+4, 0x1.2f271e6de243fp-61},
                                {0x1.ffffffff7aee8p-1, -0x1.66ff31a2807aap+39, 0x1.3c04e42a05e16p+67},
                                {0x1.0000000000003p+0, 0x1.76cf706a96a54p+57, 0x1.b67abb4dd1e2cp+202},
                                {0x1.dba6795f9dc86p+1, 3, 0x1.9a8278a59eb52p+5},
                                {0x1.53a19d9beead6p+15, -0x1.0b6586bfe3611p+6, 0x0.00fffffffffffp-1022},
                                {0x1.8p-214, 5, 0x0.000000000007ap-1022},
                                {0.5, 1075, 0},
                                {0x1.0000000000001p-1, 1075, 0x1p-1074},
                                {0x1.fffffffffffffp-1, 0x1.74p+62, 0x1p-1073},
                                {0x3p-1074, 0.3, 0x1.35dd0a9edf0a3p-322},
                                {0x1.bf7d7912e5682p+9, 0x1.a1b738f87f41bp+6, kInf},
                                {0x1.fffffffffffffp+1023, -1, 0x1p-1024},
                                {-2, 1025, -kInf},
                                {7, 0x1p-1074, 1}};
// Annex F of the C standard.
constexpr double kEspeciales[][3] = {{kNaN, 0, 1},        {1, kNaN, 1},       {kNaN, 1, kNaN},
                                     {-8, 1 / 3.0, kNaN}, {-1, kInf, 1},      {-1, 0x1.fffffffffffffp+52, -1},
                                     {0.5, -kInf, kInf},  {-2, -kInf, 0},     {0, -0.5, kInf},
                                     {-0.0, -3, -kInf},   {-0.0, -2.5, kInf}, {-0.0, 3, -0.0},
                                     {-0.0, 2, 0},        {-kInf, 0.5, kInf}, {-kInf, -3, -0.0}};

TEST(Potencia, IsTheNearestDouble) {
  const auto revisa = [](const auto& casos) {
    for (const auto& [base, exponente, esperada] : casos) {
      const double obtenida = Potencia(base, exponente);
      EXPECT_TRUE(std::isnan(esperada)
                      ? std::isnan(obtenida)
                      : std::bit_cast<std::uint64_t>(obtenida) == std::bit_cast<std::uint64_t>(esperada))
          << base << " ^ " << exponente << " gave " << obtenida;
    }
  };
  revisa(kCasos);
  revisa(kEspeciales);
}

// Numbers of 54 bits, the last one set, are what the conversion of whole numbers rounds too.
TEST(Potencia, RoundsMiddlesToEven) {
  for (std::uint64_t n = 208'065; n < 262'144; n += 2) {
    const auto esperada = static_cast<double>(n * n * n);
    const auto base = static_cast<double>(n);
    ASSERT_EQ(Potencia(base, 3), esperada) << n;
    ASSERT_EQ(Potencia(base * base, 1.5), esperada) << n;
    ASSERT_EQ(Potencia(-base / 0x1p300, 3), -esperada / 0x1p900) << n;
  }
}

// A sum of 300,000 powers over the whole range, as GNU MPFR gives them.
TEST(Potencia, IsTheReferencesEverywhere) {
  std::mt19937_64 azar(366);
  std::uint64_t suma = 0;
  const auto anade = [&suma](double potencia) {
    suma = (suma ^ std::bit_cast<std::uint64_t>(potencia)) * 0x100000001B3;
  };
  for (int i = 0; i < 100'000; ++i) {
    const double mantisa = 1 + static_cast<double>(azar() >> 12) * 0x1p-52;
    const double base = std::ldexp(mantisa, static_cast<int>(azar() % 41) - 20);
    anade(Potencia(base, static_cast<double>(azar() >> 11) * 0x1p-46 - 64));
    const double tasa = 1 + static_cast<double>(azar() % 200'000) / 1e6;
    anade(Potencia(tasa, static_cast<double>(azar() % 361) / 12));
    anade(Potencia(1 + (mantisa - 1.5) * 0x1p-7, static_cast<double>(azar() >> 11) * 0x1p-35 - 0x1p17));
  }
  EXPECT_EQ(suma, 0xCC7934DF81BFA60Bu);
}

}  // namespace
}  // namespace vel::formula

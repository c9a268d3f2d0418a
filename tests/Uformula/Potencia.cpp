#include "Uformula/Potencia.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <string>

#include "tests/Casos.h"

namespace vel::formula {
namespace {

double Numero(const std::string& texto) {
  double valor = 0;
  const bool hexadecimal = texto.find('p') != std::string::npos;
  const auto forma = hexadecimal ? std::chars_format::hex : std::chars_format::general;
  std::from_chars(texto.data(), texto.data() + texto.size(), valor, forma);
  return valor;
}

TEST(Potencia, IsTheNearestDouble) {
  for (const auto& c : pruebas::Casos("formulas/potencias.txt", "|")) {
    const double esperada = Numero(c.at(2));
    const double obtenida = Potencia(Numero(c[0]), Numero(c[1]));
    EXPECT_TRUE(std::isnan(esperada)
                    ? std::isnan(obtenida)
                    : std::bit_cast<std::uint64_t>(obtenida) == std::bit_cast<std::uint64_t>(esperada))
        << c[0] << " ^ " << c[1] << " gave " << obtenida;
  }
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

// Amounts as people read them.

#include "facil/Montos.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

#include "Uutilext/documents/Redondeo.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "tests/Casos.h"
#include "tests/Mensaje.h"
#include "tests/Reales.h"

namespace {

using namespace vel::facil;
using vel::TMontoFiscal;
using vel::UTF8Encode;

constexpr double kInfinito = std::numeric_limits<double>::infinity();

TEST(Montos, HaveThousandsAndAllTheirDecimals) {
  for (const auto& c : pruebas::Casos("facil/montos.txt", "|"))
    EXPECT_EQ(UTF8Encode(FormateaMonto(pruebas::Real(c.at(0)), std::stoi(c.at(1)))), c.at(2)) << c[0];
  EXPECT_EQ(FormateaMonto(1e300, 0).size(), 401U);
  EXPECT_EQ(FormateaMonto(TMontoFiscal{-123456785, 6}), u"-123.456785");
  EXPECT_EQ(FormateaMonto(TMontoFiscal{std::numeric_limits<std::int64_t>::min(), 3}, 2),
            u"-9,223,372,036,854,775.81");
  for (const double valor : {kInfinito, -kInfinito, std::numeric_limits<double>::quiet_NaN()})
    EXPECT_THROW(FormateaMonto(valor), vel::EInvalidOperation);
  for (const int decimales : {-1, 19}) EXPECT_THROW(FormateaMonto(1, decimales), vel::EInvalidOperation);
}

TEST(Montos, AreRoundedAsTheSuiteRounds) {
  std::mt19937_64 azar(20261121);
  for (int i = 0; i < 100'000; ++i) {
    const int decimales = 1 + static_cast<int>(azar() % 6);
    // Halves of the last decimal, and numbers that are none.
    const auto entero =
        static_cast<double>(static_cast<std::int64_t>(azar() % 20'000'000'000) - 10'000'000'000);
    const double valor = i % 2 == 0 ? entero / 2 / std::pow(10, decimales) : entero / 7e5;
    const auto sinComas = vel::StringReplace(FormateaMonto(valor, decimales), u",", u"");
    ASSERT_EQ(vel::StrToFloat(sinComas), vel::RoundToText(vel::g_redoTo(valor, decimales))) << valor;
  }
}

TEST(Montos, AreWrittenInWords) {
  for (const auto& c : pruebas::Casos("facil/letras.txt", "|")) {
    const double valor = vel::StrToFloat(vel::UTF8ToString(c[0]));
    EXPECT_EQ(UTF8Encode(MontoEnLetra(valor, DameMoneda(c[1]))), c[2]) << c[0];
  }
  EXPECT_EQ(MontoEnLetra(TMontoFiscal{120050, 2}), u"UN MIL DOSCIENTOS PESOS 50/100 M.N.");
  EXPECT_EQ(MontoEnLetra(1, {"PUNTO", u"PUNTOS", ""}), u"UN PUNTO 00/100");
  EXPECT_EQ(pruebas::MensajeDe([] { MontoEnLetra(-9999999999999.996); }),
            "El monto -10,000,000,000,000.00 no se escribe con letra: pasa de 9,999,999,999,999.99");
  EXPECT_THROW(MontoEnLetra(kInfinito), vel::EInvalidOperation);
  EXPECT_THROW(DameMoneda("usd"), vel::EInvalidOperation);
}

}  // namespace

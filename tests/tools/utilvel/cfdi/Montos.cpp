#include "tools/utilvel/cfdi/Montos.h"

#include <gtest/gtest.h>
#include <string>

#include "tests/Casos.h"
#include "tests/Mensaje.h"
#include "tools/utilvel/cfdi/Comprobante.h"

namespace utilvel::cfdi {
namespace {

TMontoFiscal Exige(const char* texto) {
  const Lectura lectura = LeeMonto(texto, kDecimalesEquivalencia);
  EXPECT_EQ(lectura.falla, nullptr) << texto;
  return lectura.monto;
}

TEST(Montos, AreReadAsTheyArePrinted) {
  for (const auto& caso : pruebas::Casos("cfdi/montos.txt", "|")) {
    const Lectura lectura = LeeMonto(pruebas::Descifra(caso.at(0)), kDecimales);
    EXPECT_EQ(lectura.falla == nullptr ? Texto(lectura.monto) : lectura.falla, caso.at(1)) << caso[0];
  }
}

TEST(Montos, AreRoundedOnceHalvesAwayFromZeroBeyond64Bits) {
  EXPECT_EQ(Texto(Redondea(1'004'999, 6, 2)), "1.00");
  EXPECT_EQ(Texto(Redondea(1'005'000, 6, 2)), "1.01");
  EXPECT_EQ(Texto(Redondea(-1'005'000, 6, 2)), "-1.01");
  const Entero128 enorme = Multiplica(9'223'372'036'854'775'807, 9'000'000'000'000'000'000);
  EXPECT_TRUE(DivideRedondea(enorme, 9'000'000'000'000'000'000) == 9'223'372'036'854'775'807);
  EXPECT_EQ(pruebas::MensajeDe([&] { Multiplica(enorme, 10); }),
            "Un importe es demasiado grande para verificarse exacto");
  EXPECT_EQ(pruebas::MensajeDe([&] { Redondea(enorme, 6, 2); }),
            "Un importe es demasiado grande para verificarse exacto");
  EXPECT_EQ(Compara({100, 2}, {1, 0}), 0);
  EXPECT_EQ(Compara({101, 2}, {1, 0}), 1);
  EXPECT_EQ(Texto(Resta({1, 0}, {1'000'001, 6})), "-0.000001");
}

TEST(Montos, OfAnotherCurrencyHaveTheMarginOfTheirPrintedDigits) {
  SumaConMargen suma;
  suma.Agrega(Exige("1160.00"), Exige("1.000"));
  EXPECT_FALSE(suma.ConMargen());
  EXPECT_EQ(Texto(suma.Superior(2)), "1160.00");
  // 100 / 0.048, between 99.995 / 0.0485 and 100.005 / 0.0475.
  suma.Agrega(Exige("100.00"), Exige("0.048"));
  EXPECT_TRUE(suma.ConMargen());
  EXPECT_EQ(Texto(suma.Redondeada(6)), "3243.333333");
  EXPECT_EQ(Texto(suma.Inferior(2)), "3221.75");
  EXPECT_EQ(Texto(suma.Superior(2)), "3265.37");
  // Three thirds of a cent are a cent.
  SumaConMargen tercios;
  for (int i = 0; i < 3; ++i) tercios.Agrega(Exige("0.01"), Exige("3.0000000000"));
  EXPECT_EQ(Texto(tercios.Redondeada(6)), "0.010000");
}

TEST(Montos, HaveTheDecimalsOfTheirCurrency) {
  for (const auto& caso : pruebas::Casos("cfdi/monedas.txt", "|"))
    EXPECT_EQ(DecimalesMoneda(caso.at(0)), std::stoi(caso.at(1))) << caso[0];
}

}  // namespace
}  // namespace utilvel::cfdi

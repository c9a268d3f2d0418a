#include "tools/utilvel/cfdi/Montos.h"

#include <gtest/gtest.h>
#include <string>

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
  const struct {
    const char* texto;
    TMontoFiscal monto;
    std::string falla;
  } casos[] = {
      {"10.50", {1050, 2}, ""},
      {" 7\n", {7, 0}, ""},
      {".5", {5, 1}, ""},
      {"5.", {5, 0}, ""},
      {"0.000001", {1, 6}, ""},
      {"9223372036854.775807", {9'223'372'036'854'775'807, 6}, ""},
      {"9223372036854", {9'223'372'036'854, 0}, ""},
      {"9223372036854.775808", {}, "es demasiado grande"},
      {"9223372036855", {}, "es demasiado grande"},
      {"99999999999999999999999999", {}, "es demasiado grande"},
      {"0.0000001", {}, "tiene demasiados decimales"},
      {"", {}, "no es un número sin signo"},
      {".", {}, "no es un número sin signo"},
      {"-1", {}, "no es un número sin signo"},
      {"1e3", {}, "no es un número sin signo"},
      {"1,000", {}, "no es un número sin signo"},
      {"1.2.3", {}, "no es un número sin signo"},
  };
  for (const auto& caso : casos) {
    const Lectura lectura = LeeMonto(caso.texto, kDecimales);
    EXPECT_EQ(lectura.falla == nullptr ? "" : lectura.falla, caso.falla) << caso.texto;
    EXPECT_EQ(lectura.falla == nullptr ? lectura.monto : TMontoFiscal(), caso.monto) << caso.texto;
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
  const struct {
    const char* moneda;
    int decimales;
  } casos[] = {{"MXN", 2}, {"USD", 2}, {"BHD", 3}, {"CLF", 4}, {"JPY", 0},
               {"TND", 3}, {"XXX", 0}, {"", 2},    {"ZZZ", 2}};
  for (const auto& caso : casos) EXPECT_EQ(DecimalesMoneda(caso.moneda), caso.decimales) << caso.moneda;
}

}  // namespace
}  // namespace utilvel::cfdi

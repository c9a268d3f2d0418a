#include "Ucalculocfdi/TCalculoCFDI.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <utility>

#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "tests/Mensaje.h"
#include "tests/Ucalculocfdi/Partidas.h"

namespace vel {
namespace {

using namespace pruebas;

using Calculo = Motor;

TEST(TCalculoCFDI, StartsWithItsDefaults) {
  const TCalculoCFDI calculo(ENUM_MODULO::MODULO_COMPRAS, ENUM_PROC_FACTCOMP::PROC_POR_DOCUMENTO,
                             TIPO_DOCTO::TD_COMPRA);
  EXPECT_EQ(calculo.TipoDocto, TIPO_DOCTO::TD_COMPRA);
  EXPECT_TRUE(calculo.SubtotalSimple);
  EXPECT_FALSE(calculo.IgnoraTipoCambio);
  for (const bool incluye : calculo.IncluyeImpuesto) EXPECT_TRUE(incluye);
  EXPECT_EQ(calculo.DecimalesTotales, 2);
  EXPECT_EQ(calculo.DecimalesPartida, 6);
  for (const int fuera : {-1, 8}) EXPECT_EQ(calculo.GetTotalImpuesto(fuera), 0);
  for (const int fuera : {-1, 3}) EXPECT_EQ(calculo.GetTotalDescuento(fuera), 0);
}

TEST(Impuestos, TakeTheirBaseFromTheCode) {
  Calculo calculo({Iva(0, 100)});
  const double bases[] = {100, 101, 103, 106, 110, 115, 121, 128};
  for (int codigo = 0; codigo < 8; ++codigo) {
    calculo.InicializaValores();
    calculo.ImpuestoPartida = {1, 2, 3, 4, 5, 6, 7, 0};
    EXPECT_EQ(calculo.AplicaImpuesto(100, 10, codigo, 7), bases[codigo] / 100 * 10);
  }
  calculo.InicializaValores();
  EXPECT_EQ(calculo.AplicaImpuesto(100, 10, 8, 0), 0);
  EXPECT_EQ(calculo.AplicaImpuesto(100, 10, -1, 0), 0);
  EXPECT_THROW(calculo.AplicaImpuesto(100, 10, 0, 8), EInvalidOperation);
  EXPECT_THROW(calculo.AplicaImpuAdicIEPS(u"M", 100, 10, 0, -1), EInvalidOperation);
  // A quota alone replaces what the line's tax was.
  Calculo cuota({Mas(Iva(0, 100), {{u"MTO_CUOTA", Variant(5.0)}})});
  cuota.ImpuestoPartida[2] = 7;
  EXPECT_EQ(cuota.AplicaImpuAdicIEPS(u"C", 100, 10, 0, 2), 5);
  // One that is applied in no known way leaves it.
  for (const char16_t* modo : {u"", u"X", u"MC"}) EXPECT_EQ(cuota.AplicaImpuAdicIEPS(modo, 100, 10, 0, 2), 5);
}

TEST(Totales, AddToTheListsOfTheCalculationBefore) {
  Calculo calculo({Iva(16, 100), Iva(16, 50), Iva(8, 10)});
  calculo.CalculaTotales();
  calculo.CalculaTotales();
  EXPECT_EQ(ListaDe(calculo, 1), "16: 300 + 48; 8: 20 + 1.6");
  EXPECT_EQ(calculo.GetTotalImpuesto(0), 49.6);
  EXPECT_EQ(calculo.Subtotal, 160);
}

// Fields are looked up again when the lines have others, or others are asked for.
TEST(Totales, GoFromOneDocumentToTheNextInOneObject) {
  Calculo calculo({Iva(16, 100)});
  const auto totales = [&calculo] {
    for (TStringList& lista : calculo.ListaImpuesto) lista.Clear();
    calculo.CalculaTotales();
    return UTF8Encode(FloatToStr(calculo.Subtotal) + u" " + FloatToStr(calculo.TotalImpuesto[0]));
  };
  EXPECT_EQ(totales(), "100 16");
  calculo.Partidas.EmptyDataSet();
  calculo.SetPartidas(Lineas({Iva(8, 10)}));
  EXPECT_EQ(totales(), "10 0.8");
  calculo.Modulo = ENUM_MODULO::MODULO_COMPRAS;
  EXPECT_EQ(totales(), "10 3.2") << "on the cost";
  calculo.Partidas = Lineas({Mas(Iva(50, 20), {{u"ANTES", Variant(7.0)}, {u"COST", Variant(30.0)}})});
  EXPECT_EQ(totales(), "20 15");
  calculo.Partidas.Close();
  calculo.SetPartidas(Lineas({Iva(16, 5)}, u"IMP1APLA"));
  EXPECT_EQ(totales(), "5 0");
  // Lines of fewer fields add to those that stand.
  calculo.Partidas = Lineas({Iva(16, 5)});
  calculo.SetPartidas(Lineas({Iva(16, 3)}, u"IMP1APLA"));
  EXPECT_EQ(totales(), "8 12.8") << "a null code is 0";
}

TEST(Totales, WorkOnTheListsThatCallersHold) {
  Calculo calculo({Iva(16, 100), Iva(8, 10)});
  calculo.LlenaListImpuestos(50, 16, 8, 1);
  TStringList* lista = nullptr;
  calculo.DameListImpuestos(lista, 1);
  const auto& montos = dynamic_cast<const TStringList&>(*lista->Objects(0));
  calculo.CalculaTotales();
  EXPECT_EQ(lista->Count(), 2U);
  EXPECT_EQ(montos[0] + u" " + montos[1], u"150 24");
  lista->Clear();
  calculo.CalculaTotales();
  EXPECT_EQ(ListaDe(calculo, 1), "16: 100 + 16; 8: 10 + 0.8");
  EXPECT_EQ(calculo.GetTotalImpuesto(0), 16.8);
  for (const auto& [tasa, numero] : {std::pair{0.0, 1}, {16.0, 0}, {16.0, 9}})
    calculo.LlenaListImpuestos(50, tasa, 8, numero);
  for (const int numero : {0, 9}) {
    TStringList* ninguna = nullptr;
    calculo.DameListImpuestos(ninguna, numero);
    EXPECT_EQ(ninguna, nullptr);
  }
  // What divides by zero stays what it is however often it is added to.
  constexpr double kInfinito = std::numeric_limits<double>::infinity();
  for (int vez = 0; vez < 3; ++vez) {
    calculo.LlenaListImpuestos(kInfinito, 16, -kInfinito, 2);
    calculo.LlenaListImpuestos(vez == 1 ? -kInfinito : kInfinito, 16, 1, 3);
  }
  EXPECT_EQ(ListaDe(calculo, 1), "16: 100 + 16; 8: 10 + 0.8");
  EXPECT_EQ(ListaDe(calculo, 2), "16: INF + -INF");
  EXPECT_EQ(ListaDe(calculo, 3), "16: NAN + 3");
  lista->Add(u"4");
  EXPECT_EQ(pruebas::MensajeDe([&] { calculo.CalculaTotales(); }),
            "La tasa '4' de una lista de impuestos no tiene sus montos");
}

TEST(Totales, RaiseForAMissingFieldWhenItIsRead) {
  const auto falla = [](std::u16string_view campo, const Partida& linea) {
    TCalculoCFDI calculo(ENUM_MODULO::MODULO_VENTAS, ENUM_PROC_FACTCOMP::PROC_NORMAL, TIPO_DOCTO::TD_FACTURA);
    calculo.SetPartidas(Lineas({linea}, campo));
    try {
      calculo.CalculaTotales();
    } catch (const EDatabaseError& e) {
      return UTF8Encode(e.Message());
    }
    return std::string("total ") + UTF8Encode(FloatToStr(calculo.TotalImpuestos));
  };
  const Partida iva = Iva(16, 100);
  TCalculoCFDI parcial(ENUM_MODULO::MODULO_VENTAS, ENUM_PROC_FACTCOMP::PROC_NORMAL, TIPO_DOCTO::TD_FACTURA);
  parcial.SetPartidas(Lineas({Mas(iva, {{u"IMP1APLA", Variant(4)}}), iva}, u"MAN_IEPS"));
  EXPECT_THROW(parcial.CalculaTotales(), EDatabaseError);
  EXPECT_EQ(parcial.Subtotal, 100) << "what the first line gave stays";
  EXPECT_EQ(falla(u"CVE_DOC", iva), "El campo 'CVE_DOC' no existe");
  EXPECT_EQ(falla(u"DESC3", iva), "El campo 'DESC3' no existe");
  EXPECT_EQ(falla(u"MAN_IEPS", iva), "El campo 'MAN_IEPS' no existe");
  EXPECT_EQ(falla(u"MTO_CUOTA", iva), "total 116") << "not read without a quota";
  EXPECT_EQ(falla(u"MTO_CUOTA", Mas(iva, {{u"MAN_IEPS", Variant(u"S")}, {u"APL_MAN_IMP", Variant(1)}})),
            "El campo 'MTO_CUOTA' no existe");
  EXPECT_EQ(falla(u"IMP1APLA", iva), "total 100") << "optional";
  EXPECT_EQ(falla(u"MAN_IEPS", {{u"PREC", Variant(100.0)}}), "total 100") << "no tax applies";
  EXPECT_EQ(falla(u"", Mas(iva, {{u"TIPO_ELEM", Variant(7)}})), "total 116")
      << "a number where a text stands";

  TCalculoCFDI vacio(ENUM_MODULO::MODULO_VENTAS, ENUM_PROC_FACTCOMP::PROC_NORMAL, TIPO_DOCTO::TD_FACTURA);
  vacio.CalculaTotales();
  EXPECT_EQ(vacio.TotalImpuestos, 0);
  Calculo texto({Mas(iva, {{u"CANT", Variant(u"doce")}})});
  EXPECT_THROW(texto.CalculaTotales(), EConvertError);
  Calculo cero({Mas(iva, {{u"TIP_CAM", Variant(0.0)}})});
  cero.CalculaTotales();
  EXPECT_FALSE(std::isfinite(cero.TotalImpuestos));
}

}  // namespace
}  // namespace vel

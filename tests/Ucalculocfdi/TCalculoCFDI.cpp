#include "Ucalculocfdi/TCalculoCFDI.h"

#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "tests/Ucalculocfdi/Partidas.h"

namespace vel {
namespace {

using namespace pruebas;

struct Calculo : TCalculoCFDI {
  explicit Calculo(const std::vector<Partida>& lineas, ENUM_MODULO modulo = ENUM_MODULO::MODULO_VENTAS,
                   int proceso = 0)
      : TCalculoCFDI(modulo, static_cast<ENUM_PROC_FACTCOMP>(proceso), TIPO_DOCTO::TD_FACTURA) {
    SetPartidas(Lineas(lineas));
  }
  // "tasa: base, impuesto; ..."
  std::string Lista(int numero) {
    TStringList* lista = nullptr;
    DameListImpuestos(lista, numero);
    if (lista == nullptr) return "none";
    std::string texto;
    for (std::size_t i = 0; i < lista->Count(); ++i) {
      const auto& montos = dynamic_cast<const TStringList&>(*lista->Objects(i));
      EXPECT_EQ(montos.Count(), 2U);
      texto += UTF8Encode(lista->Strings(i) + u": " + montos[0] + u", " + montos[1] + u"; ");
    }
    return texto;
  }
};

TEST(TCalculoCFDI, StartsWithItsDefaults) {
  const TCalculoCFDI calculo(ENUM_MODULO::MODULO_COMPRAS, ENUM_PROC_FACTCOMP::PROC_POR_DOCUMENTO,
                             TIPO_DOCTO::TD_COMPRA);
  EXPECT_EQ(calculo.TipoDocto, TIPO_DOCTO::TD_COMPRA);
  EXPECT_TRUE(calculo.SubtotalSimple);
  EXPECT_FALSE(calculo.IgnoraTipoCambio);
  for (const bool incluye : calculo.IncluyeImpuesto) EXPECT_TRUE(incluye);
  EXPECT_EQ(calculo.DecimalesTotales, 2);
  EXPECT_EQ(calculo.DecimalesPartida, 6);
  EXPECT_EQ(calculo.GetTotalImpuesto(8), 0);
  EXPECT_EQ(calculo.GetTotalDescuento(3), 0);
  EXPECT_EQ(calculo.GetTotalDescuento(-1), 0);
}

TEST(Impuestos, DiscountsDoNotCascadeAndTaxesDo) {
  Calculo uno({Mas(Iva(16, 50), {{u"CANT", Variant(2.0)}, {u"DESC1", Variant(10.0)}})});
  uno.CalculaTotales();
  EXPECT_EQ(uno.DescuentoPartida[0], 10);
  EXPECT_EQ(uno.ImpuestoPartida[0], 14.4);
  EXPECT_EQ(uno.Lista(1), "16: 90, 14.4; ");
  EXPECT_EQ(uno.TotalImpuestos, 104.4);

  Calculo cascada({Mas(Iva(8, 100), {{u"IMPU4", Variant(16.0)},
                                     {u"IMP4APLA", Variant(1)},
                                     {u"IMPU2", Variant(99.0)},
                                     {u"IMP2APLA", Variant(6)},
                                     {u"IMPU3", Variant(99.0)}})});
  cascada.CalculaTotales();
  EXPECT_EQ(cascada.ImpuestoPartida[0], 8);
  EXPECT_EQ(cascada.ImpuestoPartida[3], 108.0 / 100 * 16);
  EXPECT_EQ(cascada.Lista(2), "") << "code 6 does not apply";
  EXPECT_EQ(cascada.Lista(3), "") << "nor does a tax without a code";
  EXPECT_EQ(cascada.Lista(9), "none");

  Calculo tres(
      {Mas(Iva(0, 100), {{u"DESC1", Variant(10.0)}, {u"DESC2", Variant(10.0)}, {u"DESC3", Variant(10.0)}})});
  tres.CalculaTotales();
  EXPECT_EQ(tres.SumaDescuentos, 30);
  EXPECT_EQ(tres.TotalImpuestos, 70);
  EXPECT_EQ(tres.Lista(1), "") << "a zero rate makes no entry";
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
}

TEST(Cuota, FollowsItsModeAndOverwritesTheTotal) {
  const struct {
    const char16_t* modo;
    double tasa;
    double impuesto;
  } casos[] = {{u"M", 3, 5}, {u"M", 7, 7}, {u"C", 3, 5}, {u"A", 3, 8}, {u"X", 3, 0}, {u"m", 3, 0}};
  for (const auto& c : casos) {
    // An earlier line of 16 %, whose tax the quota line overwrites, and a later one, which adds to it.
    const Partida cuota = Mas(Iva(c.tasa, 100), {{u"MAN_IEPS", Variant(u"S")},
                                                 {u"APL_MAN_IMP", Variant(1)},
                                                 {u"APL_MAN_IEPS", Variant(c.modo)},
                                                 {u"MTO_CUOTA", Variant(5.0)}});
    Calculo calculo({Iva(16, 100), cuota});
    calculo.CalculaTotales();
    EXPECT_EQ(calculo.ImpuestoPartida[0], c.impuesto) << UTF8Encode(c.modo);
    Calculo misma({Iva(c.tasa, 1000), cuota, Iva(c.tasa, 200)});
    misma.CalculaTotales();
    EXPECT_EQ(misma.GetTotalImpuesto(0), c.impuesto + 2 * c.tasa) << UTF8Encode(c.modo);
  }
}

TEST(Totales, SumTheRoundedListWhenThereIsMoreThanOneRate) {
  Calculo calculo({Iva(16, 100), Iva(16, 50), Iva(8, 10)});
  calculo.CalculaTotales();
  EXPECT_EQ(calculo.Lista(1), "16: 150, 24; 8: 10, 0.8; ");
  EXPECT_EQ(calculo.GetTotalImpuesto(0), 24.8);
  EXPECT_EQ(calculo.Subtotal, 160);
  EXPECT_EQ(calculo.TotalImpuestos, 184.8);
  // Lists outlive the calculation and enter the totals of taxes with several rates.
  calculo.CalculaTotales();
  EXPECT_EQ(calculo.Lista(1), "16: 300, 48; 8: 20, 1.6; ");
  EXPECT_EQ(calculo.GetTotalImpuesto(0), 49.6);
  EXPECT_EQ(calculo.Subtotal, 160);

  Calculo una({Iva(16, 0.333333), Iva(16, 0.333333)});
  una.CalculaTotales();
  EXPECT_EQ(una.GetTotalImpuesto(0), 0.053333 + 0.053333) << "one rate: the six-decimal line taxes";
  EXPECT_EQ(una.TotalImpuestosRedondeado, 11 * 0.01);
  EXPECT_EQ(una.Subtotal, 67 * 0.01);
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
  EXPECT_EQ(calculo.Lista(1), "16: 100, 16; 8: 10, 0.8; ");
  EXPECT_EQ(calculo.GetTotalImpuesto(0), 16.8);
}

TEST(Totales, LeaveOutWhatDoesNotCount) {
  const struct {
    const char16_t* producto;
    const char16_t* elemento;
    double subtotal;
  } casos[] = {{u"P", u"K", 0},   {u"S", u"K", 0},   {u"G", u"N", 0},
               {u"P", u"N", 100}, {u"G", u"K", 100}, {u"K", u"K", 100}};
  for (const auto& c : casos) {
    Calculo calculo(
        {Mas(Iva(16, 100), {{u"TIPO_PROD", Variant(c.producto)}, {u"TIPO_ELEM", Variant(c.elemento)}})});
    calculo.CalculaTotales();
    EXPECT_EQ(calculo.Subtotal, c.subtotal) << UTF8Encode(c.producto) << UTF8Encode(c.elemento);
    EXPECT_EQ(calculo.GetTotalImpuesto(0), c.subtotal * 16 / 100);
  }
  for (const auto& [muestra, impuesto] : std::map<UnicodeString, double>{{u"N", 16}, {u"", 16}, {u"S", 0}}) {
    Calculo calculo({Mas(Iva(16, 100), {{u"MUESTRA_PAR", Variant(muestra)}})});
    calculo.CalculaTotales();
    EXPECT_EQ(calculo.Subtotal, 100);
    EXPECT_EQ(calculo.GetTotalImpuesto(0), impuesto);
  }
}

TEST(Totales, AddStaleDiscountsOfLinesThatWereNotComputed) {
  Calculo calculo({Mas(Iva(16, 100), {{u"DESC1", Variant(10.0)}}),
                   Mas(Iva(16, 100), {{u"TIPO_PROD", Variant(u"P")}, {u"TIPO_ELEM", Variant(u"K")}})});
  calculo.CalculaTotales();
  EXPECT_EQ(calculo.GetTotalDescuento(0), 20);
  EXPECT_EQ(calculo.TotalImpuestos, 14.4 + 80);
}

TEST(Totales, PurchasesTaxTheCostAndTotalThePrice) {
  Calculo calculo({Mas(Iva(16, 100), {{u"DESCU", Variant(50.0)}, {u"DESC1", Variant(7.0)}})},
                  ENUM_MODULO::MODULO_COMPRAS);
  calculo.CalculaTotales();
  EXPECT_EQ(calculo.Lista(1), "16: 20, 3.2; ");
  EXPECT_EQ(calculo.Subtotal, 100);
  EXPECT_EQ(calculo.SumaDescuentos, 20);
}

TEST(Totales, CountThePriceEightTimesWithTaxes) {
  Calculo calculo({Mas(Iva(16, 100), {{u"TIP_CAM", Variant(20.0)}, {u"CANT", Variant(2.0)}})});
  calculo.SubtotalSimple = false;
  calculo.CalculaTotales();
  EXPECT_EQ(calculo.ImpuestoPartida[0], 1.6);
  EXPECT_EQ(calculo.Subtotal, 80) << "1.6 / 2 / 20 = 0.04 in the price of tax 1";
  calculo.IncluyeImpuesto.fill(false);
  calculo.IgnoraTipoCambio = true;
  calculo.CalculaTotales();
  EXPECT_EQ(calculo.Subtotal, 1600);
}

TEST(Totales, ProcessNineClosesEachDocument) {
  const auto linea = [](const char16_t* documento, double precio) {
    return Mas(Iva(16, precio), {{u"CVE_DOC", Variant(documento)}, {u"DESC1", Variant(10.0)}});
  };
  Calculo calculo({linea(u"A", 100.006), linea(u"B", 10)}, ENUM_MODULO::MODULO_VENTAS, 9);
  calculo.CalculaTotales();
  // The first document closes at 100.01 with its discount taken on it; the last one never closes.
  EXPECT_EQ(calculo.GetTotalDescuento(0), 10.0 / 100 * 100.01 + 1);
  EXPECT_EQ(calculo.Subtotal, 11001 * 0.01);
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

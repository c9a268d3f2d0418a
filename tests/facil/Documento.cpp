// Documents in words against the same ones built by hand.

#include "facil/Documento.h"

#include <bit>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <random>

#include "Uutilext/documents/Redondeo.h"
#include "framework/Excepciones.h"
#include "tests/Mensaje.h"
#include "tests/Ucalculocfdi/Partidas.h"

namespace {

using namespace vel::facil;
using pruebas::Lineas;
using pruebas::MensajeDe;
using pruebas::Motor;
using vel::ENUM_CUOTA;
using vel::ENUM_MODULO;
using vel::IntToStr;
using vel::UnicodeString;
using vel::UTF8Encode;
using vel::Variant;
using PorNombre = pruebas::Partida;
using EnPalabras = vel::facil::Partida;

constexpr auto kVentas = ENUM_MODULO::MODULO_VENTAS;
constexpr auto kCompras = ENUM_MODULO::MODULO_COMPRAS;

/// A document in words, and the fields and notes of the same one as a program writes them by hand.
struct Sorteado {
  explicit Sorteado(std::mt19937_64& generador, ENUM_MODULO elModulo) : modulo(elModulo), azar(generador) {
    datos.DecimalesLinea = 2 + static_cast<int>(Hasta(5));
    for (auto n = Hasta(8); n > 0; --n) Sortea();
  }

  ENUM_MODULO modulo;
  std::vector<EnPalabras> enPalabras;
  std::vector<PorNombre> aMano;
  vel::TDatosFiscales datos;

 private:
  std::uint64_t Hasta(std::uint64_t n) { return azar() % n; }
  double Una(std::initializer_list<double> valores) { return valores.begin()[Hasta(valores.size())]; }

  void Pon(int n, double tasa, int codigo) {
    aMano.back()[u"IMPU" + IntToStr(n)] = Variant(tasa);
    aMano.back()[u"IMP" + IntToStr(n) + u"APLA"] = Variant(codigo);
  }

  void Sortea() {
    EnPalabras& p = enPalabras.emplace_back();
    PorNombre& m = aMano.emplace_back();
    vel::TNotaPartida nota{.Renglon = aMano.size()};
    p.Cantidad = static_cast<double>(1 + Hasta(10'000)) / 100;
    p.Precio = static_cast<double>(Hasta(1'000'000'000)) / 1e6;
    p.TipoCambio = Una({1, 1, 1, 16.7531});
    m = {{u"CANT", Variant(p.Cantidad)},
         {u"PREC", Variant(p.Precio)},
         {u"COST", Variant(p.Precio)},
         {u"TIP_CAM", Variant(p.TipoCambio)}};
    for (int n = 1; n <= 8; ++n) Pon(n, 0, n == 2 ? 0 : 6);
    p.Visible = Hasta(12) != 0;
    m[u"MUESTRA_PAR"] = Variant(p.Visible ? u"N" : u"S");
    if (!p.Visible) return;
    p.ComponenteDeKit = Hasta(12) == 0;
    // All that a line may say of itself not to count.
    constexpr const char16_t* kClases[][2] = {{u"P", u"K"}, {u"S", u"K"}, {u"G", u"N"}};
    const auto& clase = kClases[Hasta(3)];
    m[u"TIPO_PROD"] = Variant(p.ComponenteDeKit ? clase[0] : u"");
    m[u"TIPO_ELEM"] = Variant(p.ComponenteDeKit ? clase[1] : u"");
    p.Descuentos[0] = Una({0, 0, 10, 2.5, 33.3333});
    m[u"DESCU"] = m[u"DESC1"] = Variant(p.Descuentos[0]);
    if (modulo == kVentas) m[u"DESC3"] = Variant(p.Descuentos[2] = Una({0, 0, 7}));
    Excisa(p, nota);
    const int sobre = p.Ieps || p.Cuota ? 1 : 0;
    if (const double iva = Una({-1, 0, 8, 16, 16, 16}); iva >= 0) Pon(4, *(p.Iva = iva), sobre);
    if (!p.Iva && Hasta(2) == 0) {
      nota.Exento[3] = p.IvaExento = true;
      Pon(4, 0, sobre);
    }
    if (Hasta(4) == 0) Pon(2, -*(p.RetencionIsr = Una({10, 1.25, 0})), 0);
    if (Hasta(4) == 0) Pon(3, -*(p.RetencionIva = Una({10.6667, 4})), sobre);
    for (const bool retenido : {false, true}) {
      if (Hasta(6) != 0) continue;
      const double tasa = Una({3, 2.5});
      p.Locales.emplace_back(retenido ? "Cedular" : "ISH", tasa, retenido);
      Pon(Local(retenido), retenido ? -tasa : tasa, 0);
    }
    datos.Notas.push_back(nota);
  }

  void Excisa(EnPalabras& p, vel::TNotaPartida& nota) {
    if (const double ieps = Una({-1, -1, 8, 26.5, 160}); ieps >= 0) Pon(1, *(p.Ieps = ieps), 0);
    if (Hasta(5) != 0) return;
    p.Cuota = CuotaIeps{.PorUnidad = Una({1.63, 0.6166, 5})};
    if (Hasta(2) == 0) nota.Unidades = p.Cuota->Unidades = static_cast<double>(1 + Hasta(1'000)) / 10;
    const char16_t* modo = p.Ieps ? u"A" : u"C";
    if (!p.Ieps && Hasta(2) == 0) p.Cuota->Modo = ENUM_CUOTA::SOLA;
    if (p.Ieps && Hasta(2) == 0) {
      p.Cuota->Modo = ENUM_CUOTA::MINIMA;
      modo = u"M";
    }
    if (!p.Ieps) Pon(1, 0, 0);
    aMano.back()[u"MAN_IEPS"] = Variant(u"S");
    aMano.back()[u"APL_MAN_IMP"] = Variant(1);
    aMano.back()[u"APL_MAN_IEPS"] = Variant(modo);
    aMano.back()[u"MTO_CUOTA"] =
        Variant(vel::g_redoTo(p.Cuota->PorUnidad * nota.Unidades.value_or(p.Cantidad), 6));
  }

  int Local(bool retenido) {
    const vel::TImpuestoAsignado local{vel::ENUM_IMPUESTO_FISCAL::LOCAL, retenido,
                                       retenido ? u"Cedular" : u"ISH"};
    std::size_t i = 4;
    while (datos.Impuestos[i].Impuesto != vel::ENUM_IMPUESTO_FISCAL::NINGUNO && datos.Impuestos[i] != local)
      ++i;
    datos.Impuestos[i] = local;
    return static_cast<int>(i) + 1;
  }

  std::mt19937_64& azar;
};

std::vector<std::uint64_t> Bits(const vel::TCalculoCFDI& m) {
  std::vector<std::uint64_t> bits;
  for (const double d : {m.Subtotal, m.SumaDescuentos, m.TotalImpuestosRedondeado, m.TotalImpuestos})
    bits.push_back(std::bit_cast<std::uint64_t>(d));
  for (const double d : m.TotalImpuesto) bits.push_back(std::bit_cast<std::uint64_t>(d));
  return bits;
}

UnicodeString Cifras(const ImpuestoPorTasa& f) {
  UnicodeString texto = f.Nombre;
  for (const double x : {f.Tasa, f.Base, f.Neto, f.Importe}) texto += u" " + vel::FloatToStr(x);
  return (f.Retenido ? u"-" : u"") + texto + u"; ";
}

/// All rows, and those that the engine lists as its lists have them.
struct Filas {
  explicit Filas(const Documento& documento) : listadas(8) {
    for (const ImpuestoPorTasa& f : documento.PorTasa()) {
      todas += UTF8Encode(Cifras(f));
      // What its text in a list reads back to.
      for (const double x : {f.Neto, f.Importe}) EXPECT_EQ(x, vel::RoundToText(x));
      if (f.Tasa == 0 || f.Retenido) continue;
      std::string& suya = listadas[static_cast<std::size_t>(f.Numero - 1)];
      suya +=
          (suya.empty() ? "" : "; ") + UTF8Encode(vel::FloatToStr(f.Tasa) + u": " + vel::FloatToStr(f.Neto) +
                                                  u" + " + vel::FloatToStr(f.Importe));
    }
  }
  std::string todas;
  std::vector<std::string> listadas;
};

TEST(Documentos, HaveTheBitsOfThoseBuiltByHand) {
  std::mt19937_64 azar(20261121);
  for (int i = 0; i < 10'000; ++i) {
    const Sorteado s(azar, i % 4 == 0 ? kCompras : kVentas);
    Motor motor(s.aMano, s.modulo);
    motor.CalculaTotales();
    const Documento palabras(s.enPalabras, s.modulo);
    const Documento conjunto(Lineas(s.aMano),
                             {.Modulo = s.modulo, .Impuestos = s.datos.Impuestos, .Notas = s.datos.Notas});
    const bool conResumen = i % 5 == 0;
    const std::string json = conResumen ? vel::TResumenFiscal(motor, s.datos).DameJson() : "";
    for (const Documento* d : {&palabras, &conjunto}) {
      ASSERT_EQ(Bits(d->Motor()), Bits(motor)) << i;
      ASSERT_EQ(d->Total(), motor.TotalImpuestos);
      ASSERT_NEAR(d->Total(),
                  d->Subtotal() - d->Descuentos() + d->ImpuestosTrasladados() - d->ImpuestosRetenidos(),
                  0.0201);
      const Filas filas(*d);
      ASSERT_EQ(filas.todas, Filas(conjunto).todas) << i;
      for (int n = 1; n <= 8; ++n)
        ASSERT_EQ(filas.listadas[static_cast<std::size_t>(n - 1)], pruebas::ListaDe(motor, n)) << i;
      if (!conResumen) continue;
      ASSERT_EQ(d->Resumen({.DecimalesLinea = s.datos.DecimalesLinea}).DameJson(), json) << i;
    }
  }
}

TEST(Documentos, AnswerByHonestNames) {
  const Documento d({{.Cantidad = 30, .Precio = 48.50, .Iva = 16, .Ieps = 8},
                     {.Cantidad = 12, .Precio = 245.35, .Iva = 0},
                     {.Precio = 1000, .IvaExento = true},
                     {.Precio = 1234.56, .Iva = 16, .RetencionIsr = 10, .RetencionIva = 10.6667},
                     {.Precio = 1500, .Descuentos = {10}, .Locales = {{"ISH", 3}, {"Cedular", 2, true}}}});
  EXPECT_EQ(
      Filas(d).todas,
      "IEPS 8 1455 1455 116.4; -ISR 10 1234.56 1234.56 123.456; -IVA 10.6667 1234.56 1234.56 131.686812; "
      "IVA 16 2805.96 2689.56 448.9536; IVA 0 2944.2 2944.2 0; ISH 3 1350 1350 40.5; "
      "-Cedular 2 1350 1350 27; ");
  EXPECT_EQ(d.Subtotal(), 8133.76);
  EXPECT_EQ(d.Descuentos(), 150);
  EXPECT_EQ(d.ImpuestosTrasladados(), 605.85);
  EXPECT_EQ(d.ImpuestosRetenidos(), 282.14);
  EXPECT_EQ(d.Impuestos(), 323.71);
  EXPECT_EQ(d.Total(), 8307.47);
  EXPECT_EQ(d.Resumen().Total.Texto(), u"8307.46");
  EXPECT_EQ(d.Partidas()[4].Montos.Base, 1350);
  EXPECT_TRUE(d.Avisos().empty());
  EXPECT_EQ(Documento(std::vector<EnPalabras>{}).Total(), 0);
}

TEST(Documentos, TellWhereTheEngineIsNotTheSumOfItsLines) {
  const Documento d({{.Precio = 100, .Descuentos = {10}, .Cuota = CuotaIeps{2}},
                     {.Precio = 50, .ComponenteDeKit = true},
                     {.Precio = 100, .Cuota = CuotaIeps{3}}});
  UnicodeString avisos;
  for (const UnicodeString& a : d.Avisos()) avisos += a + u"\n";
  EXPECT_EQ(
      UTF8Encode(avisos),
      "Descuentos: el motor da 20.00 y las partidas suman 10.00; una partida que no cuenta, oculta o sin "
      "impuestos lleva los descuentos de la anterior\n"
      "IEPS: el motor da 3.00 y las partidas suman 5.00; una cuota reemplaza el impuesto de las partidas "
      "anteriores, y sin tasa no entra en las listas\n");
  EXPECT_EQ(d.Resumen().Total.Texto(), u"195.00");
}

TEST(Documentos, RefuseWhatIsImpossible) {
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  constexpr auto kLocal = [](int n) { return ImpuestoLocal(u"L" + IntToStr(n), 1); };
  const std::vector<std::pair<EnPalabras, const char*>> casos{
      {{.Cantidad = -1}, "Cantidad es -1, que no está entre 0 y 9000000000000"},
      {{.Precio = kNan}, "Precio es NAN, que no está entre 0 y 9000000000000"},
      {{.Cantidad = 1e7, .Precio = 1e7},
       "el importe es 100000000000000, que no está entre 0 y 9000000000000"},
      {{.TipoCambio = 0}, "TipoCambio es 0, que no está entre 1E-6 y 9000000000000"},
      {{.Descuentos = {0, -5}}, "Descuentos es -5, que no está entre 0 y 100"},
      {{.Descuentos = {60, 50}}, "la suma de Descuentos es 110, que no está entre 0 y 100"},
      {{.Iva = 1600}, "Iva es 1600, que no está entre 0 y 1000"},
      {{.Iva = 0, .IvaExento = true}, "Iva tiene tasa y la partida está exenta (IvaExento)"},
      {{.Ieps = -8}, "Ieps es -8, que no está entre 0 y 1000"},
      {{.Cantidad = 0, .Cuota = CuotaIeps{2}}, "Cuota.Unidades es 0, que no está entre 1E-6 y 9000000000000"},
      {{.Cuota = CuotaIeps{2, {}, ENUM_CUOTA::MINIMA}},
       "Cuota.Modo es MINIMA o ADICIONAL y falta la tasa en Ieps"},
      {{.Ieps = 8, .Cuota = CuotaIeps{2, {}, ENUM_CUOTA::SOLA}},
       "Cuota.Modo es SOLA y hay además una tasa en Ieps"},
      {{.Ieps = 8, .Cuota = CuotaIeps{2, {}, ENUM_CUOTA{u'x'}}},
       "Cuota.Modo no es uno de los modos de cuota"},
      {{.RetencionIsr = -10}, "RetencionIsr es -10, que no está entre 0 y 1000"},
      {{.RetencionIva = kNan}, "RetencionIva es NAN, que no está entre 0 y 1000"},
      {{.Locales = {{"", 3}}}, "Locales tiene un impuesto sin nombre"},
      {{.Locales = {{"ISH", 3}, {"ISH", 2}}}, "Locales tiene dos veces 'ISH'"},
      {{.Locales = {kLocal(1), kLocal(2), kLocal(3), kLocal(4), kLocal(5)}},
       "Locales tiene 'L5', y el documento no admite más de cuatro impuestos locales"},
      {{.Iva = 0, .Visible = false},
       "Visible es falso y la partida tiene impuestos, que el motor no calcula en una partida oculta"},
      {{.Descuentos = {1}, .Visible = false},
       "Visible es falso y la partida tiene Descuentos, que el motor no calcula en una partida oculta"}};
  for (const auto& [partida, mensaje] : casos) {
    const std::vector<EnPalabras> partidas{{}, partida};
    const auto crea = [&partidas] { CreaPartidas(partidas); };
    EXPECT_EQ(MensajeDe(crea), std::string("Partida 2: ") + mensaje);
  }
  EXPECT_EQ(MensajeDe([] {
              Documento({{.Descuentos = {1, 1}}}, kCompras);
            }),
            "Partida 1: Descuentos tiene más de uno, y las compras sólo tienen un descuento");
}

TEST(Documentos, TellAllThatADataSetLacksAtOnce) {
  const auto mensaje = [](const vel::TClientDataSet& datos, ENUM_MODULO modulo = kVentas) {
    return MensajeDe([&] { Documento(datos, {.Modulo = modulo}); });
  };
  vel::TClientDataSet pocos;
  pocos.CreateDataSet({{.Name = u"CANT", .DataType = vel::TFieldType::ftFloat},
                       {.Name = u"MAN_IEPS", .DataType = vel::TFieldType::ftString, .Size = 1},
                       {.Name = u"IMP1APLA", .DataType = vel::TFieldType::ftInteger},
                       {.Name = u"IMPU4", .DataType = vel::TFieldType::ftFloat},
                       {.Name = u"IMPU5", .DataType = vel::TFieldType::ftFloat}});
  for (const double iva : {0.0, 16.0, 8.0}) {
    pocos.Append();
    pocos.FieldByName(u"MAN_IEPS").SetAsString(iva == 16 ? u"S" : u"N");
    pocos.FieldByName(u"IMPU4").SetAsFloat(iva);
  }
  pocos.Post();
  const std::string comunes = "CVE_DOC, PREC, TIPO_PROD, TIPO_ELEM, TIP_CAM, ";
  const std::string demas =
      "IMPU1, IMP4APLA (el código de base de IMPU4, que tiene tasa en la partida 2), APL_MAN_IMP, "
      "APL_MAN_IEPS, "
      "MTO_CUOTA";
  EXPECT_EQ(mensaje(pocos),
            "A las partidas de ventas les faltan campos: " + comunes + "DESC1, DESC2, DESC3, " + demas);
  EXPECT_EQ(mensaje(pocos, kCompras),
            "A las partidas de compras les faltan campos: " + comunes + "COST, DESCU, " + demas);
  vel::TClientDataSet sinPartidas;
  sinPartidas.CreateDataSet({{.Name = u"CANT", .DataType = vel::TFieldType::ftFloat}});
  EXPECT_EQ(
      mensaje(sinPartidas),
      "A las partidas de ventas les faltan campos: CVE_DOC, PREC, TIPO_PROD, TIPO_ELEM, MAN_IEPS, TIP_CAM, "
      "DESC1, DESC2, DESC3");

  const PorNombre iva = pruebas::Iva(16, 100);
  const auto con = [&iva](const char16_t* campo, const Variant& valor) {
    return Lineas({iva, pruebas::Mas(iva, {{campo, valor}})});
  };
  EXPECT_EQ(mensaje(con(u"CANT", Variant(u"doce"))).substr(0, 12), "Partida 2: '");
  EXPECT_EQ(UTF8Encode(Documento(con(u"IMP1APLA", Variant(8))).Avisos().at(0)),
            "Partida 2: IMP1APLA es 8, que no es un código de base (0 a 7): la tasa de IMPU1 no se aplica");
  EXPECT_EQ(Documento(con(u"MUESTRA_PAR", Variant(u"S"))).PorTasa().at(0).Neto, 100);
  EXPECT_EQ(mensaje(con(u"TIP_CAM", Variant(0.0))),
            "Partida 2: el importe no es un número finito; TIP_CAM es 0");
  EXPECT_EQ(Documento(con(u"TIP_CAM", Variant(0.0)), {.IgnoraTipoCambio = true}).Total(), 232);
}

}  // namespace

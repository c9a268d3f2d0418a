// Documents in words against the same ones built by hand.

#include "facil/Documento.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <random>
#include <sstream>
#include <string>

#include "Uutilext/documents/Redondeo.h"
#include "framework/Excepciones.h"
#include "tests/Casos.h"
#include "tests/Mensaje.h"
#include "tests/Reales.h"
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

/// A line as case files write it: "Iva=16 Cuota=1.63,25.3,C Local=ISH,3 Local=Cedular,2,R".
EnPalabras LeeEnPalabras(const std::string& texto) {
  using P = EnPalabras;
  static const std::map<std::string, double P::*> montos = {
      {"Cantidad", &P::Cantidad}, {"Precio", &P::Precio}, {"TipoCambio", &P::TipoCambio}};
  static const std::map<std::string, std::optional<double> P::*> tasas = {{"Iva", &P::Iva},
                                                                          {"Ieps", &P::Ieps},
                                                                          {"RetencionIsr", &P::RetencionIsr},
                                                                          {"RetencionIva", &P::RetencionIva}};
  static const std::map<std::string, bool P::*> marcas = {
      {"IvaExento", &P::IvaExento}, {"ComponenteDeKit", &P::ComponenteDeKit}, {"Visible", &P::Visible}};
  P p;
  std::istringstream campos = pruebas::Entrada(texto);
  for (std::string nombre, valor; std::getline(campos >> std::ws, nombre, '=') && campos >> valor;) {
    std::istringstream entrada = pruebas::Entrada(valor);
    std::vector<std::string> partes;
    for (std::string parte; std::getline(entrada, parte, ',');) partes.push_back(parte);
    if (nombre == "Descuentos") {
      std::ranges::transform(partes, p.Descuentos.begin(), pruebas::Real);
    } else if (nombre == "Cuota") {
      CuotaIeps& cuota = p.Cuota.emplace(CuotaIeps{pruebas::Real(partes[0])});
      if (partes.size() > 1 && !partes[1].empty()) cuota.Unidades = pruebas::Real(partes[1]);
      if (partes.size() > 2) cuota.Modo = ENUM_CUOTA{static_cast<char16_t>(partes[2].at(0))};
    } else if (nombre == "Local") {
      p.Locales.emplace_back(partes[0], pruebas::Real(partes.at(1)), partes.size() > 2);
    } else if (const auto marca = marcas.find(nombre); marca != marcas.end()) {
      p.*marca->second = valor == "yes";
    } else if (const auto monto = montos.find(nombre); monto != montos.end()) {
      p.*monto->second = pruebas::Real(valor);
    } else {
      p.*tasas.at(nombre) = pruebas::Real(valor);
    }
  }
  return p;
}

/// A document in words, and the fields and notes of the same one as a program writes them by hand: lines of
/// palabras.txt, with amounts of their own.
struct Sorteado {
  Sorteado(std::mt19937_64& azar, ENUM_MODULO elModulo) : modulo(elModulo) {
    static const auto filas = pruebas::Casos("documentos/palabras.txt", " | ");
    datos.DecimalesLinea = 2 + static_cast<int>(azar() % 5);
    for (auto n = azar() % 8; n > 0; --n) {
      const auto& fila = filas[azar() % filas.size()];
      EnPalabras p = LeeEnPalabras(fila[0]);
      // Purchases have one discount.
      if (modulo == kCompras && p.Descuentos[2] != 0) continue;
      p.Cantidad = static_cast<double>(1 + azar() % 10'000) / 100;
      p.Precio = static_cast<double>(azar() % 1'000'000'000) / 1e6;
      enPalabras.push_back(p);
      aMano.push_back(AMano(pruebas::LineaDe(fila.at(1)), p.Cantidad, p.Precio));
    }
  }

  ENUM_MODULO modulo;
  std::vector<EnPalabras> enPalabras;
  std::vector<PorNombre> aMano;
  vel::TDatosFiscales datos;

 private:
  PorNombre AMano(PorNombre m, double cantidad, double precio) {
    vel::TNotaPartida nota{.Renglon = enPalabras.size()};
    nota.Exento[3] = !m.extract(u"EXENTO").empty();
    if (const auto unidades = m.extract(u"UNIDADES")) nota.Unidades = unidades.mapped().AsDouble();
    for (const char16_t* const nombre : {u"ISH", u"Cedular"}) {
      const auto tasa = m.extract(nombre);
      if (tasa) Pon(m, Local(nombre, tasa.mapped().AsDouble() < 0), tasa.mapped().AsDouble(), 0);
    }
    for (int n = 1; n <= 8; ++n) Pon(m, n, 0, n == 2 ? 0 : 6);
    if (const auto cuota = m.find(u"MTO_CUOTA"); cuota != m.end())
      cuota->second = vel::g_redoTo(cuota->second.AsDouble() * nota.Unidades.value_or(cantidad), 6);
    m[u"CANT"] = cantidad;
    m[u"PREC"] = m[u"COST"] = precio;
    if (m.try_emplace(u"MUESTRA_PAR", u"N").second) datos.Notas.push_back(nota);
    return m;
  }

  // Where the line does not say it already.
  static void Pon(PorNombre& m, int n, double tasa, int codigo) {
    m.try_emplace(u"IMPU" + IntToStr(n), tasa);
    m.try_emplace(u"IMP" + IntToStr(n) + u"APLA", static_cast<double>(codigo));
  }

  int Local(const UnicodeString& nombre, bool retenido) {
    const vel::TImpuestoAsignado local{vel::ENUM_IMPUESTO_FISCAL::LOCAL, retenido, nombre};
    std::size_t i = 4;
    while (datos.Impuestos[i].Impuesto != vel::ENUM_IMPUESTO_FISCAL::NINGUNO && datos.Impuestos[i] != local)
      ++i;
    datos.Impuestos[i] = local;
    return static_cast<int>(i) + 1;
  }
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
  for (const auto& caso : pruebas::Casos("documentos/palabras_errores.txt", " | ")) {
    const std::vector<EnPalabras> partidas{{}, LeeEnPalabras(caso[0])};
    EXPECT_EQ(MensajeDe([&] { CreaPartidas(partidas); }), "Partida 2: " + caso.at(1));
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

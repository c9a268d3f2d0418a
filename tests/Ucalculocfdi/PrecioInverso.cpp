#include "Ucalculocfdi/PrecioInverso.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>
#include <random>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "Ucalculocfdi/AjusteCentavos.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "tests/Casos.h"
#include "tests/Reales.h"
#include "tests/Ucalculocfdi/Partidas.h"

namespace vel {
namespace {

using namespace pruebas;
constexpr auto kVentas = ENUM_MODULO::MODULO_VENTAS;

// In purchases the price is the cost.
Partida LineaDe(const TDatosPartida& p, ENUM_MODULO modulo) {
  const UnicodeString modo(p.ModoCuota == ENUM_CUOTA::NINGUNA ? 0 : 1, static_cast<char16_t>(p.ModoCuota));
  Partida partida = {{u"CANT", Variant(p.Cantidad)},
                     {modulo == kVentas ? u"PREC" : u"COST", Variant(p.Precio)},
                     {u"TIP_CAM", Variant(p.TipoCambio)},
                     {u"DESCU", Variant(p.PorcDescuento[0])},
                     {u"MAN_IEPS", Variant(p.ImpuestoConCuota != 0 ? u"S" : u"N")},
                     {u"APL_MAN_IMP", Variant(p.ImpuestoConCuota)},
                     {u"APL_MAN_IEPS", Variant(modo)},
                     {u"MTO_CUOTA", Variant(p.Cuota)}};
  for (std::size_t i = 0; i < 8; ++i) {
    const UnicodeString n = IntToStr(static_cast<int>(i) + 1);
    if (i < 3) partida[u"DESC" + n] = Variant(p.PorcDescuento[i]);
    partida[u"IMPU" + n] = Variant(p.Tasa[i]);
    partida[u"IMP" + n + u"APLA"] = Variant(p.Codigo[i]);
  }
  return partida;
}

Motor Documento(const std::vector<TDatosPartida>& lineas, ENUM_MODULO modulo = kVentas) {
  std::vector<Partida> partidas;
  for (const TDatosPartida& p : lineas) partidas.push_back(LineaDe(p, modulo));
  return Motor(partidas, modulo);
}

double TotalDe(const TDatosPartida& partida) {
  Motor documento = Documento({partida});
  documento.CalculaTotales();
  return documento.TotalImpuestos;
}

TDatosPartida Linea(double ieps, double iva, double cantidad = 1) {
  TDatosPartida p;
  p.Cantidad = cantidad;
  p.Tasa[0] = ieps;
  p.Tasa[3] = iva;
  if (ieps != 0) p.Codigo[0] = 0;
  p.Codigo[3] = ieps != 0 ? 1 : 0;
  return p;
}

TEST(Partida, GivesTheBasesAndReadsOnlyWhatApplies) {
  TDatosPartida p = Linea(8, 16, 2);
  p.Precio = 50;
  p.PorcDescuento = {10, 10, 0};
  const TImpuestosPartida r = CalcularImpuestosPartida(p);
  EXPECT_EQ(std::tuple(r.Importe, r.Descuento[1], r.Base), std::tuple(100, 10, 80));
  EXPECT_EQ(std::tuple(r.BaseGravable[0], r.BaseGravable[3], r.BaseGravable[1]), std::tuple(80, 86.4, 0));
  EXPECT_EQ(std::tuple(r.Aplica[0], r.Aplica[1], r.Aplica[3]), std::tuple(true, false, true));

  const Partida compra = {{u"CANT", Variant(3.0)}, {u"COST", Variant(5.0)}, {u"DESCU", Variant(20.0)}};
  const TClientDataSet sinCambio = Lineas({compra}, u"TIP_CAM");
  EXPECT_EQ(CalcularImpuestosPartida(sinCambio, ENUM_MODULO::MODULO_COMPRAS, true).Base, 12);
  EXPECT_THROW(CalcularImpuestosPartida(sinCambio, ENUM_MODULO::MODULO_COMPRAS), EDatabaseError);
  EXPECT_EQ(LeePartida(Lineas({compra}, u"MAN_IEPS"), ENUM_MODULO::MODULO_COMPRAS).Precio, 5);
}

TDatosPartida Lee(const std::vector<std::string>& caso) {
  TDatosPartida p;
  p.Cantidad = pruebas::Real(caso[2]);
  std::istringstream impuestos = pruebas::Entrada(caso[3]);
  for (std::string impuesto; caso[3] != "-" && impuestos >> impuesto;) {
    const auto n = static_cast<std::size_t>(std::stoi(impuesto) - 1);
    p.Tasa[n] = pruebas::Real(impuesto.substr(2));
    p.Codigo[n] = std::stoi(impuesto.substr(impuesto.find('@') + 1));
  }
  if (char modo = 0; caso[4] != "-") {
    pruebas::Entrada(caso[4]) >> p.ImpuestoConCuota >> modo >> p.Cuota;
    p.ModoCuota = static_cast<ENUM_CUOTA>(modo);
  }
  pruebas::Entrada(caso[5]) >> p.PorcDescuento[0] >> p.PorcDescuento[1] >> p.PorcDescuento[2];
  p.TipoCambio = pruebas::Real(caso[7]);
  return p;
}

TEST(PrecioInverso, IsTheNearestNetPriceThatComesToThePriceOrAnError) {
  for (const auto& caso : Casos("documentos/precios_inversos.txt", " | ")) {
    SCOPED_TRACE(caso[0]);
    TDatosPartida p = Lee(caso);
    const double precio = pruebas::Real(caso[1]);
    const auto tipo = caso[6] == "lista" ? ENUM_PRECIO::PRECIO_LISTA : ENUM_PRECIO::PRECIO_FINAL;
    if (caso.size() == 9) {
      try {
        ObtenPrecioInverso(precio, p, tipo);
        ADD_FAILURE();
      } catch (const EInvalidOperation& e) {
        EXPECT_EQ(e.what(), caso[8]);
      }
      continue;
    }
    const TPrecioInverso inverso = ObtenPrecioInverso(precio, p, tipo);
    EXPECT_EQ(inverso.PrecioNeto, pruebas::Real(caso[8]));
    EXPECT_EQ(UTF8Encode(inverso.TotalPedido.Texto()), caso[9]);
    EXPECT_EQ(inverso.Residuo, std::stoll(caso[10]));
    p.Precio = inverso.PrecioNeto;
    EXPECT_EQ(inverso.Total, TotalDe(p));
    EXPECT_EQ(inverso.Partida.Impuesto, CalcularImpuestosPartida(p).Impuesto);
    p.Precio = 77;
    EXPECT_EQ(ObtenPrecioInverso(precio, Documento({p}).Partidas, kVentas, tipo).PrecioNeto,
              inverso.PrecioNeto);
  }
}

// A thinned selection of what benchmarks/CuentaPrecioInverso.cpp counts in full.
TEST(PrecioInverso, MissesOnlyPricesThatNoNetPriceReaches) {
  const struct {
    double ieps, iva;
    std::int64_t fuera[3];
  } juegos[] = {{0, 16, {0, 0, 0}},    {0, 8, {0, 0, 0}},    {0, 0, {0, 0, 0}},    {8, 16, {0, 0, 0}},
                {26.5, 16, {0, 1, 9}}, {53, 16, {0, 0, 15}}, {160, 16, {0, 0, 21}}};
  for (const auto& j : juegos) {
    for (const int q : {1, 7, 144}) {
      std::int64_t fuera = 0;
      for (std::int64_t centavos = 1; centavos <= 2'000'000; centavos += 997) {
        const TPrecioInverso r =
            ObtenPrecioInverso(static_cast<double>(centavos) / 100, Linea(j.ieps, j.iva, q));
        ASSERT_EQ(std::llround(r.Total * 100) + r.Residuo, centavos * q);
        ASSERT_LE(std::abs(r.Residuo), 1);
        fuera += std::abs(r.Residuo);
      }
      EXPECT_EQ(fuera, j.fuera[q == 1 ? 0 : q == 7 ? 1 : 2]) << j.ieps << " + " << j.iva << " at " << q;
    }
  }
}

// "amount tax tax ...; ...": see ajuste_centavos.txt.
std::vector<TPartidaFiscal> Impresas(const std::string& texto, int decimales) {
  std::vector<TPartidaFiscal> partidas;
  std::istringstream lineas = pruebas::Entrada(texto);
  for (std::string linea; std::getline(lineas, linea, ';');) {
    TPartidaFiscal& p = partidas.emplace_back();
    p.Renglon = partidas.size();
    p.Cantidad = p.ValorUnitario = {1'000'000, 6};
    p.Importe = p.Descuento = {0, decimales};
    std::istringstream campos = pruebas::Entrada(linea);
    campos >> p.Importe.Unidades;
    char clase = 0;
    for (TImpuestoImpreso t; campos >> t.Numero >> clase >> t.CodigoBase >> t.Tasa.Unidades >>
                             t.Base.Unidades >> t.Importe.Unidades;) {
      t.Impuesto = clase == 'L' ? ENUM_IMPUESTO_FISCAL::LOCAL : ENUM_IMPUESTO_FISCAL::IVA;
      t.TasaNegativa = clase == 'N';
      t.Retenido = clase == 'R' || t.TasaNegativa;
      t.Factor = clase == 'C' ? ENUM_FACTOR_FISCAL::CUOTA : ENUM_FACTOR_FISCAL::TASA;
      t.Tasa.Decimales = 6;
      t.Base.Decimales = t.Importe.Decimales = decimales;
      p.Impuestos.push_back(t);
    }
  }
  return partidas;
}

TEST(AjusteCentavos, MovesTheLargestRemainderFirstWithinTheLimits) {
  for (const auto& caso : Casos("documentos/ajuste_centavos.txt", " | ")) {
    SCOPED_TRACE(caso[0]);
    TResumenFiscal resumen;
    resumen.Asignacion[4] = {ENUM_IMPUESTO_FISCAL::LOCAL, false, u"ISH"};
    resumen.DecimalesLinea = std::stoi(caso[1]);
    resumen.Partidas = Impresas(caso[3], resumen.DecimalesLinea);
    resumen.Totaliza();
    const std::int64_t pedido = resumen.Total.Unidades + std::stoll(caso[2]);
    const TAjusteCentavos ajuste = AjustaCentavos(resumen, {pedido, 2});
    std::string movimientos;
    for (const TMovimientoImpuesto& m : ajuste.Movimientos) {
      if (!movimientos.empty()) movimientos += " ";
      movimientos += std::to_string(m.Renglon) + (m.Unidades > 0 ? ":+" : ":") + std::to_string(m.Unidades);
    }
    EXPECT_EQ(movimientos.empty() ? "-" : movimientos, caso[4]);
    EXPECT_EQ(ajuste.Pedidos, std::stoll(caso[2]));
    EXPECT_EQ(ajuste.PorColocar, std::stoll(caso[5]));
    EXPECT_EQ(resumen.Total.Unidades, pedido - ajuste.PorColocar);
    EXPECT_EQ(ajuste.Mensaje.empty(), ajuste.PorColocar == 0);
    EXPECT_EQ(resumen.Partidas.back().Impuestos.back().Base.Unidades, std::stoll(caso[6]));
    EXPECT_THROW(AjustaCentavos(resumen, {-1, 2}), EInvalidOperation);
  }
}

TEST(AjusteCentavos, MakesDocumentsOfPricesWithTaxesAddUp) {
  std::mt19937 azar(11);
  int movidos = 0;
  for (int vez = 0; vez < 60; ++vez) {
    TMontoFiscal pedido;
    std::vector<TDatosPartida> lineas;
    for (int i = 0; i < 20; ++i) {
      TDatosPartida& p =
          lineas.emplace_back(Linea(i % 3 == 0 ? 0 : 26.5, 16, static_cast<double>(1 + azar() % 9)));
      const TPrecioInverso inverso = ObtenPrecioInverso(static_cast<double>(1 + azar() % 100'000) / 100, p);
      p.Precio = inverso.PrecioNeto;
      pedido.Unidades += inverso.TotalPedido.Unidades;
    }
    Motor documento = Documento(lineas);
    TResumenFiscal resumen(documento, {.DecimalesLinea = 2});
    const TAjusteCentavos ajuste = AjustaCentavos(resumen, pedido);
    EXPECT_EQ(resumen.Total, pedido);
    EXPECT_TRUE(resumen.Motivos.empty());
    movidos += ajuste.Pedidos != 0 ? 1 : 0;
  }
  EXPECT_GT(movidos, 30);
}

}  // namespace
}  // namespace vel

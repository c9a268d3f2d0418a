#include "Ucalculocfdi/PrecioInverso.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "Ucalculocfdi/AjusteCentavos.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "tests/Casos.h"
#include "tests/Ucalculocfdi/Partidas.h"

namespace vel {
namespace {

using namespace pruebas;
constexpr auto kVentas = ENUM_MODULO::MODULO_VENTAS;

// A document of these lines; in purchases their price is the cost.
struct Documento : TCalculoCFDI {
  explicit Documento(const std::vector<TDatosPartida>& lineas, ENUM_MODULO modulo = kVentas)
      : TCalculoCFDI(modulo, ENUM_PROC_FACTCOMP::PROC_NORMAL, TIPO_DOCTO::TD_FACTURA) {
    std::vector<Partida> partidas;
    for (const TDatosPartida& p : lineas) {
      const UnicodeString modo(p.ModoCuota == ENUM_CUOTA::NINGUNA ? 0 : 1,
                               static_cast<char16_t>(p.ModoCuota));
      Partida& partida =
          partidas.emplace_back(Partida{{u"CANT", Variant(p.Cantidad)},
                                        {modulo == kVentas ? u"PREC" : u"COST", Variant(p.Precio)},
                                        {u"TIP_CAM", Variant(p.TipoCambio)},
                                        {u"DESCU", Variant(p.PorcDescuento[0])},
                                        {u"MAN_IEPS", Variant(p.ImpuestoConCuota != 0 ? u"S" : u"N")},
                                        {u"APL_MAN_IMP", Variant(p.ImpuestoConCuota)},
                                        {u"APL_MAN_IEPS", Variant(modo)},
                                        {u"MTO_CUOTA", Variant(p.Cuota)}});
      for (std::size_t i = 0; i < 8; ++i) {
        const UnicodeString n = IntToStr(static_cast<int>(i) + 1);
        if (i < 3) partida[u"DESC" + n] = Variant(p.PorcDescuento[i]);
        partida[u"IMPU" + n] = Variant(p.Tasa[i]);
        partida[u"IMP" + n + u"APLA"] = Variant(p.Codigo[i]);
      }
    }
    SetPartidas(Lineas(partidas));
  }
};

double TotalDe(const TDatosPartida& partida) {
  Documento documento({partida});
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

TEST(Partida, HasTheBitsOfTheDocument) {
  std::mt19937 azar(7);
  const auto entero = [&azar](std::uint32_t n) { return static_cast<int>(azar() % n); };
  const auto bits = [](const auto& montos) {
    std::vector<std::uint64_t> v;
    for (const double m : montos) v.push_back(std::bit_cast<std::uint64_t>(m));
    return v;
  };
  for (int vez = 0; vez < 3000; ++vez) {
    TDatosPartida p;
    p.Cantidad = entero(1'000'000) / 1e4;
    p.Precio = entero(1'000'000'000) / 1e6;
    p.TipoCambio = entero(2) == 0 ? 1 : 1 + entero(200'000) / 1e4;
    p.PorcDescuento = {entero(3) * 7.25, 0, 0};
    if (entero(2) == 0) p.PorcDescuento = {p.PorcDescuento[0], 2.5, 3};
    for (std::size_t i = 0; i < 8; ++i) {
      p.Tasa[i] = (entero(200'000) - 40'000) / 1e4;
      p.Codigo[i] = entero(11) - 1;
    }
    p.ImpuestoConCuota = entero(9);
    p.ModoCuota = static_cast<ENUM_CUOTA>(u"MCAX"[entero(4)]);
    p.Cuota = entero(1'000'000) / 1e4;
    const ENUM_MODULO modulo = entero(2) == 0 ? kVentas : ENUM_MODULO::MODULO_COMPRAS;
    Documento documento({p}, modulo);
    documento.IgnoraTipoCambio = entero(4) == 0;
    documento.DecimalesPartida = 4 + entero(3);
    documento.PorcDescuento = p.PorcDescuento;
    if (modulo != kVentas) documento.PorcDescuento[1] = documento.PorcDescuento[2] = 0;
    documento.CalculaImpDescPar();
    const TImpuestosPartida r = CalcularImpuestosPartida(
        documento.Partidas, modulo, documento.IgnoraTipoCambio, documento.DecimalesPartida);
    ASSERT_EQ(bits(r.Impuesto), bits(documento.ImpuestoPartida)) << vez;
    ASSERT_EQ(bits(r.ImpuestoRedondeado), bits(documento.TotalImpuesto)) << vez;
    const bool conImpuestos = std::count(r.Aplica.begin(), r.Aplica.end(), true) != 0;
    // A line without taxes leaves the document's discounts alone.
    ASSERT_EQ(!conImpuestos || bits(r.Descuento) == bits(documento.DescuentoPartida), true) << vez;
    for (std::size_t i = 0; i < 8; ++i) {
      if (documento.ListaImpuesto[i].Count() == 0) continue;
      const auto& montos = dynamic_cast<const TStringList&>(*documento.ListaImpuesto[i].Objects(0));
      ASSERT_EQ(FloatToStr(r.Base), montos[0]) << vez;
    }
  }
}

TEST(Partida, GivesTheBasesAndReadsOnlyWhatApplies) {
  TDatosPartida p = Linea(8, 16, 2);
  p.Precio = 50;
  p.PorcDescuento = {10, 10, 0};
  const TImpuestosPartida r = CalcularImpuestosPartida(p);
  EXPECT_EQ(std::tuple(r.Importe, r.Descuento[1], r.Base), std::tuple(100, 10, 80));
  EXPECT_EQ(std::tuple(r.BaseGravable[0], r.BaseGravable[3], r.BaseGravable[1]), std::tuple(80, 86.4, 0));
  EXPECT_EQ(std::tuple(r.Aplica[0], r.Aplica[1], r.Aplica[3]), std::tuple(true, false, true));

  TClientDataSet pocos;
  std::vector<TFieldDef> campos;
  for (const char16_t* real : {u"CANT", u"COST", u"DESCU"}) {
    campos.push_back({.Name = real, .DataType = TFieldType::ftFloat});
  }
  pocos.CreateDataSet(campos);
  pocos.Append();
  pocos.FieldByName(u"CANT").SetAsFloat(3);
  pocos.FieldByName(u"COST").SetAsFloat(5);
  pocos.FieldByName(u"DESCU").SetAsFloat(20);
  pocos.Post();
  EXPECT_EQ(CalcularImpuestosPartida(pocos, ENUM_MODULO::MODULO_COMPRAS, true).Base, 12);
  EXPECT_THROW(CalcularImpuestosPartida(pocos, ENUM_MODULO::MODULO_COMPRAS), EDatabaseError);
}

TDatosPartida Lee(const std::vector<std::string>& caso) {
  TDatosPartida p;
  p.Cantidad = std::stod(caso[2]);
  std::istringstream impuestos(caso[3]);
  for (std::string impuesto; caso[3] != "-" && impuestos >> impuesto;) {
    const auto n = static_cast<std::size_t>(std::stoi(impuesto) - 1);
    p.Tasa[n] = std::stod(impuesto.substr(2));
    p.Codigo[n] = std::stoi(impuesto.substr(impuesto.find('@') + 1));
  }
  if (char modo = 0; caso[4] != "-") {
    std::istringstream(caso[4]) >> p.ImpuestoConCuota >> modo >> p.Cuota;
    p.ModoCuota = static_cast<ENUM_CUOTA>(modo);
  }
  std::istringstream(caso[5]) >> p.PorcDescuento[0] >> p.PorcDescuento[1] >> p.PorcDescuento[2];
  p.TipoCambio = std::stod(caso[7]);
  return p;
}

TEST(PrecioInverso, IsTheNearestNetPriceThatComesToThePrice) {
  for (const auto& caso : pruebas::Casos("documentos/precios_inversos.txt", " | ")) {
    SCOPED_TRACE(caso[0]);
    TDatosPartida p = Lee(caso);
    const auto tipo = caso[6] == "lista" ? ENUM_PRECIO::PRECIO_LISTA : ENUM_PRECIO::PRECIO_FINAL;
    const TPrecioInverso inverso = ObtenPrecioInverso(std::stod(caso[1]), p, tipo);
    EXPECT_EQ(inverso.PrecioNeto, std::stod(caso[8]));
    EXPECT_EQ(UTF8Encode(inverso.TotalPedido.Texto()), caso[9]);
    EXPECT_EQ(inverso.Residuo, std::stoll(caso[10]));
    p.Precio = inverso.PrecioNeto;
    EXPECT_EQ(inverso.Total, TotalDe(p));
    EXPECT_EQ(inverso.Partida.Impuesto, CalcularImpuestosPartida(p).Impuesto);
    p.Precio = 77;
    EXPECT_EQ(ObtenPrecioInverso(std::stod(caso[1]), Documento({p}).Partidas, kVentas, tipo).PrecioNeto,
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

TEST(PrecioInverso, RefusesWhatHasNoNetPrice) {
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  constexpr double kInfinito = std::numeric_limits<double>::infinity();
  const struct {
    double precio;
    std::function<void(TDatosPartida&)> cambia;
    const char* mensaje;
  } casos[] = {
      {kNan, nullptr, "El precio con impuestos no es un número finito"},
      {kInfinito, nullptr, "El precio con impuestos no es un número finito"},
      {-1, nullptr, "El precio con impuestos no puede ser menor que cero"},
      {2e12, nullptr, "El precio con impuestos es demasiado grande"},
      {1, [](auto& p) { p.Cantidad = 0; }, "La cantidad debe ser mayor que cero"},
      {1, [](auto& p) { p.Cantidad = 1e-7; }, "La cantidad debe ser mayor que cero"},
      {1, [](auto& p) { p.Cantidad = kNan; }, "La cantidad no es un número finito"},
      {1, [](auto& p) { p.TipoCambio = 0; }, "El tipo de cambio debe ser mayor que cero"},
      {1, [](auto& p) { p.TipoCambio = -1; }, "El tipo de cambio no puede ser menor que cero"},
      {1, [](auto& p) { p.Tasa[0] = 1000.01; }, "La tasa del impuesto 1 pasa de 1000 %"},
      {1, [](auto& p) { p.Tasa[3] = kNan; }, "La tasa del impuesto 4 no es un número finito"},
      {1, [](auto& p) { p.Tasa[0] = -100; }, "Los impuestos se llevan todo el precio: no hay precio neto"},
      {1,
       [](auto& p) {
         p.PorcDescuento = {60, 40, 0};
       },
       "Los descuentos dejan la partida sin importe"},
      {1, [](auto& p) { p.PorcDescuento[2] = -1; }, "El descuento 3 no puede ser menor que cero"},
      {1, [](auto& p) { p.ImpuestoConCuota = 9; }, "El impuesto con cuota debe ir de 1 a 8"},
      {1,
       [](auto& p) {
         p.PorcDescuento[0] = 5;
         p.Codigo.fill(6);
       },
       "La partida lleva descuentos y ningún impuesto: sin impuestos no se calculan"},
      {1,
       [](auto& p) {
         p.ImpuestoConCuota = 1;
         p.ModoCuota = ENUM_CUOTA::SOLA;
         p.Cuota = 0.87;
       },
       "La cuota es mayor que el precio con impuestos: no hay precio neto"},
      {1e9, [](auto& p) { p.Cantidad = 1001; }, "El precio por la cantidad es demasiado grande"},
      {1e11, nullptr, "El precio neto es demasiado grande"}};
  for (const auto& c : casos) {
    TDatosPartida p = Linea(8, 16);
    if (c.cambia) c.cambia(p);
    try {
      ObtenPrecioInverso(c.precio, p);
      ADD_FAILURE() << c.mensaje;
    } catch (const EInvalidOperation& e) {
      EXPECT_STREQ(e.what(), c.mensaje);
    }
  }
}

// A line with a tax of its amount, at 16 % unless said.
TPartidaFiscal Impresa(std::int64_t importe, std::int64_t impuesto, int decimales, bool retenido = false) {
  TPartidaFiscal p{.Renglon = 0,
                   .Cantidad = {1'000'000, 6},
                   .ValorUnitario = {importe, 6},
                   .Importe = {importe, decimales},
                   .Descuento = {0, decimales},
                   .Impuestos = {}};
  p.Impuestos.push_back({retenido ? 3 : 4,
                         ENUM_IMPUESTO_FISCAL::IVA,
                         retenido,
                         ENUM_FACTOR_FISCAL::TASA,
                         {importe, decimales},
                         {160'000, 6},
                         {impuesto, decimales}});
  return p;
}

TEST(AjusteCentavos, MovesTheLargestRemainderFirstWithinTheLimits) {
  // 16 %: 1.6048, 1.6032 and 1.608 before rounding.
  const std::vector<TPartidaFiscal> tres = {Impresa(1002, 160, 2), Impresa(1003, 160, 2),
                                            Impresa(1005, 161, 2)};
  std::vector<TPartidaFiscal> retenidas;
  for (const TPartidaFiscal& p : tres)
    retenidas.push_back(Impresa(p.Importe.Unidades, p.Impuestos[0].Importe.Unidades, 2, true));
  // IEPS of 8 % and IVA of 0 % on both: the base of the IVA follows.
  TPartidaFiscal cascada = Impresa(1003, 80, 2);
  cascada.Impuestos[0].Numero = 1;
  cascada.Impuestos[0].Impuesto = ENUM_IMPUESTO_FISCAL::IEPS;
  cascada.Impuestos[0].Tasa.Unidades = 80'000;
  cascada.Impuestos.push_back(Impresa(1083, 0, 2).Impuestos[0]);
  cascada.Impuestos[1].Tasa.Unidades = 0;
  // The law's quota, and a local tax.
  TPartidaFiscal fijas = Impresa(1003, 160, 2);
  fijas.Impuestos[0].Factor = ENUM_FACTOR_FISCAL::CUOTA;
  fijas.Impuestos.push_back(Impresa(1003, 160, 2).Impuestos[0]);
  fijas.Impuestos[1].Impuesto = ENUM_IMPUESTO_FISCAL::LOCAL;
  const struct {
    const char* nombre;
    std::vector<TPartidaFiscal> partidas;
    int decimales;
    std::int64_t pedidos;
    const char* movimientos;
    std::int64_t porColocar;
  } casos[] = {
      {"none", tres, 2, 0, "", 0},
      {"one", tres, 2, 1, "2:+1 ", 0},
      {"all that there is room for", tres, 2, 3, "1:+1 2:+1 ", 1},
      {"down", tres, 2, -2, "3:-1 ", -1},
      {"less withheld", retenidas, 2, 1, "3:-1 ", 0},
      {"more withheld", retenidas, 2, -1, "2:+1 ", 0},
      {"under another tax", {cascada}, 2, 1, "1:+1 ", 0},
      {"fixed", {fijas}, 2, 1, "", 1},
      // Of six decimals the limits leave each tax one unit.
      {"past the half", {Impresa(10'031'245, 1'604'999, 6)}, 6, 1, "1:+1 ", 0},
      {"past the half in two lines",
       {Impresa(10'031'245, 1'604'999, 6), Impresa(10'062'494, 1'609'999, 6)},
       6,
       1,
       "1:+1 2:+1 ",
       0},
      {"short of the half", {Impresa(10'031'226, 1'604'996, 6)}, 6, 1, "", 1},
      {"back past the half", {Impresa(10'031'250, 1'605'000, 6)}, 6, -1, "1:-1 ", 0},
  };
  for (const auto& c : casos) {
    SCOPED_TRACE(c.nombre);
    TResumenFiscal resumen;
    resumen.Asignacion[4] = {ENUM_IMPUESTO_FISCAL::LOCAL, false, u"ISH"};
    resumen.DecimalesLinea = c.decimales;
    resumen.Partidas = c.partidas;
    for (std::size_t i = 0; i < c.partidas.size(); ++i) resumen.Partidas[i].Renglon = i + 1;
    resumen.Totaliza();
    const std::int64_t total = resumen.Total.Unidades;
    const TAjusteCentavos ajuste = AjustaCentavos(resumen, {total + c.pedidos, 2});
    std::string movimientos;
    for (const TMovimientoImpuesto& m : ajuste.Movimientos) {
      movimientos +=
          std::to_string(m.Renglon) + (m.Unidades > 0 ? ":+" : ":") + std::to_string(m.Unidades) + " ";
    }
    EXPECT_EQ(movimientos, c.movimientos);
    EXPECT_EQ(std::tuple(ajuste.Pedidos, ajuste.PorColocar), std::tuple(c.pedidos, c.porColocar));
    EXPECT_EQ(resumen.Total.Unidades, total + c.pedidos - c.porColocar);
    EXPECT_EQ(ajuste.Mensaje.empty(), c.porColocar == 0);
    const bool sigue = c.nombre == std::string("under another tax");
    EXPECT_TRUE(!sigue || resumen.Partidas[0].Impuestos[1].Base.Unidades == 1084);
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
    Documento documento(lineas);
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

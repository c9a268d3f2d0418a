#include "Ucalculocfdi/TResumenFiscal.h"

#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <utility>

#include "Ucalculocfdi/ReglasFiscales.h"
#include "framework/Excepciones.h"
#include "tests/Casos.h"
#include "tests/Mensaje.h"
#include "tests/Reales.h"
#include "tests/Ucalculocfdi/Partidas.h"

namespace vel {
namespace {

using namespace pruebas;
using enum ENUM_IMPUESTO_FISCAL;

Partida Impuesto(int numero, double tasa, int codigo = 0) {
  return {{u"IMPU" + IntToStr(numero), Variant(tasa)},
          {u"IMP" + IntToStr(numero) + u"APLA", Variant(codigo)}};
}

Partida Con(double precio, const Partida& otra = Impuesto(4, 16)) {
  return Mas({{u"PREC", Variant(precio)}}, otra);
}

Partida Cuota(const char16_t* modo, double cuota, int numero = 1) {
  return {{u"MAN_IEPS", Variant(u"S")},
          {u"APL_MAN_IMP", Variant(numero)},
          {u"APL_MAN_IEPS", Variant(modo)},
          {u"MTO_CUOTA", Variant(cuota)}};
}

std::string Texto(const TMontoFiscal& monto) { return UTF8Encode(monto.Texto()); }

std::string Codigos(const std::vector<TMotivoFiscal>& motivos) {
  std::string codigos;
  for (const TMotivoFiscal& m : motivos) codigos += UTF8Encode(m.Codigo) + " ";
  return codigos;
}

// The line of a case: see resumen.txt.
Partida LineaDeCaso(const std::vector<std::string>& c, TNotaPartida& nota) {
  const auto real = [&c](std::size_t i) { return Variant(pruebas::Real(c[i])); };
  const auto texto = [&c](std::size_t i) { return Variant(UTF8ToString(c[i])); };
  Partida p = {{u"CANT", real(1)},  {u"PREC", real(2)},  {u"TIP_CAM", real(3)},
               {u"DESC1", real(4)}, {u"DESC2", real(5)}, {u"DESC3", real(6)}};
  p = Mas(p, Cuota(u"", 0, StrToInt(UTF8ToString(c[7]))));
  p[u"APL_MAN_IEPS"] = texto(8);
  p[u"MTO_CUOTA"] = real(9);
  if (!c[10].empty()) nota.Unidades = StrToFloat(UTF8ToString(c[10]));
  p = Mas(p, {{u"TIPO_PROD", Variant(u"P")}, {u"TIPO_ELEM", texto(11)}, {u"MUESTRA_PAR", texto(12)}});
  for (int n = 1; n <= 8; ++n) p = Mas(p, Impuesto(n, 0, 6));
  std::istringstream impuestos = pruebas::Entrada(c[13]);
  for (std::string uno; impuestos >> uno;) {
    const std::size_t corte = uno.rfind(':');
    const int numero = uno[0] - '0';
    std::string tasa = uno.substr(2, corte - 2);
    const bool exento = tasa[0] == 'E';
    nota.Exento[static_cast<std::size_t>(numero - 1)] = exento;
    if (exento) tasa.replace(0, 1, "0");
    p = Mas(p, Impuesto(numero, pruebas::Real(tasa), std::stoi(uno.substr(corte + 1))));
  }
  return p;
}

void Comprueba(const char* archivo) {
  const std::map<std::string, ENUM_IMPUESTO_FISCAL> nombres{{"IVA", IVA}, {"ISR", ISR}, {"LOCAL", LOCAL}};
  std::vector<Partida> lineas;
  TDatosFiscales datos;
  std::string caso;
  for (const auto& c : pruebas::Casos(archivo, "|")) {
    if (c[0] == "D") {
      lineas.clear();
      datos = {.DecimalesMoneda = std::stoi(c[3]), .DecimalesLinea = std::stoi(c[2])};
      datos.Impuestos[4] = {LOCAL, false, u"ISH"};
      datos.Impuestos[5] = {LOCAL, true, u"Cedular"};
      caso = c[1];
    } else if (c[0] == "L") {
      TNotaPartida nota{.Renglon = lineas.size() + 1};
      lineas.push_back(LineaDeCaso(c, nota));
      datos.Notas.insert(datos.Notas.begin(), nota);
    } else if (c[0] == "N") {
      datos.Notas.push_back({.Renglon = std::stoul(c[1])});
    } else if (c[0] == "A") {
      const auto impuesto = nombres.find(c[2]);
      datos.Impuestos[std::stoul(c[1]) - 1] = {
          impuesto != nombres.end() ? impuesto->second : static_cast<ENUM_IMPUESTO_FISCAL>(99), false,
          UTF8ToString(c[3])};
    } else {
      Motor motor(lineas);
      motor.Partidas.First();
      TResumenFiscal resumen;
      const std::string mensaje = MensajeDe([&] { resumen = TResumenFiscal(motor, datos); });
      EXPECT_EQ(motor.Partidas.RecNo(), 1U) << caso;
      EXPECT_TRUE(c[0] == "J" ? resumen.DameJson() == c[1] : mensaje.find(c[1]) != std::string::npos)
          << caso << ": " << mensaje << resumen.DameJson();
      for (const TPartidaFiscal& p : resumen.Partidas) {
        for (const TImpuestoImpreso& i : p.Impuestos) {
          std::int64_t base = p.Importe.Unidades - p.Descuento.Unidades;
          for (const TImpuestoImpreso& k : p.Impuestos) {
            if (k.Numero < i.Numero && k.Numero <= i.CodigoBase)
              base += k.TasaNegativa ? -k.Importe.Unidades : k.Importe.Unidades;
          }
          EXPECT_TRUE(i.Factor == ENUM_FACTOR_FISCAL::CUOTA || base == i.Base.Unidades) << caso;
        }
      }
    }
  }
}

TEST(Resumen, PrintsWhatTheRulesGive) { Comprueba("documentos/resumen.txt"); }

TEST(Resumen, RefusesWhatCannotBePrinted) { Comprueba("documentos/resumen_errores.txt"); }

TEST(Resumen, TellsItsDistanceToTheEngineAndLeavesItAlone) {
  Motor motor({Con(95.79, Mas(Impuesto(1, 8), Impuesto(4, 16, 1))), Con(0)});
  EXPECT_FALSE(TResumenFiscal(motor).Diferencia.has_value()) << "the engine has no totals yet";
  motor.CalculaTotales();
  motor.Partidas.First();
  motor.Partidas.Next();
  const TResumenFiscal resumen(motor);
  EXPECT_EQ(motor.TotalImpuestos, 120.01);
  EXPECT_EQ(Texto(resumen.Total), "120.00");
  EXPECT_EQ(resumen.Diferencia, -1);
  EXPECT_EQ(motor.Partidas.RecNo(), 2U);
  EXPECT_FALSE(motor.Partidas.Eof());
  for (const auto& [precio, total] : {std::pair{100.06, "108"}, {100.6, "109"}}) {
    Motor yenes({Con(precio, Impuesto(4, 8))});
    yenes.CalculaTotales();
    TDatosFiscales sinDecimales;
    sinDecimales.DecimalesMoneda = 0;
    EXPECT_EQ(Texto(TResumenFiscal(yenes, sinDecimales).Total), total);
    EXPECT_EQ(TResumenFiscal(yenes, sinDecimales).Diferencia, 0) << "the engine's total has two decimals";
  }
  Motor compra(
      {Mas(Con(1e18), {{u"DESCU", Variant(50.0)}, {u"DESC1", Variant(7.0)}, {u"TIP_CAM", Variant(20.0)}})},
      ENUM_MODULO::MODULO_COMPRAS);
  compra.CalculaTotales();
  EXPECT_FALSE(TResumenFiscal(compra).Diferencia.has_value()) << "the engine's subtotal, of prices, is huge";
  EXPECT_EQ(Texto(TResumenFiscal(compra).Total), "1.16") << "the cost of 40 at an exchange rate of 20";
  compra.IgnoraTipoCambio = true;
  EXPECT_EQ(Texto(TResumenFiscal(compra).Total), "23.20");
}

TEST(Resumen, GivesReasonsWhereNoCentsHelp) {
  const struct {
    std::vector<Partida> lineas;
    const char* codigos;
  } casos[] = {{{}, "CFDV40 "},
               {{Con(0)}, "CFDI40166 CFDI40174 "},
               {{Mas(Con(5, {}), {{u"CANT", Variant(0.0)}})}, "CFDV40 "},
               {{Con(0.0049, Impuesto(4, -16))}, "CFDI40181 "},
               {{Mas(Con(10), {{u"DESC1", Variant(100.0)}})}, "CFDI40174 "}};
  for (const auto& c : casos) {
    Motor motor(c.lineas);
    EXPECT_EQ(Codigos(TResumenFiscal(motor, {.DecimalesLinea = 2}).Motivos), c.codigos);
  }
  Motor motor({Con(1), Con(0)});
  const TMotivoFiscal motivo = TResumenFiscal(motor).Motivos.back();
  EXPECT_EQ(UTF8Encode(motivo.Mensaje),
            "Partida 2, impuesto 4: no se cumple que la base de un traslado es mayor que cero");
}

TEST(Resumen, NoticesEveryFigureThatChanged) {
  using R = TResumenFiscal;
  Motor motor({Con(100, Mas(Impuesto(2, 10), Mas(Impuesto(4, 16), Impuesto(5, 3))))});
  TDatosFiscales datos{.DecimalesLinea = 2};
  datos.Impuestos[4] = {LOCAL, false, u"ISH"};
  datos.Fecha = EncodeDate({2022, 1, 1});
  const TResumenFiscal bueno(motor, datos);
  ASSERT_TRUE(bueno.Motivos.empty());
  const std::pair<const char*, std::function<void(R&)>> cambios[] = {
      {"CFDI40107 CFDI40108 ", [](R& r) { r.SubTotal.Decimales = 3; }},
      {"CFDI40108 CFDI40119 ", [](R& r) { ++r.SubTotal.Unidades; }},
      {"CFDI40110 CFDI40111 CFDI40119 ", [](R& r) { r.Descuento.Unidades = 10001; }},
      {"CFDI40111 CFDI40112 ", [](R& r) { r.Descuento.Decimales = 3; }},
      {"CFDI40119 ", [](R& r) { --r.Total.Unidades; }},
      {"CFDI40119 CFDI40203 ", [](R& r) { ++r.TotalImpuestosRetenidos.Unidades; }},
      {"CFDI40119 CFDI40205 ", [](R& r) { --r.TotalImpuestosTrasladados.Unidades; }},
      {"CFDI40203 CFDI40211 ", [](R& r) { ++r.Retenciones[0].Importe.Unidades; }},
      {"CFDI40208 CFDI40211 ",
       [](R& r) {
         r.Retenciones.push_back({IVA, {0, 2}});
       }},
      {"CFDI40202 CFDI40203 ", [](R& r) { r.TotalImpuestosRetenidos.Decimales = 3; }},
      {"CFDI40204 CFDI40205 ", [](R& r) { r.TotalImpuestosTrasladados.Decimales = 3; }},
      {"CFDI40210 CFDI40211 ", [](R& r) { r.Retenciones[0].Importe.Decimales = 3; }},
      {"CFDI40214 CFDI40215 ", [](R& r) { r.Traslados[0].Base.Decimales = 3; }},
      {"CFDI40220 CFDI40221 ", [](R& r) { r.Traslados[0].Importe.Decimales = 3; }},
      {"CFDI40108 ", [](R& r) { r.SubTotal.Decimales = 1; }},
      {"CFDI40215 ", [](R& r) { ++r.Traslados[0].Base.Unidades; }},
      {"CFDI40218 ", [](R& r) { ++r.Traslados[0].Tasa.Unidades; }},
      {"CFDI40205 CFDI40221 ", [](R& r) { ++r.Traslados[0].Importe.Unidades; }},
      {"IMPLOCAL ", [](R& r) { r.Locales[0].Nombre = u"ISN"; }},
      {"CFDI40119 IMPLOCAL ", [](R& r) { ++r.TotalLocalesTrasladados.Unidades; }},
      {"CFDI40166 CFDI40167 ", [](R& r) { r.Partidas[0].ValorUnitario.Unidades = 0; }},
      {"CFDI40167 ", [](R& r) { r.Partidas[0].Cantidad.Unidades = 1'000'200; }},
      {"CFDI40111 CFDI40169 ", [](R& r) { r.Partidas[0].Descuento.Unidades = 10001; }},
      {"CFDI40186 ", [](R& r) { r.Partidas[0].Impuestos[0].Base.Unidades -= 20; }},
      {"CFDI40215 CFDI40180 ", [](R& r) { r.Partidas[0].Impuestos[1].Base.Unidades += 20; }},
      {"CFDI40218 CFDI40177 ", [](R& r) { r.Partidas[0].Impuestos[1].Factor = ENUM_FACTOR_FISCAL::EXENTO; }},
      {"CFDI40184 ", [](R& r) { r.Partidas[0].Impuestos[0].Factor = ENUM_FACTOR_FISCAL::EXENTO; }},
  };
  constexpr TReglaFiscal kCerrada = {{}, {}, {}, u"2022-01-01", u"2023-12-31"};
  std::string rige;
  for (const auto* dia : {u"2021-12-31", u"2022-01-01", u"2023-12-31", u"2024-01-01", u""})
    rige += kCerrada.Rige(dia) ? "sí " : "no ";
  EXPECT_EQ(rige, "no sí sí no no ") << "without a day only the newest edition holds";
  std::set<std::u16string_view> vistos;
  for (const auto& [codigos, cambia] : cambios) {
    TResumenFiscal malo = bueno;
    cambia(malo);
    const std::vector<TMotivoFiscal> motivos = malo.Revisa();
    EXPECT_EQ(Codigos(motivos), codigos);
    malo.Fecha = TDateTime(malo.Fecha.value().Val() - 0.25);
    EXPECT_EQ(Codigos(malo.Revisa()), std::string_view(codigos).ends_with("IMPLOCAL ") ? "IMPLOCAL " : "");
    for (const TReglaFiscal& regla : ReglasFiscales()) {
      for (const TMotivoFiscal& m : motivos) vistos.insert(m.Codigo == regla.Codigo ? regla.Codigo : u"");
    }
  }
  for (const TReglaFiscal& regla : ReglasFiscales()) {
    // Bases above zero and the empty document: see above; more decimals than the line's are refused.
    const std::set<std::u16string_view> otras = {u"CFDV40", u"CFDI40168", u"CFDI40174", u"CFDI40181"};
    EXPECT_TRUE(vistos.contains(regla.Codigo) || otras.contains(regla.Codigo)) << UTF8Encode(regla.Codigo);
  }
}

TEST(Resumen, MovesCentsWithinTheLimits) {
  Motor motor({Con(95.79), Con(3)});
  motor.CalculaTotales();
  TResumenFiscal resumen(motor, {.DecimalesLinea = 2});
  TMontoFiscal& iva = resumen.Partidas[0].Impuestos[0].Importe;
  EXPECT_EQ(Texto(iva), "15.33");
  --iva.Unidades;
  resumen.Totaliza();
  EXPECT_EQ(Texto(resumen.Total), "114.59");
  EXPECT_EQ(resumen.Diferencia, -1);
  EXPECT_TRUE(resumen.Motivos.empty());
  --iva.Unidades;
  resumen.Totaliza();
  EXPECT_EQ(Codigos(resumen.Motivos), "CFDI40180 ") << "15.31 is below";
  const std::string antes = resumen.DameJson();
  iva.Unidades = std::numeric_limits<std::int64_t>::max();
  EXPECT_THROW(resumen.Totaliza(), EInvalidOperation);
  EXPECT_EQ(resumen.Partidas.size(), 2U);
  iva = {-1, 2};
  EXPECT_THROW(resumen.Totaliza(), EInvalidOperation);
  iva = {1531, 2};
  EXPECT_EQ(resumen.DameJson(), antes) << "what raised changed nothing";
}

TEST(Resumen, KeepsALargeAmountWithinTheLimitsOfItsRoundedPrice) {
  // The price in the currency ends 1.7E-13 below half a millionth: the limit's 10^-12 leaves it out.
  Motor motor({Mas(Con(1.500002), {{u"CANT", Variant(1e7)}, {u"TIP_CAM", Variant(3.000001)}})});
  const TResumenFiscal resumen(motor);
  EXPECT_EQ(resumen.Partidas[0].Importe, resumen.LimitesImporte(resumen.Partidas[0]).Superior);
  EXPECT_TRUE(resumen.Motivos.empty());
}

TEST(Resumen, KnowsTheLimitsByBothReadings) {
  const auto limites = [](TMontoFiscal base, std::int64_t tasa, int decimales) {
    return TResumenFiscal().LimitesImpuesto(
        {4, IVA, false, ENUM_FACTOR_FISCAL::TASA, base, {tasa, 6}, {0, decimales}});
  };
  for (const auto& c : pruebas::Casos("documentos/limites.txt", "|")) {
    const TMontoFiscal uno{std::stoll(c.at(1)), std::stoi(c.at(2))};
    const bool deImpuesto = c.at(0) == "tax";
    const TMontoFiscal otro{std::stoll(c.at(3)), std::stoi(c.at(4))};
    const TMontoFiscal importe{0, deImpuesto ? 2 : std::stoi(c.at(6))};
    const TLimitesFiscales l = deImpuesto ? limites(uno, otro.Unidades, otro.Decimales)
                                          : TResumenFiscal().LimitesImporte({1, uno, otro, importe, {}, {}});
    EXPECT_EQ(Texto(l.Inferior) + " " + Texto(l.Superior), c.at(5)) << c[1];
    const std::string enMoneda = Texto(l.InferiorMoneda) + " " + Texto(l.SuperiorMoneda);
    EXPECT_TRUE(!deImpuesto || enMoneda == c.at(6)) << c[1] << ": " << enMoneda;
  }
  for (const TMontoFiscal& base : {TMontoFiscal{-1, 2}, {1, -1}, {1, 7}})
    EXPECT_THROW(limites(base, 160'000, 2), EInvalidOperation);
}

TEST(Resumen, HandsItselfToPrograms) {
  Motor motor({Con(10, Mas(Impuesto(2, 10), Mas(Mas(Impuesto(1, 0, 6), Impuesto(4, 0, 6)), Impuesto(5, 3)))),
               Con(20, Mas(Impuesto(1, 8), Impuesto(4, 0)))});
  motor.CalculaTotales();
  TDatosFiscales datos;
  datos.Impuestos[4] = {LOCAL, false, u"\"ISH\"\n"};
  datos.Notas = {{.Renglon = 2, .Exento = {false, false, false, true}, .Unidades = {}}};
  const TResumenFiscal resumen(motor, datos);
  EXPECT_NE(resumen.DameJson().find(R"("Nombre":"\"ISH\"\u000a","TasaOCuota":"0.030000","Importe":"0.30")"),
            std::string::npos);
  EXPECT_NE(resumen.DameJson().find(R"("Diferencia":"-2.00")"), std::string::npos)
      << "the engine adds the withheld 1.00";
  const auto vuelta = [](const TClientDataSet& original) {
    TClientDataSet otra;
    otra.LoadFromXML(original.SaveToXML(), u"paquete");
    return otra;
  };
  TDatosFiscales limpios = datos;
  limpios.Impuestos[4].Nombre = u"ISH";
  const TResumenFiscal limpio(motor, limpios);
  TClientDataSet totales = vuelta(limpio.DameTotales());
  std::string texto;
  for (; !totales.Eof(); totales.Next()) {
    for (std::size_t i = 0; i < totales.FieldCount(); ++i)
      texto += UTF8Encode(totales.Fields(i).AsString()) + " ";
    texto += "; ";
  }
  EXPECT_EQ(texto,
            "SubTotal     30.00 ; Descuento     0.00 ; Traslado 003 Tasa 0.080000 20.00 1.60 ; Traslado 002 "
            "Exento  "
            "20.00  ; Retencion 001    1.00 ; LocalTraslado ISH  0.030000  0.30 ; TotalImpuestosTrasladados  "
            "   1.60 ; "
            "TotalImpuestosRetenidos     1.00 ; TotalLocalesTrasladados     0.30 ; TotalLocalesRetenidos     "
            "0.00 ; "
            "Total     30.90 ; Diferencia     -2.00 ; ");
  TClientDataSet partidas = vuelta(limpio.DamePartidas());
  const TClientDataSet& impuestos = *partidas.FieldByName(u"IMPUESTOS").NestedDataSet();
  EXPECT_EQ(impuestos.RecordCount(), 2U);
  EXPECT_EQ(impuestos.FieldByName(u"TIPO").AsString(), u"Retencion");
  EXPECT_EQ(impuestos.FieldByName(u"IMPORTE").AsFloat(), 1);
  partidas.Next();
  EXPECT_EQ(partidas.FieldByName(u"VALORUNITARIO").AsString(), u"20.000000");
  Motor sinTotales({Con(1)});
  EXPECT_FALSE(TResumenFiscal(sinTotales).DameTotales().Locate(u"CONCEPTO", Variant(u"Diferencia")));
  TImpuestoImpreso ajeno;
  ajeno.Impuesto = LOCAL;
  ajeno.Numero = 9;
  EXPECT_EQ(resumen.DameNombre(ajeno) + DameClaveImpuesto(ENUM_IMPUESTO_FISCAL::NINGUNO), u"");
}

TEST(Monto, IsWrittenWithAllItsDecimals) {
  EXPECT_EQ(Texto({-5, 2}), "-0.05");
  EXPECT_EQ(Texto({1050, 2}), "10.50");
  EXPECT_EQ(Texto({7, 0}), "7");
  EXPECT_EQ(Texto({std::numeric_limits<std::int64_t>::min(), 6}), "-9223372036854.775808");
  EXPECT_EQ(TMontoFiscal({-123456, 3}).Real(), -123.456);
}

}  // namespace
}  // namespace vel

// Whole documents against the results of a second, independent working of the rules, bit for bit.

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "Ucalculocfdi/Partida.h"
#include "tests/Casos.h"
#include "tests/Ucalculocfdi/Partidas.h"

namespace vel {
namespace {

using namespace pruebas;
struct Documento {
  std::string nombre;
  std::map<std::string, int> ajustes;
  std::vector<Partida> lineas;
  Pares da;
};

void Comprueba(const Documento& d) {
  SCOPED_TRACE(d.nombre);
  std::map<std::string, int> a = d.ajustes;
  TCalculoCFDI calculo(static_cast<ENUM_MODULO>(a.try_emplace("Modulo", 2).first->second),
                       static_cast<ENUM_PROC_FACTCOMP>(a["Proceso"]), TIPO_DOCTO::TD_FACTURA);
  calculo.SetPartidas(Lineas(d.lineas));
  calculo.IgnoraTipoCambio = a["IgnoraTipoCambio"] != 0;
  calculo.SubtotalSimple = a.try_emplace("SubtotalSimple", 1).first->second != 0;
  calculo.DecimalesPartida = a["DecimalesPartida"];
  calculo.DecimalesTotales = a["DecimalesTotales"];
  for (std::size_t i = 0; i < calculo.IncluyeImpuesto.size(); ++i) {
    calculo.IncluyeImpuesto[i] =
        a.try_emplace("IncluyeImpuesto" + std::to_string(i + 1), 1).first->second != 0;
  }
  calculo.CalculaTotales();
  std::map<std::string, double> montos{{"Subtotal", calculo.Subtotal},
                                       {"SumaDescuentos", calculo.SumaDescuentos},
                                       {"TotalImpuestosRedondeado", calculo.TotalImpuestosRedondeado},
                                       {"TotalImpuestos", calculo.TotalImpuestos}};
  std::map<std::string, std::string> listas;
  for (int n = 1; n <= TCalculoCFDI::kImpuestos; ++n) {
    const std::string cual = std::to_string(n);
    montos["TotalImpuesto" + cual] = calculo.GetTotalImpuesto(n - 1);
    montos["ImpuestoPartida" + cual] = calculo.ImpuestoPartida[static_cast<std::size_t>(n - 1)];
    if (n <= TCalculoCFDI::kDescuentos) montos["TotalDescuento" + cual] = calculo.GetTotalDescuento(n - 1);
    listas["ListaImpuesto" + cual] = ListaDe(calculo, n);
  }
  // What the file does not name is zero or empty.
  for (const auto& [nombre, valor] : d.da) {
    if (const auto monto = montos.find(nombre); monto != montos.end()) {
      EXPECT_EQ(monto->second, StrToFloat(UTF8ToString(valor))) << nombre;
      montos.erase(monto);
    } else {
      EXPECT_EQ(listas.at(nombre), valor);
      listas.erase(nombre);
    }
  }
  for (const auto& [nombre, monto] : montos) EXPECT_EQ(monto, 0) << nombre;
  for (const auto& [nombre, lista] : listas) EXPECT_EQ(lista, "") << nombre;
  // The last line once more, alone.
  const TCalculoCFDI::Impuestos impuestos = calculo.ImpuestoPartida;
  calculo.CalculaImpDescPar();
  EXPECT_EQ(calculo.ImpuestoPartida, impuestos);
  // And without a document.
  const TCalculoCFDI::Descuentos porcentajes = calculo.PorcDescuento;
  calculo.InicializaValores();
  calculo.PorcDescuento = porcentajes;
  calculo.CalculaImpDescPar();
  const TImpuestosPartida sola = CalcularImpuestosPartida(calculo.Partidas, calculo.Modulo,
                                                          calculo.IgnoraTipoCambio, calculo.DecimalesPartida);
  EXPECT_EQ(sola.Impuesto, impuestos);
  EXPECT_EQ(sola.ImpuestoRedondeado, calculo.TotalImpuesto);
  const bool conImpuestos = std::ranges::find(sola.Aplica, true) != sola.Aplica.end();
  EXPECT_TRUE(!conImpuestos || sola.Descuento == calculo.DescuentoPartida);
}

TEST(Documentos, GiveTheResultsOfTheCaseFile) {
  std::vector<Documento> documentos;
  for (const auto& c : pruebas::Casos("documentos/documentos.txt", " | ")) {
    ASSERT_EQ(c.size(), 2U) << c[0];
    if (c[0] == "documento") {
      documentos.push_back({.nombre = c[1], .ajustes = {}, .lineas = {}, .da = {}});
    } else if (c[0] == "ajuste") {
      for (const auto& [nombre, valor] : ParesDe(c[1])) documentos.back().ajustes[nombre] = std::stoi(valor);
    } else if (c[0] == "partida") {
      documentos.back().lineas.push_back(LineaDe(c[1]));
    } else {
      const std::size_t igual = c[1].find('=');
      documentos.back().da.emplace_back(c[1].substr(0, igual), c[1].substr(igual + 1));
    }
  }
  for (const Documento& d : documentos) Comprueba(d);
}

}  // namespace
}  // namespace vel

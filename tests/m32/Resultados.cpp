// Writes the bits of 1.2 million results, in groups of a name and 16 hexadecimal digits a line, so that two
// builds can be compared: roundings, formulas, numbers through their texts, totals of documents.

#include <array>
#include <bit>
#include <cinttypes>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string_view>
#include <vector>

#include "Uformula/TFormula.h"
#include "Uutilext/documents/Redondeo.h"
#include "framework/Numeros.h"
#include "tests/Ucalculocfdi/Partidas.h"

namespace {

void Escribe(const char* grupo, double valor) {
  std::printf("%s %016" PRIX64 "\n", grupo, std::bit_cast<std::uint64_t>(valor));
}

class Azar {
 public:
  // The engine is the same everywhere; the standard distributions are not.
  int Hasta(std::uint64_t limite) { return static_cast<int>(motor_() % limite); }

  // Amounts, halves with their neighbours, products of rates, the fifteenth digit, other magnitudes.
  double Monto() {
    const double entero = Hasta(1'000'000'000);
    double v = 0;
    switch (Hasta(6)) {
      case 0:
        v = entero / 100;
        break;
      case 1:
        v = (entero + 0.5) / 1000;
        break;
      case 2:
        v = std::nextafter((entero + 0.5) / 1000, Hasta(2) == 0 ? 0 : 1e300);
        break;
      case 3:
        v = entero / 1e6 * 1.16 / 3;
        break;
      case 4:
        v = (entero * 1e6 + Hasta(1'000'000)) / kPotencias[Hasta(16)];
        break;
      default:
        v = std::ldexp(entero, Hasta(60) - 40);
    }
    return Hasta(4) == 0 ? -v : v;
  }

 private:
  static constexpr double kPotencias[] = {1,   1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                          1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  std::mt19937_64 motor_{20241121};
};

void Redondeos(Azar& azar) {
  std::vector<double> columna;
  for (int i = 0; i < 200'000; ++i) {
    const double v = azar.Monto();
    columna.push_back(v);
    Escribe("g_redoTo", vel::g_redoTo(v, i % 10));
    Escribe("Redondea", vel::Redondea(v, i % 12 - 3));
    Escribe("Redondea4", vel::Redondea4(v));
    Escribe("Redondea8", vel::Redondea8(v, i % 2 == 0 ? 0.05 : 0.00001));
  }
  columna.resize(100'000);
  std::vector<double> salida(columna.size());
  vel::g_redoTo(columna, 2, salida);
  for (const double r : salida) Escribe("columna", r);
}

void Textos(Azar& azar) {
  for (int i = 0; i < 150'000; ++i) Escribe("texto", vel::StrToFloat(vel::FloatToStr(azar.Monto())));
}

void Formulas(Azar& azar) {
  constexpr std::u16string_view kFormulas[] = {u"A*1.16*0.1+A/3-A*1.16",
                                               u"SI(A>B,A*0.05,B/7)",
                                               u"RAIZ(A*A+B*B)",
                                               u"TRUNCAR(A/B*100)/100",
                                               u"(A-B)/(A+B)*100",
                                               u"FRACC(A)+QADRADO(B)",
                                               u"PTENCIA(1+1/(A+9),FRACC(B)*360)",
                                               u"CUBO(A)/PTENCIA(B,FRACC(A)*9)"};
  for (const std::u16string_view texto : kFormulas) {
    vel::TFormula formula;
    vel::TVariableEnlazada a = formula.EnlazaVariable(u"A");
    vel::TVariableEnlazada b = formula.EnlazaVariable(u"B");
    a.Asigna(2);
    b.Asigna(1);
    formula.NewFormula(texto);
    for (int i = 0; i < 20'000; ++i) {
      a.Asigna(std::abs(azar.Monto()) + 0.01);
      b.Asigna(std::abs(azar.Monto()) + 1);
      Escribe("formula", formula.Execute());
    }
  }
}

void Documentos(Azar& azar) {
  constexpr double kTasas[] = {16, 8, 0, 26.5, 10.6667, -10, 3, 0.5};
  using vel::Variant;
  for (int i = 0; i < 3'000; ++i) {
    std::vector<pruebas::Partida> lineas;
    for (int k = azar.Hasta(4); k >= 0; --k) {
      pruebas::Partida& linea = lineas.emplace_back();
      linea[u"CANT"] = Variant(azar.Hasta(100'000) / 1000.0 + 1);
      linea[u"PREC"] = Variant(azar.Hasta(10'000'000) / 7.0);
      linea[u"TIP_CAM"] = Variant(azar.Hasta(2) == 0 ? 1 : 17.0345);
      linea[u"DESC1"] = Variant(azar.Hasta(300) / 10.0);
      for (int n = 1; n <= 4; ++n) {
        linea[u"IMPU" + vel::IntToStr(n)] = Variant(kTasas[azar.Hasta(8)]);
        linea[u"IMP" + vel::IntToStr(n) + u"APLA"] = Variant(azar.Hasta(4));
      }
    }
    pruebas::Motor calculo(lineas);
    calculo.CalculaTotales();
    Escribe("documento", calculo.Subtotal);
    Escribe("documento", calculo.TotalImpuestos);
    for (int n = 0; n < 8; ++n) Escribe("documento", calculo.GetTotalImpuesto(n));
  }
}

}  // namespace

int main() {
  Azar azar;
  Redondeos(azar);
  Textos(azar);
  Formulas(azar);
  Documentos(azar);
  return 0;
}

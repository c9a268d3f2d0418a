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

#include "Ucalculocfdi/TCalculoCFDI.h"
#include "Uformula/TFormula.h"
#include "Uutilext/documents/Redondeo.h"
#include "framework/Numeros.h"
#include "framework/TClientDataSet.h"

namespace {

using vel::UnicodeString;

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
  std::vector<vel::TFieldDef> campos{{.Name = u"CVE_DOC", .DataType = vel::TFieldType::ftString},
                                     {.Name = u"MAN_IEPS", .DataType = vel::TFieldType::ftString},
                                     {.Name = u"TIPO_PROD", .DataType = vel::TFieldType::ftString},
                                     {.Name = u"TIPO_ELEM", .DataType = vel::TFieldType::ftString},
                                     {.Name = u"APL_MAN_IEPS", .DataType = vel::TFieldType::ftString}};
  for (const std::u16string_view nombre :
       {u"CANT", u"PREC", u"COST", u"TIP_CAM", u"DESC1", u"DESC2", u"DESC3", u"DESCU", u"MTO_CUOTA"}) {
    campos.push_back({.Name = UnicodeString(nombre), .DataType = vel::TFieldType::ftFloat});
  }
  for (int n = 1; n <= 8; ++n) {
    campos.push_back({.Name = u"IMPU" + vel::IntToStr(n), .DataType = vel::TFieldType::ftFloat});
    campos.push_back({.Name = u"IMP" + vel::IntToStr(n) + u"APLA", .DataType = vel::TFieldType::ftInteger});
  }
  campos.push_back({.Name = u"APL_MAN_IMP", .DataType = vel::TFieldType::ftInteger});
  constexpr double kTasas[] = {16, 8, 0, 26.5, 10.6667, -10, 3, 0.5};
  for (int i = 0; i < 3'000; ++i) {
    vel::TClientDataSet lineas;
    lineas.CreateDataSet(campos);
    for (int k = azar.Hasta(4); k >= 0; --k) {
      lineas.Append();
      const auto pon = [&lineas](std::u16string_view campo, double valor) {
        lineas.FieldByName(campo).SetValue(vel::Variant(valor));
      };
      lineas.FieldByName(u"CVE_DOC").SetValue(vel::Variant(u"A1"));
      lineas.FieldByName(u"MAN_IEPS").SetValue(vel::Variant(u"N"));
      pon(u"CANT", azar.Hasta(100'000) / 1000.0 + 1);
      pon(u"PREC", azar.Hasta(10'000'000) / 7.0);
      pon(u"TIP_CAM", azar.Hasta(2) == 0 ? 1 : 17.0345);
      pon(u"DESC1", azar.Hasta(300) / 10.0);
      for (int n = 1; n <= 4; ++n) {
        pon(u"IMPU" + vel::IntToStr(n), kTasas[azar.Hasta(8)]);
        lineas.FieldByName(u"IMP" + vel::IntToStr(n) + u"APLA").SetValue(vel::Variant(azar.Hasta(4)));
      }
      lineas.Post();
    }
    vel::TCalculoCFDI calculo(vel::ENUM_MODULO::MODULO_VENTAS, vel::ENUM_PROC_FACTCOMP::PROC_NORMAL,
                              vel::TIPO_DOCTO::TD_FACTURA);
    calculo.SetPartidas(lineas);
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

// Formulas of any text, with variables given as texts and bound as numbers, against the plain rewriting
// rules.
#include "Uformula/TFormula.h"
#include "fuzz/Entrada.h"
#include "fuzz/Exige.h"
#include "tests/Uformula/Reescritura.h"

namespace {

using fuzz::Exige;
using fuzz::ExigeIgual;
using pruebas::Texto;
using namespace vel;

// Variables that a formula may name, and what they may hold.
constexpr const char16_t* kNombres[] = {u"A", u"B", u"IVA", u"T", u"FUN1", u"SUMA0"};
constexpr const char16_t* kTextos[] = {u"7", u"-2.25", u"0.16", u"0", u"texto", u"", u"1E308", u" 5 "};

// The rules leave open what a formula without balance means.
bool EnBalance(const Texto& formula) {
  int abiertos = 0;
  for (const char16_t c : formula) {
    abiertos += c == u'(' ? 1 : c == u')' ? -1 : 0;
    if (abiertos < 0) return false;
  }
  return abiertos == 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
  fuzz::Entrada entrada(datos, largo);
  pruebas::Literal reglas;
  TStringList lista;
  TFormula formula;
  std::vector<std::pair<TVariableEnlazada, double>> enlaces;
  for (const char16_t* nombre : kNombres) {
    Texto valor = kTextos[entrada.Entero<std::size_t>(0, std::size(kTextos) - 1)];
    // Names of results, which would hide what the formula computes.
    const bool oculta = Texto(nombre).find_first_of(u"01") != Texto::npos;
    if (oculta && entrada.Entero(0, 3) != 3) valor.clear();
    lista.SetValue(nombre, valor);
    if (!valor.empty()) reglas.variables[nombre] = valor;
  }
  formula.SetVariables(lista);
  for (const char16_t* nombre : {u"A", u"IVA", u"FUN1"}) {
    if (!entrada.Moneda()) continue;
    const double valor = entrada.Doble();
    formula.EnlazaVariable(nombre).Asigna(valor);
    reglas.variables.erase(nombre);
    if (!(valor != valor)) reglas.variables[nombre] = FloatToStr(valor);
  }
  const Texto texto = fuzz::Entrada::ATexto(entrada.Resto().substr(0, 200));
  const Texto obtenido =
      pruebas::Resultado([&] { return formula.FormateaFormula(texto), formula.Execute(); });
  if (!EnBalance(texto)) {
    double numero = 0;
    Exige(!TryStrToFloat(obtenido, numero), "parentheses without balance have a value");
    return 0;
  }
  const Texto esperado = pruebas::Resultado([&] { return reglas.Formula(texto); });
  ExigeIgual(obtenido, esperado, "the value");
  // Of what was refused before its tree was built there is nothing to execute.
  if (formula.Nodos() == 0) return 0;
  ExigeIgual(pruebas::Resultado([&] { return formula.Execute(); }), esperado, "the value, once more");
  // A column of one row is the same formula.
  double salida = 0;
  const auto fallas = formula.Ejecuta({}, {&salida, 1});
  ExigeIgual(fallas.empty() ? pruebas::Resultado([&] { return salida; }) : fallas.front().Mensaje, esperado,
             "the value by columns");
  return 0;
}

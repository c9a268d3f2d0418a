#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <vector>

#include "Uformula/Uformula.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "tests/Uformula/Reescritura.h"

namespace vel {
namespace {

using pruebas::Literal;
using pruebas::Resultado;
using pruebas::Texto;

class Generador {
 public:
  Texto Expresion(int hondo) {
    Texto t = De({u"", u"", u"", u"", u"", u"-", u"+", u" -"}) + Operando(hondo);
    for (auto n = azar_() % 4; n > 0; --n) {
      t += De({u"+", u"-", u"*", u"/", u"+", u"-", u"*", u"/", u"<", u">", u"<>", u"<=", u">=", u"="}, 13);
      if (azar_() % 24 == 0) t += De({u"-", u"+", u"*", u" "});
      t += Operando(hondo);
    }
    return t;
  }

 private:
  Texto Operando(int hondo) {
    const auto clase = azar_() % (hondo > 0 ? 12 : 8);
    if (clase < 4) return De({u"1", u"2", u"0.1", u"3.7", u"12", u"0", u"1234.56", u".5"});
    if (clase < 7) return De({u"A", u"b", u"IVA"});
    if (clase == 7 && azar_() % 6 != 0) return u"C";
    if (clase == 7)
      return De(
          {u"X", u"FUN0", u"fun1", u"FUN3", u"SUMA0", u"SI1", u"", u"T", u"\tC", u"C\t", u"\t", u"1E308"});
    if (clase < 10)
      return De({u"", u"", u"", u"", u"", u"", u"", u"2", u"FUN"}) + u"(" + Expresion(hondo - 1) + Cola() +
             u")";
    Texto t = NombreDeInterna() + u"(";
    for (auto n = azar_() % 10 == 0 ? 1 : 3; n > 0; --n)
      t += Expresion(hondo - 1) + Cola() + (n > 1 ? u"," : u"");
    return t + u")";
  }
  Texto NombreDeInterna() {
    if (azar_() % 2 == 0) return De({u"SUMA", u"si", u"SI", u"RAIZ", u"Truncar"});
    const auto& todas = Literal::Internas();
    return std::next(todas.begin(), static_cast<std::ptrdiff_t>(azar_() % todas.size()))->first;
  }
  Texto Cola() { return azar_() % 12 == 0 ? De({u"\t", u"\t\t", u" ", u",\t", u"(1)\t"}) : u""; }
  Texto De(std::vector<Texto> opciones, std::size_t raras = 0) {
    const std::size_t i = azar_() % opciones.size();
    return raras != 0 && i >= raras && azar_() % 8 != 0 ? opciones[0] : opciones[i];
  }
  std::mt19937 azar_{20240229};
};

using Variables = std::map<Texto, Texto, LessText>;

const Variables kVariables{{u"A", u"7"},      {u"B", u"-2.25"}, {u"C", u"100"},
                           {u"IVA", u"0.16"}, {u"T", u"texto"}, {u"FUN3", u"8"}};

// Formulas with none or some of the variables bound, which hide the list's and count as the texts of their
// numbers.
class Comparacion {
 public:
  Comparacion() { Renueva(); }

  void Compara(const Texto& texto) {
    if (azar_() % 100 == 0) Renueva();
    for (const bool construye : {true, false}) ComparaValores(texto, construye);
    if (formula_->Nodos() > 0 && azar_() % 4 == 0) ComparaColumnas(texto);
  }
  int conValor = 0;

 private:
  void ComparaValores(const Texto& texto, bool construye) {
    Variables textos = kVariables;
    for (auto& [nombre, variable] : enlaces_) {
      variable.Asigna(Valor());
      textos.erase(nombre);
      if (!std::isnan(variable.Valor())) textos[nombre] = FloatToStr(variable.Valor());
    }
    Literal literal;
    literal.variables = textos;
    const Texto esperado = Resultado([&] { return literal.Formula(texto); });
    const Texto obtenido = Resultado([&] {
      if (construye || formula_->Nodos() == 0) formula_->FormateaFormula(texto);
      return formula_->Execute();
    });
    ASSERT_EQ(UTF8Encode(obtenido), UTF8Encode(esperado)) << UTF8Encode(texto);
    for (const auto& [nombre, valor] : textos) ASSERT_EQ(formula_->RemplazaVariables(nombre), valor);
    ComparaPartes(literal, texto);
    double numero = 0;
    conValor += TryStrToFloat(esperado, numero) ? 1 : 0;
  }

  void ComparaPartes(Literal& literal, const Texto& texto) {
    ASSERT_EQ(formula_->Nodos(), literal.nodos.size()) << UTF8Encode(texto);
    for (std::size_t n = 0; n < formula_->Nodos(); ++n) {
      const FUNCTION_SIMPLE nodo = formula_->Nodo(n);
      const Literal::Nodo& otro = literal.nodos[u"FUN" + IntToStr(static_cast<std::int64_t>(n))];
      ASSERT_TRUE(nodo.operador == otro.op && nodo.izquierdo == otro.izq && nodo.derecho == otro.der)
          << UTF8Encode(texto) << ": " << n;
    }
    for (std::size_t n = 0; n < formula_->Internas(); ++n) {
      const FUNCTION_INTERNA llamada = formula_->Interna(n);
      const auto& args = literal.internas[llamada.nombre + IntToStr(static_cast<std::int64_t>(n))].args;
      ASSERT_EQ(llamada.argumentos.Count(), args.size()) << UTF8Encode(texto);
      for (std::size_t a = 0; a < args.size(); ++a)
        ASSERT_TRUE(llamada.argumentos[a] == args[a]) << UTF8Encode(texto);
    }
  }

  // Each row is what its values assigned one by one give; the variables keep what they had, and those without
  // a column count too.
  void ComparaColumnas(const Texto& texto) {
    std::vector<double> salida(azar_() % 256 == 0 ? 600 : azar_() % 4);
    std::vector<std::vector<double>> valores;
    std::vector<TVariableEnlazada> variables;
    for (auto& [nombre, variable] : enlaces_) {
      variable.Asigna(Valor());
      if (azar_() % 4 == 0) continue;
      variables.push_back(variable);
      std::generate_n(std::back_inserter(valores.emplace_back()), salida.size(), [&] { return Valor(); });
    }
    std::vector<TColumnaFormula> columnas;
    for (std::size_t c = 0; c < variables.size(); ++c) columnas.push_back({variables[c], valores[c]});
    const Texto antes = Resultado([&] { return formula_->Execute(); });
    const auto fallas = formula_->Ejecuta(columnas, salida);
    ASSERT_EQ(Resultado([&] { return formula_->Execute(); }), antes);
    auto falla = fallas.begin();
    for (std::size_t r = 0; r < salida.size(); ++r) {
      for (std::size_t c = 0; c < variables.size(); ++c) variables[c].Asigna(valores[c][r]);
      const bool fallo = falla != fallas.end() && falla->Renglon == r;
      ASSERT_TRUE(!fallo || std::isnan(salida[r]));
      const Texto obtenido = fallo ? (falla++)->Mensaje : Resultado([&] { return salida[r]; });
      const Texto esperado = Resultado([&] { return formula_->Execute(); });
      ASSERT_EQ(UTF8Encode(obtenido), UTF8Encode(esperado)) << UTF8Encode(texto) << ", " << r;
    }
    ASSERT_EQ(falla, fallas.end());
  }

  void Renueva() {
    formula_ = std::make_unique<TFormula>();
    TStringList lista;
    for (const auto& [nombre, valor] : kVariables) lista.SetValue(nombre, valor);
    formula_->SetVariables(lista);
    enlaces_.clear();
    if (azar_() % 4 == 0) return;
    for (const char16_t* nombre : {u"A", u"C", u"iva", u"T", u"X", u"Fun0", u"FUN3", u"SUMA0"}) {
      if (azar_() % 3 == 0) enlaces_.emplace(nombre, formula_->EnlazaVariable(nombre));
    }
  }

  double Valor() {
    constexpr double kInf = std::numeric_limits<double>::infinity();
    static constexpr double kRaros[] = {std::numeric_limits<double>::quiet_NaN(),
                                        kInf,
                                        -kInf,
                                        -0.0,
                                        0.1 + 0.2,
                                        1.7976931348623157e308,
                                        1e-320};
    const double entero = static_cast<double>(azar_() % 100'000'000) - 3e7;
    if (azar_() % 20 == 0) return kRaros[azar_() % std::size(kRaros)];
    return azar_() % 3 == 0 ? std::ldexp(entero, static_cast<int>(azar_() % 120) - 80) : entero / 100;
  }

  std::unique_ptr<TFormula> formula_;
  std::map<Texto, TVariableEnlazada, LessText> enlaces_;
  std::mt19937 azar_{7};
};

TEST(Formula, AgreesWithTheLiteralRulesOnRandomFormulas) {
  Comparacion comparacion;
  Generador generador;
  for (int i = 0; i < 40'000 && !HasFatalFailure(); ++i) comparacion.Compara(generador.Expresion(3));
  EXPECT_GT(comparacion.conValor, 20'000);
}

}  // namespace
}  // namespace vel

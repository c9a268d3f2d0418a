#include <cmath>
#include <gtest/gtest.h>
#include <random>

#include "Uformula/Uformula.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "tests/Casos.h"
#include "tests/Mensaje.h"
#include "tests/Reales.h"

namespace vel {
namespace {

using pruebas::MensajeDe;

double Evalua(std::u16string_view texto) {
  TFormula formula;
  formula.NewFormula(texto);
  return formula.Execute();
}

UnicodeString Repite(std::u16string_view parte, int veces) {
  UnicodeString texto;
  while (veces-- > 0) texto += parte;
  return texto;
}

void Pon(TFormula& formula, std::u16string_view lineas) {
  TStringList lista;
  lista.SetText(lineas);
  formula.SetVariables(lista);
}

TEST(Formula, GivesTheValuesOfTheCaseFile) {
  TFormula formula;  // One object for all: no case may spoil the next.
  for (const auto& caso : pruebas::Casos("formulas/casos.txt", ";")) {
    ASSERT_EQ(caso.size(), 3U) << caso[0];
    TStringList variables;
    variables.SetText(Trim(StringReplace(UTF8ToString(caso[1]), u",", u"\n")));
    UnicodeString obtenido;
    const std::string mensaje = MensajeDe([&] {
      formula.SetVariables(variables);
      formula.NewFormula(UTF8ToString(caso[0]));
      obtenido = FloatToStr(formula.Execute());
    });
    EXPECT_EQ(mensaje == "none" ? UTF8Encode(obtenido) : "error: " + mensaje,
              UTF8Encode(Trim(UTF8ToString(caso[2]))))
        << caso[0];
  }
}

TEST(Formula, IsBuiltOnceAndExecutedWithOtherVariables) {
  TFormula formula;
  EXPECT_THROW(formula.Execute(), EInvalidOperation);
  EXPECT_THROW(formula.NewFormula(u"A*B+2*3"), EConvertError);
  Pon(formula, u"A=2\nB=5");
  EXPECT_EQ(formula.Execute(), 16);
  Pon(formula, u"A=3\nB=5");
  EXPECT_EQ(formula.Execute(), 21);
  Pon(formula, u"A=3\nB=x");
  EXPECT_THROW(formula.Execute(), EConvertError);
  Pon(formula, u"A=3\nB=");
  EXPECT_THROW(formula.Execute(), EConvertError);
  Pon(formula, u"b=7\nC=1\nA=1\nfun0=10");  // The variable hides node FUN0, which is A*B.
  EXPECT_EQ(formula.Execute(), 16);
  Pon(formula, u"B=4\nA=1");
  EXPECT_EQ(formula.Execute(), 10);
  // Unbalanced parentheses leave no formula, and the object as good as new.
  EXPECT_THROW(formula.NewFormula(u"(A"), EInvalidOperation);
  EXPECT_EQ(formula.Nodos(), 0u);
  EXPECT_THROW(formula.Execute(), EInvalidOperation);
  EXPECT_TRUE(formula.NewFormula(u"A+B"));
  EXPECT_EQ(formula.Texto(), u"A+B");
  // A bound variable hides a node too.
  formula.NewFormula(u"A*B-1");
  EXPECT_EQ(formula.Execute(), 3);
  formula.EnlazaVariable(u"Fun0").Asigna(10);
  EXPECT_EQ(formula.Execute(), 9);
}

TEST(Formula, TakesTheFirstInOrderOfARepeatedVariable) {
  TFormula formula;
  Pon(formula, u"A=6\na=5\nsin valor\nB=1");
  formula.NewFormula(u"A");
  EXPECT_EQ(formula.Execute(), 5);
  Pon(formula, u"\n\nA=4\n\n");
  EXPECT_EQ(formula.Execute(), 4) << "lines that are no pairs";
  EXPECT_THROW(Pon(formula, u"A=6\na=6"), EStringListError);
  EXPECT_THROW(formula.Execute(), EConvertError);
}

// What an operation hands to the next is the double that FloatToStr's text reads back to.
TEST(Formula, CarriesFifteenDigitsBetweenOperations) {
  TFormula formula;
  Pon(formula, u"A=1");
  formula.NewFormula(u"A*1");
  std::mt19937_64 azar(5);
  // Decimals beside a tie at the fifteenth digit, binary ties, amounts, all magnitudes, powers of ten.
  for (int i = 0; i < 100'000; ++i) {
    const auto entero = static_cast<double>(azar() % 1'000'000'000'000'000);
    const double formas[] = {
        entero / 8,
        std::ldexp(entero, -static_cast<int>(azar() % 90)),
        entero / 1e6,
        (std::floor(entero / 10) + 0.5) / std::pow(10.0, static_cast<double>(azar() % 22)),
        std::ldexp(entero, static_cast<int>(azar() % 1900) - 1074),
        std::nextafter(std::pow(10.0, static_cast<double>(azar() % 40) - 20), i % 2 * 1e30)};
    const double valor = formas[i % 6] * (i % 7 == 0 ? -1 : 1);
    const std::string exacto = "A=" + pruebas::Exacto(valor);
    Pon(formula, UTF8ToString(exacto));
    ASSERT_EQ(formula.Execute(), StrToFloat(FloatToStr(valor))) << exacto;
  }
}

TEST(Formula, TakesColumnsOfItsOwnVariablesOnly) {
  TFormula formula, otra;
  const std::vector<double> tres{1, 2, 3};
  std::vector<double> salida{4, 0, std::nan("")};
  TVariableEnlazada a = formula.EnlazaVariable(u"A");
  const auto mensaje = [&](std::vector<TColumnaFormula> columnas) {
    return MensajeDe([&] { formula.Ejecuta(columnas, salida); });
  };
  EXPECT_EQ(mensaje({{a, tres}}), "No hay fórmula que evaluar");
  a.Asigna(8);
  formula.NewFormula(u"8/A");
  EXPECT_EQ(mensaje({{a, tres}, {otra.EnlazaVariable(u"A"), tres}}),
            "La columna 2 de la fórmula no es de una variable suya");
  EXPECT_EQ(mensaje({{a, std::span(tres).first(2)}}),
            "La columna 1 de la fórmula no tiene tantos valores como la salida");
  EXPECT_EQ(mensaje({{a, tres}, {formula.EnlazaVariable(u"a"), tres}}),
            "La columna 2 de la fórmula es de una variable que ya tiene otra");
  for (const char16_t* nombre : {u"", u"A B", u"5", u" "}) {
    EXPECT_THROW(formula.EnlazaVariable(nombre), EInvalidOperation) << UTF8Encode(nombre);
  }
  // The output may be the column itself.
  const auto fallas = formula.Ejecuta(std::vector<TColumnaFormula>{{a, salida}}, salida);
  EXPECT_EQ(salida[0], 2);
  ASSERT_EQ(fallas.size(), 2u);
  EXPECT_EQ(UTF8Encode(fallas[0].Mensaje), "'INF' no es un valor de punto flotante válido");
  EXPECT_EQ(UTF8Encode(fallas[1].Mensaje), "'A' no es un valor de punto flotante válido");
  EXPECT_EQ(formula.Execute(), 1) << "what was assigned stays";
}

TEST(Formula, EndsWhateverItHolds) {
  constexpr int kMuchos = 100'000;
  EXPECT_EQ(Evalua(Repite(u"(", kMuchos) + u"1" + Repite(u")", kMuchos)), 1);
  EXPECT_EQ(Evalua(Repite(u"(1+", kMuchos) + u"1" + Repite(u")", kMuchos)), kMuchos + 1);
  EXPECT_EQ(Evalua(Repite(u"ABS(1+", kMuchos) + u"1" + Repite(u")", kMuchos)), kMuchos + 1);
  EXPECT_EQ(Evalua(u"1" + Repite(u"+1", kMuchos)), kMuchos + 1);
  EXPECT_EQ(Evalua(u"SUMA(1" + Repite(u",1", kMuchos) + u")"), kMuchos + 1);
  EXPECT_THROW(Evalua(Repite(u"(", kMuchos) + u"1" + Repite(u"2)", kMuchos)), EConvertError);
  EXPECT_THROW(Evalua(Repite(u"(", kMuchos)), EInvalidOperation);
  EXPECT_THROW(Evalua(Repite(u"A(", kMuchos) + u"1" + Repite(u"\t)", kMuchos)), EConvertError);
  EXPECT_THROW(Evalua(Repite(u"-", kMuchos)), EConvertError);
  // An unknown name at the end of a long chain makes the careful walk go all the way down.
  EXPECT_THROW(Evalua(Repite(u"(1+", kMuchos) + u"X" + Repite(u")", kMuchos)), EConvertError);
  // Each node is named twice by the next: following every name would take 2^49 steps.
  UnicodeString doble = u"FUN49";
  for (int i = 0; i < 49; ++i) doble = u"(FUN" + IntToStr(i) + u"+FUN" + IntToStr(i) + u")," + doble;
  EXPECT_EQ(Evalua(u"MAX(" + doble + u",(1+0))"), std::ldexp(1.0, 49));
  EXPECT_THROW(Evalua(u"MAX(" + doble + u",(1+0))+X"), EConvertError);
}

TEST(Formula, OffersItsStepsOneByOne) {
  TFormula formula;
  for (const char16_t* si : {u"<=", u"-5"}) EXPECT_TRUE(TFormula::EsOperador(si)) << UTF8Encode(si);
  for (const char16_t* no : {u"", u"(", u"5-"}) EXPECT_FALSE(TFormula::EsOperador(no)) << UTF8Encode(no);
  EXPECT_TRUE(TFormula::EsFuncionInterna(u"Qadrado"));
  for (const char16_t* no : {u"CUADRADO", u""}) EXPECT_FALSE(TFormula::EsFuncionInterna(no));
  EXPECT_EQ(TFormula::Redondea(2.5), 3);
  EXPECT_EQ(TFormula::Redondea(-2147483648.4), -2147483647);
  EXPECT_THROW(TFormula::Redondea(2147483647.5), EInvalidOperation);
  EXPECT_THROW(TFormula::Redondea(std::nan("")), EInvalidOperation);

  EXPECT_EQ(formula.DameFuncionN(u"-A"), u"-A");
  EXPECT_EQ(formula.DameFuncionN(u"8-2*3"), u"FUN1");
  EXPECT_EQ(formula.RemplazaVariables(u"fun1"), u"2");
  formula.CreaFuncionN(u"FUN1/4");
  EXPECT_EQ(formula.Tokens()[0], u"FUN2");
  EXPECT_EQ(formula.RemplazaVariables(u"FUN2"), u"0.5");
  EXPECT_EQ(formula.RemplazaVariables(u"FUN02"), u"FUN02");
  EXPECT_EQ(formula.CreaFuncionInterna(u"suma", u"FUN2,2,A"), 0u);
  EXPECT_THROW(formula.RemplazaVariables(u"SUMA0"), EConvertError);
  Pon(formula, u"A=7");
  EXPECT_EQ(formula.RemplazaVariables(u"SUMA0"), u"9.5");
  EXPECT_EQ(formula.RemplazaVariables(u"A"), u"7");
  TVariableEnlazada b = formula.EnlazaVariable(u"B");
  EXPECT_TRUE(std::isnan(b.Valor()));
  EXPECT_EQ(formula.RemplazaVariables(u"B"), u"B") << "no value yet";
  b.Asigna(0.5);
  EXPECT_EQ(formula.RemplazaVariables(u"b"), u"0.5");
  EXPECT_EQ(formula.Interna(0).argumentos[2], u"A");
  EXPECT_THROW(formula.Nodo(3), EInvalidOperation);

  const auto resuelve = [&](const char16_t* op) {
    const FUNCTION_SIMPLE funcion{op, u"A", u"SUMA0"};
    return formula.Result(&funcion);
  };
  EXPECT_EQ(resuelve(u"+"), 16.5);
  EXPECT_EQ(resuelve(u"<>"), 1);
  EXPECT_EQ(resuelve(u"=="), 0);
  for (const char16_t* op : {u"=", u"%"}) {
    EXPECT_EQ(MensajeDe([&] { resuelve(op); }), "Operador desconocido");
  }
  formula.CreaFuncionInterna(u"Coseno", u"XYZ");
  EXPECT_EQ(MensajeDe([&] { formula.RemplazaVariables(u"COSENO1"); }), "Funcion desconocida [Coseno]");
  FUNCTION_INTERNA potencia{u"ptencia", {}};
  potencia.argumentos.Add(u"A");
  potencia.argumentos.Add(u"FUN1");
  EXPECT_EQ(formula.ResuelveFuncionIn(&potencia), 49);
  potencia.nombre = u"XYZ";
  EXPECT_EQ(MensajeDe([&] { formula.ResuelveFuncionIn(&potencia); }), "Funcion desconocida [XYZ]");
  TStringList lista;
  lista.SetText(u"B=1\nA=1");
  TFormula::ConfigList(lista);
  EXPECT_EQ(lista.Text(), u"A=1\r\nB=1\r\n");
  // One token is left of what was folded, and "%" is no operator.
  const std::size_t nodos = formula.Nodos();
  for (const char16_t* op : {u"+", u"%"}) formula.CreaFunciones(op);
  EXPECT_EQ(formula.Nodos(), nodos);
}

}  // namespace
}  // namespace vel

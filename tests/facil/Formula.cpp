// Formulas looked through before they are evaluated, and evaluated with numbers.

#include <gtest/gtest.h>
#include <map>
#include <random>

#include "Uformula/Uformula.h"
#include "facil/facil.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "tests/Casos.h"
#include "tests/Mensaje.h"

namespace {

using vel::facil::Formula;
using vel::facil::Revisa;
using vel::facil::RevisionFormula;

std::string Notas(const std::vector<vel::facil::NotaFormula>& notas) {
  std::string texto;
  for (const auto& nota : notas) {
    texto +=
        (texto.empty() ? "" : " | ") + std::to_string(nota.posicion) + " " + vel::UTF8Encode(nota.mensaje);
  }
  return texto;
}

TEST(RevisaFormula, TellsWhatIsWrongAndWhere) {
  for (const auto& caso : pruebas::Casos("formulas/revisiones.txt", " ; ")) {
    ASSERT_EQ(caso.size(), 3U) << caso[0];
    const RevisionFormula revision = Revisa(pruebas::Descifra(caso[0]), {"A", "B", "IVA", "X1"});
    EXPECT_EQ(Notas(revision.problemas), caso[1] == "-" ? "" : caso[1]) << caso[0];
    EXPECT_EQ(Notas(revision.avisos), caso[2] == "-" ? "" : caso[2]) << caso[0];
  }
}

TEST(RevisaFormula, ListsTheVariablesUsed) {
  using Nombres = std::vector<vel::UnicodeString>;
  EXPECT_EQ(Revisa(u"SI(Venta>=META,venta*Tasa,0)+año_2").variables,
            (Nombres{u"Venta", u"META", u"Tasa", u"año_2"}));
  EXPECT_EQ(Revisa("A+IVA*B", std::vector<std::string>{"iva", "b", "c"}).variables, (Nombres{u"IVA", u"B"}));
  EXPECT_EQ(Notas(Revisa("1A+SUMA*A").problemas),
            "1 1A no es un número | 4 Faltan los argumentos de la función SUMA");
  EXPECT_EQ(Notas(Revisa("2*A^B+_C.D").avisos), "3 El signo ^ no es un operador: se lee la variable A^B");
  EXPECT_TRUE(Revisa("AB+(A)B").Sirve()) << "A glued to B is AB, which is a variable";
  // Nesting and length cost neither stack nor more than time.
  const std::string hondo(100'000, '(');
  EXPECT_TRUE(Revisa(hondo + "A" + std::string(100'000, ')')).Sirve());
  std::string larga = "A";
  for (int i = 0; i < 20'000; ++i) larga = (i % 2 == 0 ? "(" + larga + "+1)" : larga);
  EXPECT_TRUE(Revisa(larga).Sirve());
}

// The formulas of the case files with a slip or two, as fingers make them.
class Deslices {
 public:
  Deslices() {
    for (const auto& caso : pruebas::Casos("formulas/casos.txt", ";")) buenas_.push_back(caso[0]);
    for (const auto& caso : pruebas::Casos("formulas/revisiones.txt", " ; "))
      buenas_.push_back(pruebas::Descifra(caso[0]));
    // Near the largest number a value need not survive its text; slips would cut letters of two bytes.
    std::erase_if(buenas_, [](const std::string& t) {
      return t.size() > 60 || t.find("E30") != t.npos || !vel::IsASCII(t);
    });
  }
  std::string Una() {
    std::string t = De(buenas_);
    for (auto n = azar_() % 3; n > 0; --n) {
      const std::size_t lugar = azar_() % (t.size() + 1);
      const auto largo = azar_() % 2;
      t.replace(lugar, largo, azar_() % 3 == 0 ? "" : De(kPiezas));
    }
    return t;
  }

 private:
  const std::vector<std::string> kPiezas{"(", ")", "+", "-", "*",  "<",  "=",    ",",     " ",   "\t",
                                         "A", "b", "X", "2", "<=", "(-", "FUN1", "SUMA0", "SI(", "max("};
  const std::string& De(const std::vector<std::string>& opciones) {
    return opciones[azar_() % opciones.size()];
  }
  std::vector<std::string> buenas_;
  std::mt19937 azar_{20241121};
};

// The value as text, or the error's message.
std::string Evalua(const std::string& texto, const std::map<vel::UnicodeString, std::string>& valores) {
  vel::TStringList lineas;
  for (const auto& [nombre, valor] : valores) lineas.SetValue(nombre, vel::UTF8ToString(valor));
  vel::TFormula formula;
  formula.SetVariables(lineas);
  return pruebas::MensajeDe([&] {
    formula.NewFormula(vel::UTF8ToString(texto));
    formula.Execute();
  });
}

TEST(RevisaFormula, AcceptsWhatEvaluatesAndRefusesWhatDoesNot) {
  const std::map<vel::UnicodeString, std::string> valores{
      {u"A", "7.25"}, {u"B", "-2.5"}, {u"IVA", "0.16"}, {u"FUN2", "3"}};
  Deslices deslices;
  int aceptadas = 0;
  for (int i = 0; i < 12'000; ++i) {
    const std::string texto = deslices.Una();
    const auto compara = [&](const RevisionFormula& revision, const std::string& resultado) {
      // Division by zero and values beyond 32 bits depend on the numbers.
      const bool porValores = resultado.starts_with("'INF'") || resultado.starts_with("'-INF'") ||
                              resultado.starts_with("'NAN'") || resultado.ends_with("32 bits");
      ASSERT_TRUE(porValores || revision.Sirve() == (resultado == "none"))
          << texto << ": " << resultado << "; " << Notas(revision.problemas);
      for (const auto& nota : revision.problemas) ASSERT_LE(nota.posicion, texto.size() + 1) << texto;
    };
    const RevisionFormula revision = Revisa(texto, {"A", "B", "IVA", "FUN2"});
    ASSERT_NO_FATAL_FAILURE(compara(revision, Evalua(texto, valores)));
    aceptadas += revision.Sirve() ? 1 : 0;
    const RevisionFormula sola = Revisa(texto);
    std::map<vel::UnicodeString, std::string> propios;
    for (const auto& nombre : sola.variables) propios[nombre] = std::to_string(propios.size() + 3) + ".5";
    ASSERT_NO_FATAL_FAILURE(compara(sola, Evalua(texto, propios)));
  }
  EXPECT_GT(aceptadas, 2'000);
  EXPECT_LT(aceptadas, 9'000);
}

TEST(Formula, EvaluatesWithNumbersOfAnyKind) {
  Formula comision("SI(VENTA>=10000,VENTA*TASA,0)");
  EXPECT_EQ(comision.Evalua({{"venta", 12000}, {u"TASA", 0.0625F}, {"OTRA", 1LL}}), 750);
  EXPECT_EQ(comision.Evalua(std::map<std::string, double>{{"VENTA", 9999.99}, {"TASA", 0.05}}), 0);
  EXPECT_EQ(vel::facil::Evalua("A-0.3", {{"A", 0.1 + 0.2}}), 0) << "15 digits";
  EXPECT_EQ(vel::facil::Evalua("2*3"), 6);
  EXPECT_EQ(vel::facil::Evalua("(A+1)*2", {{"A", 3}, {"FUN0", 50}}), 8) << "no variable takes a step's place";
  Formula otra = std::move(comision);
  const auto error = [&](const vel::facil::ValoresFormula& valores) {
    return pruebas::MensajeDe([&] { otra.Evalua(valores); });
  };
  EXPECT_EQ(error({{"VENTA", 1}}), "Falta el valor de la variable TASA");
  EXPECT_EQ(otra.Evalua({{"TASA", 1}, {"VENTA", 20000}}), 20000) << "it serves on after an error";
  EXPECT_EQ(error({{"VENTA", 1e9}, {"TASA", HUGE_VAL}}), "El valor de la variable TASA no es un número");
  EXPECT_EQ(pruebas::MensajeDe([] { Formula("2*(VENTA+)"); }),
            "Fórmula, posición 9: Falta un operando después de +");
  EXPECT_EQ(pruebas::MensajeDe([&] { error({{"A", 1}, {"a", 2}}); }), "La variable a tiene dos valores");
  EXPECT_EQ(pruebas::MensajeDe([&] { error({{"A=1", 1}}); }), "El nombre de variable \"A=1\" no es válido");
}

}  // namespace

#include "tests/Casos.h"

#include <gtest/gtest.h>

#include "Uformula/Uformula.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel {
namespace {

TEST(Formula, GivesTheValuesOfTheCaseFile) {
  TFormula formula;  // One object for all: no case may spoil the next.
  for (const auto& caso : pruebas::Casos("formulas/casos.txt", ";")) {
    ASSERT_EQ(caso.size(), 3U) << caso[0];
    TStringList variables;
    variables.SetText(Trim(StringReplace(UTF8ToString(caso[1]), u",", u"\n")));
    UnicodeString obtenido;
    try {
      formula.SetVariables(variables);
      formula.NewFormula(UTF8ToString(caso[0]));
      obtenido = FloatToStr(formula.Execute());
    } catch (const Exception& e) {
      obtenido = u"error: " + e.Message();
    }
    EXPECT_EQ(UTF8Encode(obtenido), UTF8Encode(Trim(UTF8ToString(caso[2])))) << caso[0];
  }
}

}  // namespace
}  // namespace vel

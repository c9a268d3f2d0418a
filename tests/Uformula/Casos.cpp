#include <fstream>
#include <gtest/gtest.h>
#include <string>

#include "Uformula/Uformula.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel {
namespace {

// Up to the next `corte`, without surrounding blanks; what was read leaves the line.
UnicodeString Campo(UnicodeString& linea, char16_t corte) {
  const std::size_t lugar = linea.find(corte);
  const UnicodeString campo = Trim(std::u16string_view(linea).substr(0, lugar));
  linea.erase(0, lugar == UnicodeString::npos ? lugar : lugar + 1);
  return campo;
}

TEST(Formula, GivesTheValuesOfTheCaseFile) {
  std::ifstream archivo(DATOS_PRUEBA "/formulas/casos.txt");
  ASSERT_TRUE(archivo);
  TFormula formula;  // One object for all: no case may spoil the next.
  int casos = 0;
  for (std::string bytes; std::getline(archivo, bytes);) {
    if (bytes.empty() || bytes.front() == '#') continue;
    UnicodeString linea = UTF8ToString(bytes);
    const UnicodeString texto = Campo(linea, u';');
    UnicodeString pares = Campo(linea, u';');
    TStringList variables;
    while (!pares.empty()) variables.Add(Campo(pares, u','));
    UnicodeString obtenido;
    try {
      formula.SetVariables(variables);
      formula.NewFormula(texto);
      obtenido = FloatToStr(formula.Execute());
    } catch (const Exception& e) {
      obtenido = u"error: " + e.Message();
    }
    EXPECT_EQ(UTF8Encode(obtenido), UTF8Encode(Trim(linea))) << bytes;
    ++casos;
  }
  EXPECT_GT(casos, 100);
}

}  // namespace
}  // namespace vel

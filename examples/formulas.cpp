// Evaluates a table of user formulas, each built once and executed with the variables of several cases.

#include <cstdio>
#include <string>

#include "Uformula/Uformula.h"
#include "examples/Salida.h"
#include "framework/Excepciones.h"
#include "framework/TStringList.h"

namespace {

using ejemplo::Columna;
using vel::UnicodeString;

// Takes the text up to the next `corte` off `resto`, without surrounding blanks.
UnicodeString Toma(std::u16string_view& resto, char16_t corte) {
  const std::size_t fin = resto.find(corte);
  UnicodeString parte = vel::Trim(resto.substr(0, fin));
  resto.remove_prefix(fin == std::u16string_view::npos ? resto.size() : fin + 1);
  return parte;
}

vel::TStringList Variables(std::u16string_view pares) {
  vel::TStringList variables;
  while (!pares.empty()) variables.Add(Toma(pares, u','));
  return variables;
}

// The first build evaluates without variables: a name that has no value yet is no reason to stop.
void Construye(vel::TFormula& formula, const UnicodeString& texto) {
  try {
    formula.NewFormula(texto);
  } catch (const vel::EConvertError&) {
  }
}

void Muestra(vel::TFormula& formula, const UnicodeString& caso) {
  formula.SetVariables(Variables(caso));
  std::printf("    %s", Columna(caso, 40).c_str());
  try {
    std::printf("%s\n", ejemplo::Monto(formula.Execute(), 14).c_str());
  } catch (const vel::Exception& e) {
    std::printf("  %s\n", e.what());
  }
}

}  // namespace

int main(int argc, char** argv) {
  return ejemplo::Principal(argc, argv, [](const std::string& carpeta) {
    vel::TStringList lineas;
    lineas.SetText(vel::UTF8ToString(ejemplo::LeeArchivo(carpeta + "/formulas.txt")));
    for (std::size_t i = 0; i < lineas.Count(); ++i) {
      std::u16string_view resto = lineas[i];
      if (resto.empty() || resto.front() == u'#') continue;
      const UnicodeString nombre = Toma(resto, u';');
      const UnicodeString texto = Toma(resto, u';');
      std::printf("%s%s\n", Columna(nombre, 22).c_str(), vel::UTF8Encode(texto).c_str());
      vel::TFormula formula;
      Construye(formula, texto);
      while (!resto.empty()) Muestra(formula, Toma(resto, u'|'));
    }
  });
}

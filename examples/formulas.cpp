// Evaluates a table of user formulas, each built once and evaluated with the variables of several cases. What
// is wrong with one is told with its place.

#include <cstdio>
#include <map>
#include <string>

#include "examples/Salida.h"
#include "facil/facil.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "framework/TStringList.h"

namespace {

namespace facil = vel::facil;
using ejemplo::Columna;
using vel::UnicodeString;

// Takes the text up to the next `corte` off `resto`, without surrounding blanks.
UnicodeString Toma(std::u16string_view& resto, char16_t corte) {
  const std::size_t fin = resto.find(corte);
  UnicodeString parte = vel::Trim(resto.substr(0, fin));
  resto.remove_prefix(fin == std::u16string_view::npos ? resto.size() : fin + 1);
  return parte;
}

std::map<UnicodeString, double> Valores(std::u16string_view pares) {
  std::map<UnicodeString, double> valores;
  while (!pares.empty()) {
    const UnicodeString par = Toma(pares, u',');
    const std::size_t igual = par.find(u'=');
    valores[par.substr(0, igual)] = vel::StrToFloat(par.substr(igual + 1));
  }
  return valores;
}

void Muestra(facil::Formula& formula, const UnicodeString& caso) {
  std::printf("    %s", Columna(caso, 40).c_str());
  try {
    std::printf("%s\n", ejemplo::Monto(formula.Evalua(Valores(caso)), 14).c_str());
  } catch (const vel::Exception& e) {
    std::printf("  %s\n", e.what());
  }
}

void MuestraNotas(const std::vector<facil::NotaFormula>& notas) {
  for (const facil::NotaFormula& nota : notas) {
    std::printf("    posición %zu: %s\n", nota.posicion, vel::UTF8Encode(nota.mensaje).c_str());
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
      const facil::RevisionFormula revision = facil::Revisa(texto);
      MuestraNotas(revision.problemas);
      MuestraNotas(revision.avisos);
      if (!revision.Sirve()) continue;
      facil::Formula formula(texto);
      while (!resto.empty()) Muestra(formula, Toma(resto, u'|'));
    }
  });
}

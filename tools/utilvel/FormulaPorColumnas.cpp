#include "tools/utilvel/FormulaPorColumnas.h"

#include <algorithm>
#include <cmath>

#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "platform/Caracteres.h"
#include "tools/utilvel/Errores.h"
#include "tools/utilvel/Textos.h"

namespace utilvel {
namespace {

// A text of so many characters has no more significant digits than a number keeps as text.
constexpr std::size_t kCorto = 15;

// Whether the formula may name the column. One that it only seems to name ("IVA" in "IVA2") costs time, no
// more.
bool Nombra(const vel::UnicodeString& formula, const vel::UnicodeString& columna) {
  double numero = 0;
  return !columna.empty() && !vel::TryStrToFloat(columna, numero) &&
         columna.find_first_of(u"*+-/<=>(), \t") == vel::UnicodeString::npos &&
         vel::Mayusculas(formula).find(vel::Mayusculas(columna)) != vel::UnicodeString::npos;
}

}  // namespace

double ExigeFinito(double valor) {
  if (std::isfinite(valor)) return valor;
  throw vel::EInvalidOperation(u"El resultado no es un número: " + vel::FloatToStr(valor));
}

void Construye(vel::TFormula& formula, const vel::UnicodeString& expresion) {
  try {
    formula.NewFormula(expresion);
  } catch (const vel::Exception&) {
    if (formula.Nodos() + formula.Internas() == 0) throw;
  }
}

FormulaPorColumnas::FormulaPorColumnas(const vel::UnicodeString& expresion, const vel::TStringList& fijas,
                                       const std::vector<std::string>& columnas) {
  const vel::UnicodeString junta = vel::StringReplace(expresion, u" ", u"");
  formula_.SetVariables(fijas);
  for (std::size_t i = 0; i < columnas.size(); ++i) {
    const vel::UnicodeString nombre = ATexto(columnas[i]);
    if (!Nombra(junta, nombre)) continue;
    if (fijas.IndexOfName(nombre) >= 0) {
      throw Falla(Codigo::Datos, "La variable " + columnas[i] + " también es una columna");
    }
    if (std::any_of(usadas_.begin(), usadas_.end(),
                    [&nombre](const Columna& c) { return vel::SameText(c.nombre, nombre); })) {
      throw Falla(Codigo::Datos, "La columna " + columnas[i] + " está dos veces");
    }
    usadas_.push_back({i, nombre, formula_.EnlazaVariable(nombre)});
  }
  Construye(formula_, expresion);
  Construye(deTextos_, expresion);
  textos_.AddStrings(fijas);
  for (const Columna& c : usadas_) textos_.Add(c.nombre + u"=");
}

double FormulaPorColumnas::Evalua(const std::vector<std::string_view>& campos) {
  return ExigeFinito(Asigna(campos) ? formula_.Execute() : PorTextos(campos));
}

// False when a text is no number, or might lose digits as one.
bool FormulaPorColumnas::Asigna(const std::vector<std::string_view>& campos) {
  for (Columna& c : usadas_) {
    const std::string_view campo = campos[c.lugar];
    double valor = 0;
    if (campo.size() > kCorto || !vel::TryStrToFloat(campo, valor)) return false;
    c.variable.Asigna(valor);
  }
  return true;
}

double FormulaPorColumnas::PorTextos(const std::vector<std::string_view>& campos) {
  const std::size_t fijas = textos_.Count() - usadas_.size();
  for (std::size_t i = 0; i < usadas_.size(); ++i) {
    textos_.Put(fijas + i, usadas_[i].nombre + u"=" + ATexto(campos[usadas_[i].lugar]));
  }
  deTextos_.SetVariables(textos_);
  return deTextos_.Execute();
}

}  // namespace utilvel

#include "tools/utilvel/FormulaPorColumnas.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "facil/RevisionFormula.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "tools/utilvel/Errores.h"
#include "tools/utilvel/Textos.h"

namespace utilvel {
namespace {

// A text of so many characters has no more significant digits than a number keeps as text.
constexpr std::size_t kCorto = 15;

std::string Dice(const vel::facil::NotaFormula& nota) {
  return "Fórmula, posición " + std::to_string(nota.posicion) + ": " + vel::UTF8Encode(nota.mensaje);
}

}  // namespace

double Ejecuta(vel::TFormula& formula) {
  constexpr std::u16string_view kSinValor =
      u"Una operación no tiene valor, como la división entre cero o la raíz de un negativo";
  double valor = 0;
  try {
    valor = formula.Execute();
  } catch (const vel::EConvertError& error) {
    const std::u16string_view mensaje = error.Message();
    for (const std::u16string_view texto : {u"'INF'", u"'-INF'", u"'NAN'"}) {
      if (mensaje.starts_with(texto)) throw vel::EConvertError(kSinValor);
    }
    throw;
  }
  if (!std::isfinite(valor)) throw vel::EConvertError(kSinValor);
  return valor;
}

std::vector<vel::UnicodeString> Revisa(const vel::UnicodeString& expresion,
                                       const std::vector<vel::UnicodeString>& conocidas) {
  const vel::facil::RevisionFormula revision = vel::facil::Revisa(expresion, conocidas);
  if (!revision.Sirve()) throw Falla(Codigo::Datos, Dice(revision.problemas.front()));
  for (const vel::facil::NotaFormula& aviso : revision.avisos) Avisa(Dice(aviso));
  return revision.variables;
}

void Construye(vel::TFormula& formula, const vel::UnicodeString& expresion) {
  try {
    formula.NewFormula(expresion);
  } catch (const vel::Exception&) {
    // What Revisa passes is built; only its value is missing so far.
  }
}

FormulaPorColumnas::FormulaPorColumnas(const vel::UnicodeString& expresion, const vel::TStringList& fijas,
                                       const std::vector<std::string>& columnas) {
  std::vector<vel::UnicodeString> conocidas;
  for (std::size_t i = 0; i < fijas.Count(); ++i) conocidas.push_back(fijas.Names(i));
  for (const std::string& columna : columnas) conocidas.push_back(ATexto(columna));
  formula_.SetVariables(fijas);
  for (const vel::UnicodeString& nombre : Revisa(expresion, conocidas)) {
    const auto primera = conocidas.begin() + static_cast<std::ptrdiff_t>(fijas.Count());
    const auto igual = [&nombre](const vel::UnicodeString& otro) { return vel::SameText(nombre, otro); };
    const auto columna = std::find_if(primera, conocidas.end(), igual);
    if (columna == conocidas.end()) continue;
    if (fijas.IndexOfName(nombre) >= 0) {
      throw Falla(Codigo::Datos, "La variable " + vel::UTF8Encode(nombre) + " también es una columna");
    }
    if (std::find_if(columna + 1, conocidas.end(), igual) != conocidas.end()) {
      throw Falla(Codigo::Datos, "La columna " + vel::UTF8Encode(nombre) + " está dos veces");
    }
    usadas_.push_back({static_cast<std::size_t>(columna - primera), nombre, formula_.EnlazaVariable(nombre)});
  }
  Construye(formula_, expresion);
  Construye(deTextos_, expresion);
  textos_.AddStrings(fijas);
  for (const Columna& c : usadas_) textos_.Add(c.nombre + u"=");
}

double FormulaPorColumnas::Evalua(const std::vector<std::string_view>& campos) {
  return Asigna(campos) ? Ejecuta(formula_) : PorTextos(campos);
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
    const vel::UnicodeString& nombre = usadas_[i].nombre;
    const vel::UnicodeString valor = ATexto(campos[usadas_[i].lugar]);
    double numero = 0;
    if (vel::TrimView(valor).empty()) {
      throw vel::EConvertError(vel::UnicodeString(u"Falta el valor de ").append(nombre));
    }
    if (!vel::TryStrToFloat(valor, numero)) {
      throw vel::EConvertError(
          vel::UnicodeString(u"El valor de ").append(nombre).append(u" no es un número: ").append(valor));
    }
    textos_.Put(fijas + i, vel::UnicodeString(nombre).append(u"=").append(valor));
  }
  deTextos_.SetVariables(textos_);
  return Ejecuta(deTextos_);
}

}  // namespace utilvel

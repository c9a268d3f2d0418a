#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Uformula/TFormula.h"
#include "framework/TStringList.h"

namespace utilvel {

/// A formula over rows of texts, its variables being columns. Each row's value is that of
/// TFormula::SetVariables with the row's texts, bit by bit.
class FormulaPorColumnas {
 public:
  /// `fijas` are name=value lines of variables that are no columns. A formula that cannot be built raises as
  /// TFormula::NewFormula does; Falla (Datos) for a column that the formula names and that is there twice or
  /// is among the fixed ones.
  FormulaPorColumnas(const vel::UnicodeString& expresion, const vel::TStringList& fijas,
                     const std::vector<std::string>& columnas);

  /// The value of a row with a text for each column. Raises vel::Exception as TFormula::Execute does, and for
  /// a value that is no finite number.
  double Evalua(const std::vector<std::string_view>& campos);

 private:
  struct Columna {
    std::size_t lugar;
    vel::UnicodeString nombre;
    vel::TVariableEnlazada variable;
  };
  bool Asigna(const std::vector<std::string_view>& campos);
  double PorTextos(const std::vector<std::string_view>& campos);

  vel::TFormula formula_;
  // The same formula for rows whose texts are not all short numbers; it takes them as texts.
  vel::TFormula deTextos_;
  vel::TStringList textos_;
  std::vector<Columna> usadas_;
};

/// TFormula::Execute that says in a user's words, as vel::EConvertError, where a value is no finite number
/// (1/0).
double Ejecuta(vel::TFormula& formula);

/// The variables that a formula uses, of those known. Raises Falla (Datos) with the place of what keeps it
/// from having a value, and tells what is surely not meant as it stands.
std::vector<vel::UnicodeString> Revisa(const vel::UnicodeString& expresion,
                                       const std::vector<vel::UnicodeString>& conocidas);

/// Builds a formula that Revisa has passed.
void Construye(vel::TFormula& formula, const vel::UnicodeString& expresion);

}  // namespace utilvel

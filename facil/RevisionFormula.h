#pragma once

#include <cstddef>
#include <initializer_list>
#include <vector>

#include "facil/Texto.h"
#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel::facil {

/// Something to tell the user about a formula, and where: `posicion` counts the characters (UTF-16 units) of
/// the formula as typed, blanks too, from 1.
struct NotaFormula {
  /// Place of the first character that it is about, from 1.
  std::size_t posicion = 1;
  /// In Spanish, without a full stop.
  UnicodeString mensaje;
  friend bool operator==(const NotaFormula&, const NotaFormula&) = default;
};

/// What Revisa finds, all in the order of their places. A parenthesis or a comma out of place may
/// hide others: what remains is found when it is mended.
struct RevisionFormula {
  /// What keeps the formula from being evaluated; after the first hundred no more are looked for.
  std::vector<NotaFormula> problemas;
  /// What is evaluated, though surely not as it was meant: `5+`, `2(3)`, `1 2`, `A^B`.
  std::vector<NotaFormula> avisos;
  /// The variables that it uses, once each, as first spelled; all of them are certain only when Sirve().
  std::vector<UnicodeString> variables;
  /// Whether nothing keeps the formula from being evaluated.
  bool Sirve() const noexcept { return problemas.empty(); }
};

/// Names of variables, from a list in either encoding.
///
///     Revisa("VENTA*TASA", {"VENTA", "TASA"})    Revisa(texto, vectorDeTextos)
///
/// Threads: const members may be called by all.
class UTILVEL90_EXPORT NombresVariables {
 public:
  /// From the names themselves.
  NombresVariables(std::initializer_list<Texto> nombres);
  /// From a list of texts in either encoding.
  template <class Lista>
  requires requires(const Lista& lista) { Texto(*lista.begin()); }
  NombresVariables(const Lista& lista) {
    for (const auto& nombre : lista) Agrega(nombre);
  }
  /// The names, as they were given.
  const std::vector<UnicodeString>& Lista() const noexcept { return nombres_; }

 private:
  void Agrega(const Texto& nombre);

  std::vector<UnicodeString> nombres_;
};

/// Looks a formula of TFormula through without its values, for the user who has just typed it. A formula that
/// serves evaluates, given numbers for its variables, unless a value on the way is no finite number (1/0,
/// RAIZ(-1)) or does not fit (ABS and RDONDEA take 32 bits); one that does not fails with any numbers.
///
/// Names match without regard to case. Without a list every name counts as a variable: what begins with a
/// letter or "_" and is neither a built-in's nor one of the evaluator's own (FUN0, SUMA1).
///
///     Revisa("2*(VENTA+)").problemas     // 9: "Falta un operando después de +"
///     Revisa("IVA*2", {"TASA"})          // 1: "Variable desconocida IVA"
///     Revisa("RAÍZ(2)")                  // 1: "Función desconocida RAÍZ"
UTILVEL90_EXPORT RevisionFormula Revisa(const Texto& formula);
UTILVEL90_EXPORT RevisionFormula Revisa(const Texto& formula, const NombresVariables& conocidas);

}  // namespace vel::facil

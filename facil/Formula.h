#pragma once

#include <initializer_list>
#include <memory>
#include <optional>
#include <string_view>
#include <type_traits>
#include <vector>

#include "facil/RevisionFormula.h"
#include "facil/Texto.h"
#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel::facil {

/// The numbers of a formula's variables, from pairs or from a map with names in either encoding.
///
///     ValoresFormula{{"VENTA", 12000}, {"TASA", 0.05}}    ValoresFormula(mapa)
///
/// Names match without regard to case. EInvalidOperation: a name that is given twice, is empty or holds "=".
/// Threads: const members may be called by all.
class UTILVEL90_EXPORT ValoresFormula {
 public:
  /// A variable and its number.
  struct UTILVEL90_EXPORT Valor {
    /// A name in either encoding, and a number of any type.
    template <class Numero>
    requires std::is_arithmetic_v<Numero> Valor(const Texto& variable, Numero valor)
        : nombre(variable.Vista()), numero(static_cast<double>(valor)) {}

    /// Name of the variable.
    UnicodeString nombre;
    /// Its number.
    double numero;
  };

  ValoresFormula() = default;
  /// From pairs, or from what holds pairs.
  ValoresFormula(std::initializer_list<Valor> valores);
  /// From a map or a list of pairs.
  template <class Mapa>
  requires requires(const Mapa& mapa) { Valor(mapa.begin()->first, mapa.begin()->second); }
  ValoresFormula(const Mapa& mapa) {
    for (const auto& [nombre, numero] : mapa) valores_.emplace_back(nombre, numero);
    Ordena();
  }

  /// All of them, by name without regard to case.
  const std::vector<Valor>& Lista() const noexcept { return valores_; }
  /// The number of a variable, if it was given.
  std::optional<double> Busca(std::u16string_view nombre) const noexcept;

 private:
  void Ordena();

  /// By name without regard to case.
  std::vector<Valor> valores_;
};

/// A formula that is built once and evaluated with the numbers of each case.
///
///     Formula comision("SI(VENTA>=10000,VENTA*0.05,0)");
///     comision.Evalua({{"VENTA", 12000}});              // 600
///     comision.Evalua({{"VENTA", 20000}});              // 1000
///
/// Numbers reach the evaluator as all its values travel, as texts of at most 15 significant digits
/// (FloatToStr).
/// Threads: one at a time.
class UTILVEL90_EXPORT Formula {
 public:
  /// EInvalidOperation with the place and the message of the first thing that Revisa(texto) finds ("Fórmula,
  /// posición 9: Falta un operando después de +").
  explicit Formula(const Texto& texto);
  Formula(Formula&&) noexcept;
  Formula& operator=(Formula&&) noexcept;
  ~Formula();

  /// The variables that it uses, once each, as first spelled.
  const std::vector<UnicodeString>& Variables() const noexcept { return variables_; }

  /// Its value. Variables that it does not use may be given. Raises EInvalidOperation ("Falta el valor de la
  /// variable META") when one that it uses is not, and EConvertError where the one given or a value on the
  /// way, as after 1/0, is no finite number.
  double Evalua(const ValoresFormula& valores);

 private:
  struct Motor;

  std::unique_ptr<Motor> motor_;
  std::vector<UnicodeString> variables_;
};

/// The value of a formula that is used once.
///
///     Evalua("PRECIO*(1-0.10)", {{"PRECIO", 1299.9}})    // 1169.91
UTILVEL90_EXPORT double Evalua(const Texto& formula, const ValoresFormula& valores = {});

}  // namespace vel::facil

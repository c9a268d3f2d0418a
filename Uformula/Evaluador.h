#pragma once

#include <cstdint>
#include <vector>

#include "Uformula/Arbol.h"
#include "Uformula/Variables.h"

namespace vel::formula {

/// Gives the steps of a tree their values.
///
/// By definition evaluation goes from the root, operand by operand, each through its text. Here operands are
/// bound once to what they name, and the steps are then run in the order of their making, in which operands
/// come first. That order gives the same value, but might meet another error first, or one in a step that
/// the root does not reach, or a name that refers forward. So at the first sign of any of these that
/// very walk is made instead: what it raises or gives is the outcome.
class Evaluador {
 public:
  Evaluador(const Arbol& arbol, const Variables& variables) : arbol_(&arbol), variables_(variables) {}

  /// Goes over to another tree.
  void Usa(const Arbol& arbol) noexcept {
    arbol_ = &arbol;
    versionArbol_ = 0;  // No tree that was ever built has it.
  }

  /// Value of the root, which must be there.
  double Ejecuta();
  /// Value of any step.
  double Evalua(std::uint32_t paso);

 private:
  enum class Origen : std::uint8_t { nada, numero, variable, paso };
  /// What an operand names.
  struct Enlace {
    Origen origen = Origen::nada;
    /// Of the variable or the step.
    std::uint32_t lugar = 0;
  };
  struct Instruccion {
    const double* izquierdo = nullptr;
    const double* derecho = nullptr;
    double resultado = 0;
    /// Of a call, whose arguments have their sources together from `primero`; null for a node.
    const FuncionInterna* funcion = nullptr;
    std::uint32_t primero = 0;
    std::uint32_t cuenta = 0;
    Operador operador = Operador::igual;
  };
  struct Marco {
    std::uint32_t paso;
    std::uint32_t resueltos = 0;
  };

  bool Prepara();
  const double* Fuente(const Operando& operando, std::uint32_t paso);
  const double* FuenteDe(Enlace enlace, std::uint32_t paso);
  Enlace Enlaza(const Operando& operando) const;
  bool EjecutaDirecto(double& valor);
  double Aplica(const Instruccion& instruccion);
  double Resuelve(std::uint32_t paso);
  double Convierte(const Operando& operando) const;

  const Arbol* arbol_;
  const Variables& variables_;
  std::uint64_t versionArbol_ = 0;
  std::uint64_t versionVariables_ = 0;

  /// Whether the steps up to the root can be run in their order.
  bool directo_ = false;
  /// One for each step up to the root.
  std::vector<Instruccion> programa_;
  /// Where the arguments of the calls stand.
  std::vector<const double*> fuentes_;
  /// Variables that the operands name.
  std::vector<std::uint32_t> usadas_;
  std::vector<double> argumentos_;

  // Of the walk: the state of each step and its value.
  enum class Estado : std::uint8_t { pendiente, abierto, listo };
  std::vector<Estado> estados_;
  std::vector<double> resultados_;
  std::vector<Marco> marcos_;
};

/// Raises "Operador desconocido".
[[noreturn]] void LanzaOperadorDesconocido();
/// Raises "Funcion desconocida [nombre]".
[[noreturn]] void LanzaFuncionDesconocida(std::u16string_view nombre);

}  // namespace vel::formula

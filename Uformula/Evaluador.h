#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "Uformula/Arbol.h"
#include "Uformula/TFormula.h"
#include "Uformula/Variables.h"

namespace vel::formula {

/// Gives the steps of a tree their values.
///
/// By definition evaluation goes from the root, operand by operand, each through its text. Here operands are
/// bound once to the places where what they name will stand, and the steps are then run in the order of their
/// making, in which operands come first. That order gives the same value, but might meet another error first,
/// or one in a step that the root does not reach, or a name that refers forward. So at the first sign of any
/// of these that very walk is made instead: what it raises or gives is the outcome.
class Evaluador {
 public:
  Evaluador(const Arbol& arbol, const Variables& variables, Enlazadas& enlazadas)
      : arbol_(&arbol), variables_(variables), enlazadas_(enlazadas) {}

  /// Goes over to another tree.
  void Usa(const Arbol& arbol) noexcept {
    arbol_ = &arbol;
    preparado_ = false;
  }

  /// Value of the root; EInvalidOperation when there is none.
  double Ejecuta();
  /// The root's value for each row of the columns, as Ejecuta gives it with their values assigned, which none
  /// of the variables keeps. Every column belongs to another variable and is as long as `salida`.
  struct Columna {
    Enlazada* variable;
    const double* valores;
  };
  std::vector<TFallaRenglon> Ejecuta(std::span<const Columna> columnas, std::span<double> salida);
  /// Value of any step.
  double Evalua(std::uint32_t paso);

 private:
  enum class Origen : std::uint8_t { nada, numero, variable, enlazada, paso };
  /// What an operand names.
  struct Enlace {
    Origen origen = Origen::nada;
    /// Of the variable of the list or the step.
    std::uint32_t lugar = 0;
    const Enlazada* enlazada = nullptr;
  };
  /// What a step of the program does; each comparison gives 1 or 0, which needs no carrying.
  enum class Operacion : std::uint8_t { entre, por, menos, mas, compara, llama };
  /// A step of the program. Its value goes to the place of its own number.
  struct Instruccion {
    Operacion operacion = Operacion::compara;
    Operador operador = Operador::igual;
    /// Places of a node's operands.
    std::uint32_t izquierdo = 0;
    std::uint32_t derecho = 0;
    /// Of a call: where its arguments' places begin, and how many they are.
    std::uint32_t primero = 0;
    std::uint32_t cuenta = 0;
    const FuncionInterna* funcion = nullptr;
    /// Of the last value, and of the last block of values (Acarrea).
    double potencia = 1;
    double escala = 1e6;
  };
  /// A variable of the list, or a bound one, and the place that the program reads it from.
  struct DeLista {
    std::uint32_t lugar;
    std::uint32_t casilla;
  };
  struct DeEnlace {
    const Enlazada* enlazada;
    std::uint32_t casilla;
    double potencia = 1;
  };
  struct Marco {
    std::uint32_t paso;
    std::uint32_t resueltos = 0;
  };

  /// Grows whenever the tree or a variable of the list changes, or a bound one is made.
  std::uint64_t Version() const noexcept {
    return arbol_->Version() + variables_.Version() + variables_.VersionValores() + enlazadas_.Version();
  }
  void Actualiza();
  bool Prepara();
  std::uint32_t Casilla(const Operando& operando, std::uint32_t paso);
  std::uint32_t CasillaDe(Enlazada& enlazada);
  std::uint32_t Reserva(double valor);
  Enlace Enlaza(const Operando& operando) const;
  bool LeeVariables();
  bool EjecutaDirecto(double& valor);
  // PorColumnas.cpp
  class Bloque;
  static Operacion OperacionDe(Operador operador) noexcept;
  double Llama(const Instruccion& llamada);
  double Resuelve(std::uint32_t paso);
  double Convierte(const Operando& operando) const;

  const Arbol* arbol_;
  const Variables& variables_;
  Enlazadas& enlazadas_;
  std::uint64_t versionArbol_ = 0;
  std::uint64_t versionVariables_ = 0;
  std::uint64_t versionEnlazadas_ = 0;
  std::uint64_t version_ = 0;

  /// Whether the program is that of this tree.
  bool preparado_ = false;
  /// Whether the steps up to the root can be run in their order, and the list's variables are numbers too.
  bool enOrden_ = false;
  bool directo_ = false;
  /// One for each step up to the root.
  std::vector<Instruccion> programa_;
  /// The places: values of the steps up to the root, then what they read besides.
  std::vector<double> casillas_;
  /// Places of the arguments of the calls.
  std::vector<std::uint32_t> lugares_;
  /// Variables that the operands name.
  std::vector<DeLista> deLista_;
  std::vector<DeEnlace> deEnlace_;
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

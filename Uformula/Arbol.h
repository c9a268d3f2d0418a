#pragma once

#include <cstdint>
#include <limits>
#include <string_view>
#include <vector>

#include "Uformula/FuncionesInternas.h"
#include "Uformula/Operadores.h"
#include "Uformula/Serie.h"
#include "framework/Texto.h"

namespace vel::formula {

inline constexpr std::uint32_t kNinguno = std::numeric_limits<std::uint32_t>::max();

/// A stretch of the tree's text.
struct Trozo {
  std::uint32_t inicio = 0;
  std::uint32_t largo = 0;
};

struct Operando {
  double numero = 0;
  /// As spelled; empty when a step stands here.
  Trozo texto;
  /// The step that the reduction put here; kNinguno for an operand that the formula spells.
  std::uint32_t paso = kNinguno;
  bool esNumero = false;
};

/// A node (two operands) or a call of a built-in (its arguments). Operands stand together, from `primero`.
struct Paso {
  std::uint32_t primero = 0;
  std::uint32_t cuenta = 0;
  /// Place among the nodes or among the calls: the number in its name.
  std::uint32_t numero = 0;
  bool esLlamada = false;
  /// Of a node.
  Operador operador = Operador::igual;
  /// Of a call; the function is null when no built-in has that name.
  Trozo nombre;
  const FuncionInterna* funcion = nullptr;
};

/// The nodes and calls of a formula, in the order of their making, and the reduction that makes them.
///
/// By definition the text is rewritten once for each parenthesis, always at the last "(", with a node's or a
/// call's name put in place of the group. Here the text is cut once into a tape of units (operator, comma,
/// piece of an operand, step) and read from its end: the "(" met is then always the last one, and what stands
/// to its right, up to the nearest ")", is the flat expression to fold. A step is one unit of the tape; its
/// name is spelled only where it becomes part of a longer operand. A group of one operand stays where it is,
/// without its parentheses. Each unit is thus read once and folded once: the cost is linear, the steps and
/// their numbers are those of the rewriting.
///
/// The tape of `2*(A-MAX(B,3))`, and what stands reduced at its end after each unit read:
///
///     2 * ( A - MAX ( B , 3 ) ) + 0        "+0": the top level always holds an operator
///
///     0                                    an operand is copied
///     + 0                                  an operator too, and its place noted
///     + 0                                  ")", twice: the place where its group ends is noted
///     B , 3 + 0                            3, the comma (noted) and B
///     [MAX0] + 0                           "(" behind a built-in's name: a call, step 0. Each argument up to
///                                          the nearest ")" is folded, and the name is read with it
///     A - [MAX0] + 0                       "-" and A
///     [FUN0] + 0                           "(": a group. Its tokens `A` and `-[MAX0]` fold into step 1,
///                                          node FUN0 = A - MAX0
///     2 * [FUN0] + 0                       "*" and 2
///     [FUN2]                               the beginning: tokens `2`, `*[FUN0]`, `+0`. Operators in their
///                                          order: "*" makes FUN1 = 2 * FUN0, which leaves `[FUN1]`, `+0`;
///                                          "+" makes FUN2 = FUN1 + 0, the root
///
/// Run in the order of their making, MAX0, FUN0, FUN1, FUN2, every step finds its operands ready.
class Arbol {
 public:
  /// Replaces the tree by that of a formula. EInvalidOperation on unbalanced parentheses and on a group with
  /// nothing in it. Whatever is thrown leaves a tree that only Vacia and Construye may touch.
  void Construye(std::u16string_view formula);
  void Vacia() noexcept;

  // The operations that TFormula offers under the same names. What they throw leaves the tree as it was.
  UnicodeString DameFuncionN(std::u16string_view operando);
  void CreaFuncionN(std::u16string_view expresion);
  void CreaFunciones(Operador operador);
  std::uint32_t CreaFuncionInterna(std::u16string_view nombre, std::u16string_view argumentos);

  const Serie<Paso>& Pasos() const noexcept { return pasos_; }
  const Serie<Operando>& Operandos() const noexcept { return operandos_; }
  /// Steps of the nodes and of the calls, by number.
  const Serie<std::uint32_t>& Nodos() const noexcept { return nodos_; }
  const Serie<std::uint32_t>& Llamadas() const noexcept { return llamadas_; }
  /// Step of the node that stands for the whole formula; kNinguno when there is none.
  std::uint32_t Raiz() const noexcept { return raiz_; }
  std::vector<UnicodeString> Tokens() const;

  std::u16string_view Vista(Trozo t) const noexcept { return {texto_.data() + t.inicio, t.largo}; }
  /// The operand as the rewriting has it: its text, or the name of its step.
  UnicodeString Texto(const Operando& o) const;
  UnicodeString NombrePaso(std::uint32_t paso) const;
  /// Step of that name, in any case; kNinguno when there is none.
  std::uint32_t BuscaPaso(std::u16string_view nombre) const noexcept;
  /// Changes with every change of the tree.
  std::uint64_t Version() const noexcept { return version_; }

 private:
  /// Unit of the tape: a sign (operator, parenthesis or comma), a step, a piece of an operand, or the end of
  /// a gap. One word, so that it moves whole.
  class Unidad {
   public:
    Unidad() = default;
    static Unidad Signo(char16_t c) noexcept { return Unidad(c, kSigno); }
    static Unidad Paso(std::uint32_t paso) noexcept { return Unidad(paso, kPaso); }
    /// The last of so many units that hold nothing.
    static Unidad Hueco(std::uint32_t largo) noexcept { return Unidad(largo, kHueco); }
    explicit Unidad(Trozo t) noexcept : Unidad(t.inicio, t.largo) {}

    bool EsTrozo() const noexcept { return Clase() < kHueco; }
    bool EsPaso() const noexcept { return Clase() == kPaso; }
    bool EsHueco() const noexcept { return Clase() == kHueco; }
    bool Es(char16_t signo) const noexcept { return codigo_ == Signo(signo).codigo_; }
    /// Bit of an operator; 0 for any other unit.
    std::uint32_t Bit() const noexcept { return Clase() == kSigno ? BitDe(Valor()) : 0; }
    /// The character of a sign, the number of a step, the length of a gap.
    std::uint32_t Valor() const noexcept { return static_cast<std::uint32_t>(codigo_); }
    Trozo ComoTrozo() const noexcept { return {Valor(), Clase()}; }

   private:
    static constexpr std::uint32_t kSigno = kNinguno;
    static constexpr std::uint32_t kPaso = kNinguno - 1;
    static constexpr std::uint32_t kHueco = kNinguno - 2;

    Unidad(std::uint32_t valor, std::uint32_t clase) noexcept
        : codigo_(static_cast<std::uint64_t>(clase) << 32 | valor) {}
    /// kSigno, kPaso, kHueco, or the length of a piece.
    std::uint32_t Clase() const noexcept { return static_cast<std::uint32_t>(codigo_ >> 32); }

    std::uint64_t codigo_ = 0;
  };
  /// Units [inicio, fin) of the tape.
  struct Tramo {
    std::uint32_t inicio;
    std::uint32_t fin;
  };

  // Tokens.cpp
  bool Pliega(Tramo expresion);
  void Tokeniza(Tramo expresion);
  std::uint32_t BitDoble(std::uint32_t lugar) const;
  void PliegaTodos();
  void PliegaOperador(Operador operador);
  void CreaNodo(Operador operador, Tramo& izquierdo, bool primero, const Tramo& derecho);
  void LeeOperando(Operando& o, const Tramo& t);
  UnicodeString TextoTramo(const Tramo& t) const;
  template <class Trabajo>
  auto Entero(const Trabajo& trabajo);
  void PonExpresion(std::u16string_view expresion);

  // Reduccion.cpp
  void Lee(std::u16string_view formula);
  const FuncionInterna* InternaAntes(std::uint32_t abre) const noexcept;
  void Reduce();
  void CierraGrupo(std::uint32_t fin);
  void Recorta(std::uint32_t fin);
  Trozo Recortado(Trozo t, std::u16string_view (*recorta)(std::u16string_view) noexcept) const noexcept;
  bool TieneSigno(const Tramo& token) const noexcept;
  void CierraInterna(Trozo nombre, const FuncionInterna* funcion, std::uint32_t fin);
  void Descarta(std::uint32_t fin);
  std::uint32_t AgregaLlamada(Trozo nombre, const FuncionInterna* funcion);
  Trozo Guarda(std::u16string_view texto);

  Serie<Paso> pasos_;
  Serie<Operando> operandos_;
  Serie<std::uint32_t> nodos_;
  Serie<std::uint32_t> llamadas_;
  std::uint32_t raiz_ = kNinguno;
  std::uint64_t version_ = 0;
  UnicodeString texto_;

  // The tape and what the reduction keeps about the part already read: where operators, commas and ")" stand,
  // the leftmost on top.
  Serie<Unidad> banda_;
  std::uint32_t inicio_ = 0;
  Serie<std::uint32_t> operadores_;
  Serie<std::uint32_t> comas_;
  Serie<std::uint32_t> cierres_;
  Serie<Tramo> tokens_;
  // Operators that the tokens may hold.
  std::uint32_t presentes_ = 0;
  // Arguments of the call being made.
  Serie<Operando> argumentos_;
};

}  // namespace vel::formula

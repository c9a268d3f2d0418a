#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "framework/TStringList.h"
#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// One operation of two operands. An operand is a number, the name of a variable, of a node ("FUN0") or of a
/// built-in call ("SUMA0").
struct FUNCTION_SIMPLE {
  /// One or two characters: "+", "<>".
  UnicodeString operador;
  /// Operand before the operator.
  UnicodeString izquierdo;
  /// Operand after the operator.
  UnicodeString derecho;
};

/// One call of a built-in function; each argument is a single operand.
struct FUNCTION_INTERNA {
  /// As the formula writes it, in any case.
  UnicodeString nombre;
  /// In their order.
  TStringList argumentos;
};

/// A variable of a formula that is assigned as a number, without names or texts; TFormula::EnlazaVariable
/// gives it. It belongs to the TFormula and must not be used after its end; copies are the same variable.
/// Like its formula it serves one thread at a time.
class TVariableEnlazada {
 public:
  /// Gives the variable a value, which the formula takes as if SetVariables had given FloatToStr of it:
  /// 0.1 + 0.2 is 0.3. Not-a-number leaves it without a value, and infinity fails where it is used, as a text
  /// that is no number does. Costs one store.
  void Asigna(double valor) noexcept { *valor_ = valor; }
  /// What was assigned, all its bits; not-a-number while there is no value.
  double Valor() const noexcept { return *valor_; }

 private:
  friend class TFormula;
  explicit TVariableEnlazada(double* valor) noexcept : valor_(valor) {}
  double* valor_;
};

/// The values that a bound variable has, one for each row. The caller's memory, read during the call only.
struct TColumnaFormula {
  /// A variable of the formula that is evaluated.
  TVariableEnlazada Variable;
  /// Its value in each row.
  std::span<const double> Valores;
};

/// A row (0-based) for which a formula has no value, and the message that Execute would have raised.
struct TFallaRenglon {
  /// Index in the columns, from 0.
  std::size_t Renglon;
  /// For the user, in Spanish.
  UnicodeString Mensaje;
};

/// Evaluates the formulas that users write: commissions, margins, freight tiers.
///
///     TFormula formula;
///     TStringList variables;
///     variables.SetValue(u"VENTA", u"12000");
///     formula.SetVariables(variables);
///     formula.NewFormula(u"SI(VENTA>=10000,VENTA*0.05,0)");
///     formula.Execute();                     // 600
///     variables.SetValue(u"VENTA", u"20000");
///     formula.SetVariables(variables);
///     formula.Execute();                     // 1000: built once, executed with other variables
///
/// **Text.** Blanks are removed first; other control characters are part of an operand, but for those around
/// the single operand of a group. Operators are `* + - / < = >` and `<> <= >=`; parentheses group;
/// "," parts arguments; all else is operands. Names match without regard to case. A formula that begins with
/// "-" subtracts from zero. A group that holds one operand and no operation gives that operand's text back,
/// joined to what stands beside it.
///
/// **Precedence**, tightest first: `<>`, `<=`, `>=`, `/`, `*`, `-`, `+`, `=`, `>`, `<`; equals associate to
/// the left. So division goes before multiplication and subtraction before addition (8-2+3 is 9 all the
/// same, and 10+4-3 is 10+(4-3)), and `1+2>=3` is 1+(2>=3): write parentheses around sums that are compared.
///
/// **Signs.** One character after a "+" or "-" belongs to its token, so 5--3 is 2 and 5+-3 is 2, but no sign
/// may follow "*" or "/" directly: 2*-3 fails, and so does 2*(-3), whose group is a single operand; write
/// 2*(0-3). Where an expression (without its groups) holds `<>`, `<=` or `>=`, every operator takes one
/// character in.
///
/// **Values.** Every intermediate result travels as text of 15 significant digits (FloatToStr), so
/// `0.1+0.2` is 0.3 in the next operation; the last one is given as it is. Comparisons give 1 or 0. Nothing
/// tests for a zero divisor or the root of a negative number, but an infinite or undefined result does not
/// convert in the operation that takes it: 1/0 ends in EConvertError.
///
/// **Built-ins**: SUMA, PRODCTO, MIN, MAX (any number of arguments); ABS (of the whole part, 32 bits);
/// PTENCIA (first raised to the second: the double nearest to the true power); CUBO; QADRADO; RAIZ; RDONDEA
/// (Redondea); TRUNCAR (toward minus infinity); FRACC (value less its whole part: keeps the sign); SIGNO (-1,
/// 0 or 1); INVERSO (times -1); SI (the second argument when the first is not 0, else the third); NO (1 for
/// 0, else 0). All arguments are evaluated, also those that are not chosen or not needed; an empty one fails
/// as an operand.
///
/// **Errors.** EConvertError: an operand that is no number and no known name. EInvalidOperation: unbalanced
/// parentheses, a group with nothing in it (`5()`), no formula, a formula whose names refer back to
/// themselves ("FUN0"), missing arguments, a value beyond 32 bits in ABS or RDONDEA. Exception: "Operador
/// desconocido" (the single "=" is never evaluated), "Funcion desconocida [name]". The object stays usable
/// after any of them; when memory runs out every operation leaves it as it was. Cost is linear in the length,
/// and nesting needs no stack.
///
/// Threads: one at a time.
class UTILVEL90_EXPORT TFormula {
 public:
  TFormula();
  TFormula(const TFormula&) = delete;
  TFormula& operator=(const TFormula&) = delete;
  ~TFormula();

  /// Keeps the text as the formula, builds it and evaluates it once, as FormateaFormula. True on success.
  bool NewFormula(std::u16string_view formula);

  /// Builds the tree of a formula in place of the present one and evaluates it once; the value is not kept.
  /// An error in the evaluation (a variable not yet set) leaves the tree built, ready for Execute.
  /// Unbalanced parentheses and empty groups raise EInvalidOperation, with the position (from 1) in the text
  /// without blanks, before any node is built; there is then no formula to execute.
  bool FormateaFormula(std::u16string_view formula);

  /// Replaces the variables by the name=value lines of a list. The same line twice raises EStringListError
  /// and leaves no variables; of two values of one name, the first in order of text counts. An empty value
  /// is no value; one that is no number fails where it is used. Fastest when the names come in the same
  /// order as the last time.
  void SetVariables(const TStringList& lista);

  /// Binds a variable to be assigned as a number, for formulas that run over many records. It stays bound
  /// while the object lives, whatever formulas come and go, and hides a line of SetVariables of its name;
  /// until it is assigned it has no value, and an operand that names it fails as an unknown name does. Names
  /// match without regard to case: a name bound again gives the same variable. A name that no operand can
  /// have (empty, with a blank, a number) raises EInvalidOperation.
  ///
  ///     TVariableEnlazada venta = formula.EnlazaVariable(u"VENTA");
  ///     venta.Asigna(0);                                         // NewFormula evaluates once
  ///     formula.NewFormula(u"SI(VENTA>=10000,VENTA*0.05,0)");
  ///     for (const double v : ventas) venta.Asigna(v), comisiones += formula.Execute();
  TVariableEnlazada EnlazaVariable(std::u16string_view nombre);

  /// Value of the formula with the present variables.
  double Execute();

  /// Value of the formula for each row of the columns, the same bits that assigning the row's values and
  /// Execute would give, in less time; other variables have the values that they have. A row that fails (a
  /// variable without a number, a division by zero) leaves not-a-number in its place, is told in the result,
  /// in the order of the rows, and does not stop the others. What was assigned to the variables stays. As
  /// many values in every column as places in `salida`, which may be one of the columns itself; a column of
  /// another length, of a variable bound by another object, or of one that has a column already raises
  /// EInvalidOperation, and so does having no formula. When memory runs out the object is as it was and what
  /// stands in `salida` is undefined.
  ///
  ///     const TColumnaFormula columnas[] = {{venta, ventas}, {meta, metas}};
  ///     for (const TFallaRenglon& f : formula.Ejecuta(columnas, comisiones)) avisa(f.Renglon, f.Mensaje);
  std::vector<TFallaRenglon> Ejecuta(std::span<const TColumnaFormula> columnas, std::span<double> salida);

  // The steps of the above, on the present tree and variables.

  /// True when the first character is one of `* + - / < = >`.
  static bool EsOperador(std::u16string_view texto) noexcept;
  /// True for the name of a built-in, in any case: "suma", "QADRADO".
  static bool EsFuncionInterna(std::u16string_view nombre) noexcept;
  /// Makes a list sorted, refusing duplicates with EStringListError.
  static void ConfigList(TStringList& lista);
  /// The value plus 0.5, truncated toward zero (-2.7 gives -2). EInvalidOperation beyond 32 bits.
  static std::int32_t Redondea(double valor);

  /// The text itself when it holds no operator after its first character, or only a sign there; else
  /// builds its nodes and returns the name of the one that stands for it.
  UnicodeString DameFuncionN(std::u16string_view operando);
  /// Cuts an expression without parentheses into tokens and folds them into nodes until one token is left.
  void CreaFuncionN(std::u16string_view expresion);
  /// Folds every occurrence of one operator in the token list; a text that is none folds nothing.
  void CreaFunciones(std::u16string_view operador);
  /// Registers a call; `argumentos` parts them by ",". Returns the number that makes its name: "SUMA" and 0
  /// are "SUMA0".
  std::size_t CreaFuncionInterna(std::u16string_view nombre, std::u16string_view argumentos);
  /// An operand's value as text; first match wins: a number stays as it is, then a variable that has a
  /// value, a node, a built-in call; else the text as it is.
  UnicodeString RemplazaVariables(std::u16string_view operando);
  /// ResuelveFuncion after RemplazaVariables of both operands; the record stays as it is.
  double Result(const FUNCTION_SIMPLE* funcion);
  /// Applies the operator to two operands that are numbers. An unknown operator of one character raises
  /// "Operador desconocido", one of two characters gives 0.
  double ResuelveFuncion(const FUNCTION_SIMPLE* funcion) const;
  /// Evaluates a built-in call, each argument through RemplazaVariables.
  double ResuelveFuncionIn(const FUNCTION_INTERNA* funcion);

  // What was built, for a look inside. Nodes and calls are numbered from 0 in the order of their making.

  /// The formula last given to NewFormula.
  const UnicodeString& Texto() const noexcept;
  /// How many nodes and built-in calls were made.
  std::size_t Nodos() const noexcept;
  std::size_t Internas() const noexcept;
  /// Node FUN<numero>. A number out of range raises EInvalidOperation.
  FUNCTION_SIMPLE Nodo(std::size_t numero) const;
  /// Built-in call of that number. A number out of range raises EInvalidOperation.
  FUNCTION_INTERNA Interna(std::size_t numero) const;
  /// The token list of the last CreaFuncionN; empty after FormateaFormula.
  TStringList Tokens() const;

 private:
  struct Interior;
  std::unique_ptr<Interior> interior_;
};

}  // namespace vel

#pragma once

#include <concepts>
#include <initializer_list>
#include <iterator>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

#include "facil/Momento.h"
#include "facil/Texto.h"
#include "framework/TFieldType.h"
#include "framework/Texto.h"
#include "framework/Variant.h"
#include "utilvel90_export.h"

namespace vel::facil {

/// SQL of the program's own, written into the statement as it stands: a column, an expression, a sub-query.
/// Never what a user typed.
///
///     donde("F.IMPORTE").mayor(Sql("F.SALDO"))    donde("F.CVE").en(Sql("SELECT CVE FROM VIP"))
///
/// Threads: const members may be called by all.
struct UTILVEL90_EXPORT Sql {
  /// The text is written into the statement as it stands; an empty one raises EInvalidOperation.
  explicit Sql(const Texto& sql);
  /// The SQL.
  UnicodeString texto;
};

/// Kinds of what is given as a value; anything else does not compile. Here, a number or a truth value.
template <typename T>
concept TipoNumero = TipoEntero<T> || std::floating_point<T> || std::same_as<T, bool>;
/// A date or a moment.
template <typename T>
concept TipoFecha = std::constructible_from<Momento, const T&>;
/// A text in either encoding.
template <typename T>
concept TipoTexto = std::constructible_from<Texto, const T&>;
/// A character, which is no value.
template <typename T>
concept TipoCaracter = std::integral<T> && !TipoEntero<T> && !std::same_as<T, bool>;
/// A pointer that is no text, which is no value.
template <typename T>
concept TipoPuntero = std::is_null_pointer_v<T> ||(std::is_pointer_v<T> && !TipoTexto<T>);

/// The value of a condition; its C++ type says the field's:
///
///     whole numbers, of 64 bits too     ftInteger
///     floating numbers                  ftFloat
///     bool                              ftBoolean, with parameters only
///     texts in UTF-16 or UTF-8          ftString
///     days and moments (Momento)        ftDateTime
///     Sql                               ftDataSet: as it stands, no parameter
///     Variant                           by what it holds; a null, an array or none raises EInvalidOperation
///
/// An empty std::optional is what the user did not give: its condition is left out. It is no null, which
/// esNulo asks for.
/// Threads: const members may be called by all.
class UTILVEL90_EXPORT Valor {
 public:
  /// A value of any other field type: Valor(TFieldType::ftDate, Variant(dia)).
  Valor(TFieldType tipo, Variant valor) noexcept;
  Valor(const Variant& valor);
  Valor(const Sql& sql);
  /// From a value of any type of the table above; another type does not compile.
  template <typename T>
  Valor(const T& valor) : tipo_(kTipoDe<T>), valor_(De(valor)) {}
  template <typename T>
  Valor(const std::optional<T>& valor) : Valor(valor.has_value() ? Valor(*valor) : Valor()) {}

  /// Whether there is one.
  bool Hay() const noexcept { return hay_; }
  /// The field type that the value was given as.
  TFieldType Tipo() const noexcept { return tipo_; }
  /// The value itself, for one use.
  Variant&& Saca() noexcept { return std::move(valor_); }
  /// The type that both are of, whole and floating numbers being floating ones together. Raises
  /// EInvalidOperation ("Los valores de una condición son de tipos distintos") when there is none.
  static TFieldType TipoComun(TFieldType uno, TFieldType otro);

 private:
  Valor() noexcept : hay_(false) {}
  template <typename T>
  static constexpr TFieldType kTipoDe = std::same_as<T, bool>    ? TFieldType::ftBoolean
                                        : TipoEntero<T>          ? TFieldType::ftInteger
                                        : std::floating_point<T> ? TFieldType::ftFloat
                                        : TipoFecha<T>           ? TFieldType::ftDateTime
                                                                 : TFieldType::ftString;
  template <typename T>
  static Variant De(const T& valor) {
    constexpr bool kEsCaracter = TipoCaracter<T>;
    constexpr bool kEsPuntero = TipoPuntero<T>;
    constexpr bool kEsOtro = !kEsCaracter && !kEsPuntero && !TipoNumero<T> && !TipoFecha<T> && !TipoTexto<T>;
    static_assert(!kEsCaracter, "a character is no value of a condition: write a text, \"E\"");
    static_assert(!kEsPuntero, "a pointer is no value of a condition: what it points to may be, or esNulo()");
    static_assert(
        !kEsOtro,
        "no value of a condition: numbers, bool, texts, dates and Sql are; a universal time needs its zone");
    if constexpr (TipoNumero<T>) {
      return valor;
    } else if constexpr (TipoFecha<T>) {
      return TDateTime(Momento(valor));
    } else if constexpr (TipoTexto<T>) {
      return Texto(valor).Vista();
    } else {
      return {};
    }
  }

  TFieldType tipo_ = TFieldType::ftUnknown;
  bool hay_ = true;
  Variant valor_;
};

/// The values of a list, all of one type (whole and floating numbers make floating ones), or a sub-query.
/// Empty optionals among them are left out, and with nothing but these so is the condition.
///
///     en({1, 2, 3})    en({"FERRETERÍA", "MUEBLES"})    en(std::vector<std::string>{...})
///
/// Threads: const members may be called by all.
class UTILVEL90_EXPORT Valores {
 public:
  /// From a list of values, or from a sub-query.
  Valores(std::initializer_list<Valor> valores);
  Valores(const Sql& subconsulta);
  /// From a vector or any other list.
  template <typename Lista>
  Valores(const Lista& lista) {
    constexpr bool kEsLista = !TipoTexto<Lista> && requires {
      std::begin(lista);
      std::end(lista);
    };
    static_assert(kEsLista, "en and noEn take a list: {\"A\", \"B\"}, a vector...");
    if constexpr (kEsLista) {
      for (const auto& valor : lista) Agrega(valor);
    }
  }

  /// Whether no value is left.
  bool Vacia() const noexcept { return valores_.empty(); }
  /// Whether the list has values and all of them are left out.
  bool TodosFaltan() const noexcept { return valores_.empty() && faltan_; }
  /// The field type that all of them are of.
  TFieldType Tipo() const noexcept { return tipo_; }
  /// The array of the values, or the sub-query, for one use.
  Variant Saca();

 private:
  void Agrega(Valor valor);

  TFieldType tipo_ = TFieldType::ftUnknown;
  std::vector<Variant> valores_;
  bool faltan_ = false;
  bool subconsulta_ = false;
};

}  // namespace vel::facil

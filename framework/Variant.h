#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "framework/TDateTime.h"
#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

class Variant;

/// An array of variants whose first index is `low` (0 unless said otherwise).
struct VariantArray {
  /// Index of the first item.
  int low = 0;
  /// The items, in order.
  std::vector<Variant> items;
};

/// A type of whole numbers: neither truth values nor characters are.
template <typename T>
concept TipoEntero =
    std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, char> && !std::same_as<T, wchar_t> &&
    !std::same_as<T, char8_t> && !std::same_as<T, char16_t> && !std::same_as<T, char32_t>;

/// The framework's tagged value: empty (unassigned), null, 32-bit or 64-bit integer, double, date-time,
/// boolean, text, or an array of variants. A value type: copies are deep. UTF-16 texts, numbers, dates and
/// truth values become one by themselves; 8-bit texts, characters, null pointers and other pointers do not.
/// Threads: const members may be called by all.
class UTILVEL90_EXPORT Variant {
 public:
  /// What the value holds; the ordinals are those of the alternatives inside.
  enum class Kind : std::uint8_t { Empty, Null, Integer, Int64, Double, Date, Boolean, String, Array };

  Variant() noexcept = default;
  /// A database null, which is not the same as an unassigned value.
  static Variant Null();
  Variant(const Variant&) = default;
  Variant(Variant&&) noexcept = default;
  /// An array that cannot be copied leaves the value as it was.
  Variant& operator=(const Variant& otro) { return *this = Variant(otro); }
  Variant& operator=(Variant&&) noexcept = default;
  ~Variant() = default;

  /// A 32-bit integer when every value of the type is one, else a 64-bit one; an unsigned number beyond that
  /// raises EVariantTypeCastError.
  template <TipoEntero T>
  Variant(T valor) : valor_(Entero(valor)) {}
  /// From a floating number, a date, a text, or an array.
  template <std::floating_point T>
  Variant(T valor) : valor_(static_cast<double>(valor)) {}
  Variant(TDateTime valor) : valor_(valor) {}
  Variant(UnicodeString valor) : valor_(std::move(valor)) {}
  Variant(std::u16string_view valor) : valor_(UnicodeString(valor)) {}
  Variant(const char16_t* valor) : valor_(UnicodeString(valor)) {}
  explicit Variant(VariantArray valor) : valor_(std::move(valor)) {}
  /// Only a true bool becomes a boolean.
  template <std::same_as<bool> T>
  Variant(T valor) : valor_(valor) {}
  Variant(std::nullptr_t) = delete;
  template <typename T>
  requires(!std::same_as<std::remove_cv_t<T>, char16_t>) Variant(T*)
  = delete;

  /// What it holds.
  Kind GetKind() const noexcept { return static_cast<Kind>(valor_.index()); }
  /// Whether it holds what the name says.
  bool IsEmpty() const noexcept { return GetKind() == Kind::Empty; }
  bool IsNull() const noexcept { return GetKind() == Kind::Null; }
  bool IsArray() const noexcept { return GetKind() == Kind::Array; }

  /// Text of the value: empty and null give "", numbers their FloatToStr or decimal text, dates
  /// DateTimeToStr, booleans "True" and "False". An array raises EVariantTypeCastError, a date outside years
  /// 1 to 9999 EConvertError.
  UnicodeString AsString() const;

  /// Number of the value: empty gives 0, a boolean -1 or 0, a date its days, a text StrToFloat (raises
  /// EConvertError). Null and arrays raise EVariantTypeCastError.
  double AsDouble() const;

  /// Whole number of the value, halves rounded to even; as AsDouble, and EVariantTypeCastError when the
  /// number does not fit.
  ///
  ///     Variant(2.5).AsInteger() == 2    Variant(3.5).AsInteger() == 4
  std::int32_t AsInteger() const;
  std::int64_t AsInt64() const;

  /// Empty gives false, a number whether it is not zero, a text StrToBool (raises EConvertError). Null and
  /// arrays raise EVariantTypeCastError.
  bool AsBoolean() const;

  /// A date or a number of days; a text through StrToDateTime (raises EConvertError). Null and arrays
  /// raise EVariantTypeCastError.
  TDateTime AsDateTime() const;

  /// The array; any other value raises EVariantTypeCastError. Indexes run from low() to high().
  const VariantArray& AsArray() const;
  VariantArray& AsArray();

  /// The text itself without a copy; null pointer when the value is no text.
  const UnicodeString* TextPtr() const noexcept { return std::get_if<UnicodeString>(&valor_); }

  /// Same kind and same value.
  friend UTILVEL90_EXPORT bool operator==(const Variant& a, const Variant& b);

 private:
  [[noreturn]] static void LanzaFueraDeRango();
  template <TipoEntero T>
  static auto Entero(T valor) {
    if constexpr (std::in_range<std::int32_t>(std::numeric_limits<T>::max())) {
      return static_cast<std::int32_t>(valor);
    } else {
      if (!std::in_range<std::int64_t>(valor)) LanzaFueraDeRango();
      return static_cast<std::int64_t>(valor);
    }
  }

  struct Nulo {
    friend bool operator==(Nulo, Nulo) = default;
  };
  std::variant<std::monostate, Nulo, std::int32_t, std::int64_t, double, TDateTime, bool, UnicodeString,
               VariantArray>
      valor_;
};

/// Same bounds and equal items.
UTILVEL90_EXPORT bool operator==(const VariantArray& a, const VariantArray& b);

/// An array from index 0 of the values given.
UTILVEL90_EXPORT Variant VarArrayOf(std::vector<Variant> valores);

}  // namespace vel

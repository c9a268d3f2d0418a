#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "framework/TFieldType.h"
#include "framework/Texto.h"
#include "framework/Variant.h"
#include "utilvel90_export.h"

namespace vel {

/// One query parameter; the name stands without its mark. A program binds the value by its kind
/// (Variant::Kind): where the database has no dates, or knows them as texts, a date goes as
/// DateTimeToISO(date, DataType), which is what a literal of it says.
struct TParam {
  /// Name without its mark: "var1".
  UnicodeString Name;
  /// Type of the field that the value is compared with.
  TFieldType DataType = TFieldType::ftUnknown;
  /// What to bind.
  Variant Value;
  friend bool operator==(const TParam&, const TParam&) = default;
};

/// Ordered list of the parameters of a query. Names match without regard to case.
/// Threads: const members may be called by all.
class UTILVEL90_EXPORT TParams {
 public:
  TParams() = default;
  TParams(const TParams&) = default;
  TParams(TParams&&) noexcept = default;
  /// A copy; when memory runs out the list is as it was.
  TParams& operator=(const TParams& otra) { return *this = TParams(otra); }
  TParams& operator=(TParams&&) noexcept = default;
  ~TParams() = default;

  /// Appends a parameter and returns it, owned by the list.
  TParam& Add(TParam parametro);
  /// Removes all parameters.
  void Clear() noexcept { parametros_.clear(); }
  /// How many there are.
  std::size_t Count() const noexcept { return parametros_.size(); }
  /// The parameter at a 0-based index; one out of range raises EDatabaseError.
  const TParam& operator[](std::size_t indice) const;
  /// The first parameter of that name, or null.
  const TParam* FindParam(std::u16string_view nombre) const noexcept;
  TParam* FindParam(std::u16string_view nombre) noexcept;
  /// The first parameter of that name; an unknown one raises EDatabaseError naming it.
  const TParam& ParamByName(std::u16string_view nombre) const;
  TParam& ParamByName(std::u16string_view nombre);
  /// The parameters in their order.
  auto begin() const noexcept { return parametros_.begin(); }
  auto end() const noexcept { return parametros_.end(); }

 private:
  std::vector<TParam> parametros_;
};

}  // namespace vel

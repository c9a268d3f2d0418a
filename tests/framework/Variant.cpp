#include "framework/Variant.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include "framework/Excepciones.h"
#include "framework/TFieldType.h"

namespace vel {
namespace {

template <typename... T>
constexpr bool kNinguno = (!std::is_constructible_v<Variant, T> && ...);
static_assert(kNinguno<const char*, const char (&)[3], const char8_t*, const wchar_t*, std::string,
                       std::string_view, char, char16_t, wchar_t, std::nullptr_t, void*, const int*, bool*,
                       void (*)(), TFieldType, std::true_type, std::vector<bool>::reference>);
template <typename... T>
constexpr bool kPorSi = (std::is_convertible_v<T, Variant> && ...);
static_assert(kPorSi<const char16_t*, char16_t*, const char16_t (&)[3], UnicodeString, std::u16string_view,
                     int, long long, unsigned, short, double, float, TDateTime, bool>);

TEST(Variant, ConvertsToTextAndNumber) {
  const struct {
    Variant valor;
    const char16_t* texto;
    double numero;
  } casos[] = {
      {Variant(), u"", 0},
      {7, u"7", 7},
      {std::int64_t{1} << 40, u"1099511627776", 1099511627776.0},
      {6L, u"6", 6},
      {-5LL, u"-5", -5},
      {4294967295U, u"4294967295", 4294967295.0},
      {9223372036854775807ULL, u"9223372036854775807", 9223372036854775807.0},
      {std::uint8_t{200}, u"200", 200},
      {0.1, u"0.1", 0.1},
      {0.5F, u"0.5", 0.5},
      {TDateTime(45427), u"15/05/2024", 45427},
      {true, u"True", -1},
      {false, u"False", 0},
      {u"12.5", u"12.5", 12.5},
      {UnicodeString(u"12.5"), u"12.5", 12.5},
      {std::u16string_view(u"12.5"), u"12.5", 12.5},
  };
  for (const auto& c : casos) {
    EXPECT_EQ(c.valor.AsString(), c.texto);
    EXPECT_EQ(c.valor.AsDouble(), c.numero);
    EXPECT_EQ(c.valor, Variant(c.valor));
  }
  UnicodeString propio = u"verdadero";
  for (const Variant& valor : {Variant(u"verdadero"), Variant(propio.data()), Variant(propio)})
    EXPECT_EQ(valor.GetKind(), Variant::Kind::String);
  EXPECT_EQ(Variant::Null().AsString(), u"");
  EXPECT_EQ(Variant(std::uint16_t{7}).GetKind(), Variant::Kind::Integer);
  EXPECT_EQ(Variant(std::int64_t{7}).GetKind(), Variant::Kind::Int64);
  EXPECT_EQ(Variant(std::size_t{7}).GetKind(), Variant::Kind::Int64);
  EXPECT_THROW(Variant(9223372036854775808ULL), EVariantTypeCastError);
}

TEST(Variant, RoundsHalvesToEvenAndRefusesWhatDoesNotFit) {
  EXPECT_EQ(Variant(2.5).AsInteger(), 2);
  EXPECT_EQ(Variant(3.5).AsInteger(), 4);
  EXPECT_EQ(Variant(u"9007199254740993").AsInt64(), 9007199254740993);
  EXPECT_THROW(Variant(3e9).AsInteger(), EVariantTypeCastError);
  EXPECT_THROW(Variant(0x1p63).AsInt64(), EVariantTypeCastError);
  EXPECT_THROW(Variant(std::numeric_limits<double>::quiet_NaN()).AsInt64(), EVariantTypeCastError);
  EXPECT_THROW(Variant(u"doce").AsInteger(), EConvertError);
  EXPECT_THROW(Variant::Null().AsDouble(), EVariantTypeCastError);
}

TEST(Variant, HoldsArraysWithALowBound) {
  Variant arreglo = VarArrayOf({Variant(1), Variant(u"dos"), Variant::Null()});
  EXPECT_EQ(arreglo.AsArray().items[1].AsString(), u"dos");
  Variant copia = arreglo;
  copia.AsArray().low = 1;
  EXPECT_FALSE(copia == arreglo);
  EXPECT_THROW(arreglo.AsString(), EVariantTypeCastError);
  EXPECT_THROW(Variant(1).AsArray(), EVariantTypeCastError);
}

}  // namespace
}  // namespace vel

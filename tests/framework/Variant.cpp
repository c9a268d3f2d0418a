#include "framework/Variant.h"

#include <gtest/gtest.h>
#include <limits>
#include <type_traits>

#include "framework/Excepciones.h"

namespace vel {
namespace {

static_assert(!std::is_constructible_v<Variant, const char*>, "a narrow literal must not become a boolean");
static_assert(!std::is_convertible_v<int, Variant>);

TEST(Variant, ConvertsToTextAndNumber) {
  const struct {
    Variant valor;
    const char16_t* texto;
    double numero;
  } casos[] = {
      {Variant(), u"", 0},
      {Variant(7), u"7", 7},
      {Variant(std::int64_t{1} << 40), u"1099511627776", 1099511627776.0},
      {Variant(0.1), u"0.1", 0.1},
      {Variant(TDateTime(45427)), u"15/05/2024", 45427},
      {Variant(true), u"True", -1},
      {Variant(false), u"False", 0},
      {Variant(u"12.5"), u"12.5", 12.5},
  };
  for (const auto& c : casos) {
    EXPECT_EQ(c.valor.AsString(), c.texto);
    EXPECT_EQ(c.valor.AsDouble(), c.numero);
    EXPECT_EQ(c.valor, Variant(c.valor));
  }
  EXPECT_EQ(Variant(u"verdadero").GetKind(), Variant::Kind::String);
  EXPECT_EQ(Variant::Null().AsString(), u"");
}

TEST(Variant, RoundsHalvesToEvenAndRefusesWhatDoesNotFit) {
  EXPECT_EQ(Variant(2.5).AsInteger(), 2);
  EXPECT_EQ(Variant(3.5).AsInteger(), 4);
  EXPECT_EQ(Variant(u"9007199254740993").AsInt64(), 9007199254740993);
  EXPECT_THROW(Variant(3e9).AsInteger(), EVariantTypeCastError);
  EXPECT_THROW(Variant(1e19).AsInt64(), EVariantTypeCastError);
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

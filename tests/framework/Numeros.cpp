#include "framework/Numeros.h"

#include <cmath>
#include <cstdio>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>

#include "framework/Excepciones.h"

namespace vel {
namespace {

TEST(FloatToStr, WritesTheGeneralText) {
  const struct {
    double valor;
    const char16_t* texto;
  } casos[] = {
      {0, u"0"},
      {-0.0, u"0"},
      {16, u"16"},
      {0.5, u"0.5"},
      {-1234.5, u"-1234.5"},
      {0.1 + 0.2, u"0.3"},
      {1.0 / 3, u"0.333333333333333"},
      {2.0 / 3, u"0.666666666666667"},
      {0.0001, u"0.0001"},
      {0.00001, u"1E-5"},
      {1.5e-7, u"1.5E-7"},
      {123456789012345.0, u"123456789012345"},
      {1234567890123456.0, u"1.23456789012346E15"},
      {999999999999999.9, u"1E15"},
      {1e15, u"1E15"},
      {-1e300, u"-1E300"},
      {std::numeric_limits<double>::max(), u"1.79769313486232E308"},
      {std::numeric_limits<double>::denorm_min(), u"4.94065645841247E-324"},
      {std::numeric_limits<double>::infinity(), u"INF"},
      {-std::numeric_limits<double>::infinity(), u"-INF"},
      {std::nan(""), u"NAN"},
  };
  for (const auto& c : casos) EXPECT_EQ(FloatToStr(c.valor), c.texto) << c.valor;
}

// The C library's %.15g holds the same digits in another notation; reading both back must agree.
TEST(FloatToStr, HoldsTheDigitsOfPrintf) {
  std::mt19937_64 azar(7);
  for (int i = 0; i < 200'000; ++i) {
    double valor = 0;
    if (i % 2 == 0) {
      valor = static_cast<double>(static_cast<std::int64_t>(azar() % 2'000'000'000'000)) / 1e6 - 1e6;
    } else {
      valor = std::ldexp(static_cast<double>(azar()), static_cast<int>(azar() % 2000) - 1060);
    }
    char esperado[40];
    std::snprintf(esperado, sizeof esperado, "%.15g", valor);
    double leido = 0;
    ASSERT_TRUE(TryStrToFloat(FloatToStr(valor), leido)) << esperado;
    ASSERT_EQ(leido, std::strtod(esperado, nullptr)) << esperado;
  }
}

TEST(StrToFloat, AcceptsNumbersAndNothingElse) {
  const struct {
    const char16_t* texto;
    double valor;
  } buenos[] = {{u"12.50", 12.5},
                {u" \t-3 ", -3},
                {u"+5", 5},
                {u".5", 0.5},
                {u"5.", 5},
                {u"1.5E-7", 1.5e-7},
                {u"1e3", 1000},
                {u"1E+3", 1000},
                {u"1e-999", 0},
                {u"0.01e-9223372036854775808", 0},
                {u"0e999999999", 0},
                {u"-0.0", -0.0},
                {u"4.94065645841247E-324", 5e-324}};
  for (const auto& c : buenos) {
    double valor = 99;
    EXPECT_TRUE(TryStrToFloat(c.texto, valor)) << UTF8Encode(c.texto);
    EXPECT_EQ(valor, c.valor) << UTF8Encode(c.texto);
  }
  for (const char16_t* malo :
       {u"", u" ", u".", u"-", u"+-5", u"--5", u"0x10", u"INF", u"nan", u"1,5", u"1 2", u"1e", u"1e5.5",
        u"1e999", u"1e99999999999999999999", u"10e9223372036854775807", u"5a", u"１２", u"1\u00A0"}) {
    double valor = 99;
    EXPECT_FALSE(TryStrToFloat(malo, valor)) << UTF8Encode(malo);
    EXPECT_EQ(valor, 99);
  }
  const UnicodeString largo = u"1" + UnicodeString(300, u'0') + u"." + UnicodeString(5000, u'0');
  EXPECT_EQ(StrToFloat(largo), 1e300);
  try {
    StrToFloat(u"doce");
    FAIL();
  } catch (const EConvertError& e) {
    EXPECT_EQ(e.Message(), u"'doce' no es un valor de punto flotante válido");
    EXPECT_STREQ(e.what(), "'doce' no es un valor de punto flotante válido");
  }
}

TEST(StrToInt, AcceptsTheRangeAndNothingElse) {
  EXPECT_EQ(StrToInt(u"  -2147483648"), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(StrToInt(u"+2147483647"), std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(StrToInt64(u"-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
  for (const char16_t* malo :
       {u"", u"-", u"2147483648", u"-2147483649", u"12 ", u"1.0", u"0x1", u"--1", u"９"}) {
    EXPECT_THROW(StrToInt(malo), EConvertError) << UTF8Encode(malo);
  }
  EXPECT_THROW(StrToInt64(u"9223372036854775808"), EConvertError);
  EXPECT_EQ(IntToStr(std::numeric_limits<std::int64_t>::min()), u"-9223372036854775808");
}

TEST(StrToBool, ReadsNamesAndNumbers) {
  for (const char16_t* texto : {u"True", u"TRUE", u"-1", u"1", u"0.5"}) EXPECT_TRUE(StrToBool(texto));
  for (const char16_t* texto : {u"False", u"false", u"0", u"0.0"}) EXPECT_FALSE(StrToBool(texto));
  EXPECT_THROW(StrToBool(u""), EConvertError);
  EXPECT_THROW(StrToBool(u"sí"), EConvertError);
}

}  // namespace
}  // namespace vel

#include "framework/TDateTime.h"

#include <gtest/gtest.h>
#include <initializer_list>
#include <limits>

#include "framework/Excepciones.h"
#include "tests/Casos.h"
#include "tests/Reales.h"

namespace vel {
namespace {

TEST(TDateTime, WritesAndReadsItsText) {
  TDateTime fecha;
  for (const auto& c : pruebas::Casos("textos/fechas.txt", "|")) {
    SCOPED_TRACE(c.at(1));
    const UnicodeString texto = UTF8ToString(c[1]);
    if (c[0] == "error") {
      EXPECT_THROW(StrToDateTime(texto), EConvertError);
    } else if (c[0] == "error ISO") {
      EXPECT_FALSE(TryISOToDateTime(texto, fecha));
    } else if (c[0] == "lee") {
      EXPECT_EQ(UTF8Encode(DateTimeToStr(StrToDateTime(texto))), c.at(2));
    } else {
      const TDateTime dias(pruebas::Real(c[0]));
      EXPECT_EQ(DateTimeToStr(dias), texto);
      EXPECT_NEAR(StrToDateTime(texto).Val(), dias.Val(), 1e-9);
      EXPECT_EQ(UTF8Encode(DateTimeToISO(dias)), c.at(2));
      EXPECT_EQ(UTF8Encode(DateTimeToISO(dias, TFieldType::ftTime)), c.at(3));
      EXPECT_EQ(UTF8Encode(DateTimeToISO(dias, TFieldType::ftDate)), c[2].substr(0, 10));
      EXPECT_TRUE(TryISOToDateTime(UTF8ToString(c[2]), fecha));
      EXPECT_NEAR(fecha.Val(), dias.Val(), 1e-9);
    }
  }
  EXPECT_EQ(DateTimeToStr(TDateTime(-1.99999999999)), u"30/12/1899") << "rounds forward to the next day";
  for (const CivilDate& f : std::initializer_list<CivilDate>{{0, 1, 1},
                                                             {10000, 1, 1},
                                                             {2024, 0, 1},
                                                             {2024, 13, 1},
                                                             {2024, 257, 1},
                                                             {2024, 1, 0},
                                                             {2024, 1, 32}})
    EXPECT_FALSE(TryEncodeDate(f, fecha));
  for (const CivilTime& h :
       std::initializer_list<CivilTime>{{-1}, {24}, {0, 60}, {0, 0, 60}, {0, 0, 0, 1000}})
    EXPECT_FALSE(TryEncodeTime(h, fecha));
}

TEST(TDateTime, RefusesWhatIsNoDate) {
  for (const double dias : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
                            1e300, -693594.0, 2958466.0, 2958465.9999999999}) {
    EXPECT_THROW(DateTimeToStr(TDateTime(dias)), EConvertError) << dias;
  }
}

}  // namespace
}  // namespace vel

#include "framework/TDateTime.h"

#include <gtest/gtest.h>
#include <limits>

#include "framework/Excepciones.h"

namespace vel {
namespace {

TEST(TDateTime, WritesAndReadsItsText) {
  const struct {
    double dias;
    const char16_t* texto;
  } casos[] = {
      {0, u"30/12/1899"},
      {45427.25, u"15/05/2024 06:00:00"},
      {45427 + 1.5 / 86400, u"15/05/2024 00:00:01.500"},
      {-1.25, u"29/12/1899 06:00:00"},
      {-693593, u"01/01/0001"},
      {2958465, u"31/12/9999"},
  };
  for (const auto& c : casos) {
    EXPECT_EQ(DateTimeToStr(TDateTime(c.dias)), c.texto);
    EXPECT_NEAR(StrToDateTime(c.texto).Val(), c.dias, 1e-9);
  }
  EXPECT_EQ(DateTimeToStr(TDateTime(-1.99999999999)), u"30/12/1899") << "rounds forward to the next day";
  TDateTime fecha;
  EXPECT_FALSE(TryEncodeDate({2024, 257, 1}, fecha));
  EXPECT_EQ(StrToDateTime(u" 1/2/2024 6:00 ").Val(), 45323.25);
  EXPECT_EQ(StrToDateTime(u"12:00:00").Val(), 0.5);
  for (const char16_t* malo : {u"", u"31/02/2024", u"29/02/2023", u"15/05/2024 24:00", u"15/05/2024x",
                               u"15-05-2024", u"15/05/20245", u"00/01/2024", u"1/1/0000", u"12:00:60"}) {
    EXPECT_THROW(StrToDateTime(malo), EConvertError) << UTF8Encode(malo);
  }
}

TEST(TDateTime, WritesAndReadsISO) {
  const struct {
    double dias;
    const char16_t* texto;
    const char16_t* fecha;
    const char16_t* hora;
  } casos[] = {{45427, u"2024-05-15", u"2024-05-15", u"00:00:00"},
               {45427.25, u"2024-05-15 06:00:00", u"2024-05-15", u"06:00:00"},
               {45427 + 1.25 / 86400, u"2024-05-15 00:00:01.250", u"2024-05-15", u"00:00:01.250"},
               {45427.9999999999, u"2024-05-16", u"2024-05-16", u"00:00:00"},
               {-1.25, u"1899-12-29 06:00:00", u"1899-12-29", u"06:00:00"},
               {-693593, u"0001-01-01", u"0001-01-01", u"00:00:00"}};
  TDateTime leida;
  for (const auto& c : casos) {
    EXPECT_EQ(DateTimeToISO(TDateTime(c.dias)), c.texto);
    EXPECT_EQ(DateTimeToISO(TDateTime(c.dias), TFieldType::ftDate), c.fecha);
    EXPECT_EQ(DateTimeToISO(TDateTime(c.dias), TFieldType::ftTime), c.hora);
    EXPECT_TRUE(TryISOToDateTime(c.texto, leida));
    EXPECT_NEAR(leida.Val(), c.dias, 1e-9);
  }
  EXPECT_TRUE(TryISOToDateTime(u" 2024-05-15T06:00 ", leida));
  EXPECT_EQ(leida.Val(), 45427.25);
  for (const char16_t* malo : {u"", u"2024-5-15", u"24-05-15", u"2024-02-30", u"2024-05-15 24:00",
                               u"2024-05-15x", u"2024-05-15 06:00x", u"06:00:00", u"2024/05/15"}) {
    EXPECT_FALSE(TryISOToDateTime(malo, leida)) << UTF8Encode(malo);
  }
}

TEST(TDateTime, RefusesWhatIsNoDate) {
  for (const double dias : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
                            1e300, -693594.0, 2958466.0, 2958465.9999999999}) {
    EXPECT_THROW(DateTimeToStr(TDateTime(dias)), EConvertError) << dias;
  }
}

}  // namespace
}  // namespace vel

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
    const char16_t* iso;
    const char16_t* hora;
  } casos[] = {
      {0, u"30/12/1899", u"1899-12-30", u"00:00:00"},
      {45427.25, u"15/05/2024 06:00:00", u"2024-05-15 06:00:00", u"06:00:00"},
      {45427 + 1.25 / 86400, u"15/05/2024 00:00:01.250", u"2024-05-15 00:00:01.250", u"00:00:01.250"},
      {-1.25, u"29/12/1899 06:00:00", u"1899-12-29 06:00:00", u"06:00:00"},
      {-693593, u"01/01/0001", u"0001-01-01", u"00:00:00"},
      {2958465, u"31/12/9999", u"9999-12-31", u"00:00:00"},
  };
  TDateTime fecha;
  for (const auto& c : casos) {
    EXPECT_EQ(DateTimeToStr(TDateTime(c.dias)), c.texto);
    EXPECT_NEAR(StrToDateTime(c.texto).Val(), c.dias, 1e-9);
    EXPECT_EQ(DateTimeToISO(TDateTime(c.dias)), c.iso);
    EXPECT_EQ(DateTimeToISO(TDateTime(c.dias), TFieldType::ftTime), c.hora);
    EXPECT_EQ(DateTimeToISO(TDateTime(c.dias), TFieldType::ftDate), std::u16string_view(c.iso).substr(0, 10));
    EXPECT_TRUE(TryISOToDateTime(c.iso, fecha));
    EXPECT_NEAR(fecha.Val(), c.dias, 1e-9);
  }
  EXPECT_EQ(DateTimeToStr(TDateTime(-1.99999999999)), u"30/12/1899") << "rounds forward to the next day";
  EXPECT_FALSE(TryEncodeDate({2024, 257, 1}, fecha));
  EXPECT_EQ(StrToDateTime(u" 1/2/2024 6:00 ").Val(), 45323.25);
  EXPECT_EQ(StrToDateTime(u"12:00:00").Val(), 0.5);
  for (const char16_t* malo : {u"", u"31/02/2024", u"29/02/2023", u"15/05/2024 24:00", u"15/05/2024x",
                               u"15-05-2024", u"15/05/20245", u"00/01/2024", u"1/1/0000", u"12:00:60"}) {
    EXPECT_THROW(StrToDateTime(malo), EConvertError) << UTF8Encode(malo);
  }
  for (const char16_t* malo : {u"2024-5-15", u"24-05-15", u"2024-02-30", u"2024-05-15 24:00", u"2024-05-15x",
                               u"2024-05-15 06:00x", u"06:00:00", u"2024/05/15"}) {
    EXPECT_FALSE(TryISOToDateTime(malo, fecha)) << UTF8Encode(malo);
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

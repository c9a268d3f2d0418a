// What the front takes: texts in two encodings, dates of two libraries.

#include <gtest/gtest.h>

#include "facil/facil.h"
#include "framework/Excepciones.h"

namespace {

using namespace std::chrono;
using vel::facil::Momento;
using vel::facil::Texto;

TEST(Argumentos, TakeTextsInBothEncodings) {
  const std::u16string peña = u"Peña 😀";
  const std::string utf8 = vel::UTF8Encode(peña);
  EXPECT_EQ(Texto(peña).Vista(), peña);
  EXPECT_EQ(Texto(utf8).Vista(), peña);
  EXPECT_EQ(Texto(utf8.c_str()).Vista(), peña);
  EXPECT_EQ(Texto(u8"Peña 😀").Vista(), peña);
  EXPECT_EQ(Texto(std::string_view("a\0b", 3)).Vista().size(), 3u);
  EXPECT_THROW(Texto("Pe\xF1"
                     "a"),
               vel::EConvertError);
  const char* const nulo = nullptr;
  EXPECT_THROW(Texto{nulo}, vel::EInvalidOperation);
}

TEST(Argumentos, TakeDatesOfBothLibraries) {
  const auto dia = [](auto fecha) { return vel::DateTimeToISO(Momento(fecha)); };
  EXPECT_EQ(dia(2024y / May / 13), u"2024-05-13");
  EXPECT_EQ(dia(2024y / February / last), u"2024-02-29");
  EXPECT_EQ(dia(sys_days(2024y / May / 13)), u"2024-05-13");
  EXPECT_EQ(dia(local_days(2024y / May / 13) + 14h + 30min), u"2024-05-13 14:30:00");
  EXPECT_EQ(dia(local_days(1899y / December / 29) + 6h), u"1899-12-29 06:00:00");
  EXPECT_EQ(dia(local_days(2024y / May / 13) - nanoseconds(1)), u"2024-05-12 23:59:59.999");
  for (const auto falla : {2023y / February / 29, year(10000) / January / 1, year(0) / January / 1}) {
    EXPECT_THROW(Momento{falla}, vel::EConvertError);
  }
  // 65,536 years later the calendar's types would say 2024 again.
  EXPECT_THROW(Momento(local_days(2024y / May / 13) + days(65536 * 365)), vel::EConvertError);

  for (const double valor : {45425.604166666664, -1.25, 0.0, 2958465.999}) {
    const vel::TDateTime momento(valor);
    EXPECT_EQ(vel::DateTimeToISO(Momento(vel::facil::AHoraLocal(momento))), vel::DateTimeToISO(momento));
  }
  EXPECT_EQ(vel::facil::ADia(vel::TDateTime(45425.9)), 2024y / May / 13);
}

}  // namespace

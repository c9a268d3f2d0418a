#include "platform/Caracteres.h"

#include <gtest/gtest.h>

#include "platform/PaginaCodigos.h"

namespace vel {
namespace {

TEST(Caracteres, CapitalsFollowSpanishAndKeepTheLength) {
  EXPECT_EQ(Mayusculas(u"peña Ávila öç ÿ ı ß ŉ ǆ \U00010428 i"), u"PEÑA ÁVILA ÖÇ Ÿ I ß ŉ Ǆ \U00010428 I");
  EXPECT_EQ(Minusculas(u"PEÑA ÁVILA I"), u"peña ávila i");
  const UnicodeString suelto{0xD800, u'a'};
  EXPECT_EQ(Mayusculas(suelto), (UnicodeString{0xD800, u'A'}));
}

TEST(Caracteres, TestsDigitsAndLettersOfAnyScript) {
  for (const char16_t c : std::u16string_view(u"09٣")) EXPECT_TRUE(EsDigito(c) && EsAlfanumerico(c));
  for (const char16_t c : std::u16string_view(u"aÑéЖ")) EXPECT_TRUE(EsAlfanumerico(c) && !EsDigito(c));
  for (const char16_t c : std::u16string_view(u" &@-½\u00A0")) EXPECT_EQ(EsAlfanumerico(c) + EsDigito(c), 0);
}

TEST(PaginaCodigos, EveryByteSurvives) {
  AnsiString bytes;
  for (int i = 0; i < 256; ++i) bytes.push_back(static_cast<char>(static_cast<unsigned char>(i)));
  const UnicodeString ancho = DeCp1252(bytes);
  EXPECT_EQ(ancho[0x80], u'€');
  EXPECT_EQ(ancho[0x81], 0x81);
  EXPECT_EQ(ancho[0xF1], u'ñ');
  EXPECT_EQ(ACp1252(ancho), bytes);
  EXPECT_TRUE(CabeEnCp1252(ancho));
  EXPECT_FALSE(CabeEnCp1252(u"año Ω"));
  EXPECT_EQ(ACp1252(u"Ω€"), "?\x80");
}

}  // namespace
}  // namespace vel

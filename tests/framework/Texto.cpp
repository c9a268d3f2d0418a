#include "framework/Texto.h"

#include <gtest/gtest.h>

namespace vel {
namespace {

TEST(Utf8, RoundTripsEveryPlaneAndRepairsTheRest) {
  const UnicodeString texto = u"Ñandú €\U0001F600";
  EXPECT_EQ(UTF8Encode(texto), "Ñandú €\xF0\x9F\x98\x80");
  EXPECT_EQ(UTF8ToString(UTF8Encode(texto)), texto);
  const UnicodeString solo{u'a', 0xD800, u'b', 0xDC00};
  EXPECT_EQ(UTF8Encode(solo),
            "a\xEF\xBF\xBD"
            "b\xEF\xBF\xBD");
  // Overlong, surrogate, cut and stray bytes: one replacement for each maximal part (Unicode, table 3-8).
  EXPECT_EQ(UTF8ToString("\xC0\xAF\xED\xA0\x80\xF1\x80\x80\xE1\x80\xC2 \x80"),
            u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD \uFFFD");
  EXPECT_FALSE(IsUTF8("a\xF4\x90\x80\x80"));
  EXPECT_TRUE(IsUTF8("\xF4\x8F\xBF\xBF"));
}

TEST(Texto, CutsAndReplaces) {
  EXPECT_EQ(Trim(u"\t a b\r\n"), u"a b");
  EXPECT_EQ(Trim(u" \t"), u"");
  EXPECT_EQ(Pos(u"b", u"abcb"), 2U);
  EXPECT_EQ(Pos(u"", u"abc"), 0U);
  EXPECT_EQ(Copy(u"abc", 2, 10), u"bc");
  EXPECT_EQ(Copy(u"abc", -5, 2), u"ab");
  EXPECT_EQ(Copy(u"abc", 4, 1), u"");
  EXPECT_EQ(Copy(u"abc", 1, -1), u"");
  EXPECT_EQ(StringReplace(u"aaa", u"aa", u"b"), u"ba");
  EXPECT_EQ(StringReplace(u"O'Brien'", u"'", u"''"), u"O''Brien''");
  EXPECT_EQ(StringReplace(u"abc", u"", u"x"), u"abc");
}

TEST(SameText, FoldsLatinLettersOnly) {
  EXPECT_TRUE(SameText(u"ÁÉÍÓÚÑÜ", u"áéíóúñü"));
  EXPECT_TRUE(SameText(u"ĀŁŽŸ", u"āłžÿ"));
  EXPECT_FALSE(SameText(u"×", u"÷"));
  EXPECT_FALSE(SameText(u"Ñ", u"N"));
  EXPECT_FALSE(SameText(u"ß", u"ss"));
  EXPECT_FALSE(SameText(u"İ", u"i"));
  EXPECT_LT(CompareText(u"ABC", u"abcd"), 0);
  EXPECT_GT(CompareText(u"b", u"A"), 0);
}

}  // namespace
}  // namespace vel

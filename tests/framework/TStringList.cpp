#include "framework/TStringList.h"

#include <gtest/gtest.h>

#include "framework/Excepciones.h"

namespace vel {
namespace {

struct Testigo : TObject {
  explicit Testigo(int& vivos) : vivos_(vivos) { ++vivos_; }
  Testigo(const Testigo&) = delete;
  Testigo& operator=(const Testigo&) = delete;
  ~Testigo() override { --vivos_; }
  int& vivos_;
};

TEST(TStringList, SortedListKeepsOrderAndRefusesDuplicates) {
  int vivos = 0;
  TStringList lista;
  lista.SetSorted(true);
  lista.SetDuplicates(TDuplicates::dupError);
  lista.AddObject(u"FUN9", std::make_unique<Testigo>(vivos));
  EXPECT_EQ(lista.AddObject(u"FUN10", std::make_unique<Testigo>(vivos)), 0U);
  EXPECT_EQ(lista.IndexOf(u"fun9"), 1);
  EXPECT_THROW(lista.AddObject(u"fun10", std::make_unique<Testigo>(vivos)), EStringListError);
  EXPECT_EQ(vivos, 2);
  lista.Delete(0);
  EXPECT_EQ(vivos, 1);
  EXPECT_THROW(lista.Put(0, u"x"), EStringListError);
  EXPECT_THROW(lista.Strings(1), EStringListError);
  TStringList otra;
  otra.SetStrings({u"SUMA0", u"ABS0", u"FUN10"});
  lista.AddStrings(otra);
  EXPECT_EQ(lista.Text(), u"ABS0\r\nFUN10\r\nFUN9\r\nSUMA0\r\n");
  EXPECT_THROW(lista.AddStrings(otra), EStringListError);
  EXPECT_THROW(lista.SetText(u"A\nb\na"), EStringListError);
  EXPECT_EQ(lista.Count(), 4U) << "what is refused changes nothing";
  for (const std::size_t sobra : {3U, 1U, 0U}) lista.Delete(sobra);
  lista.SetDuplicates(TDuplicates::dupIgnore);
  EXPECT_EQ(lista.Add(u"FUN9"), 0U);
  EXPECT_EQ(lista.Count(), 1U);
  lista.SetDuplicates(TDuplicates::dupAccept);
  lista.Add(u"FUN9");
  lista.SetSorted(true);
  lista.SetSorted(false);
  lista.Insert(1, u"A");
  EXPECT_EQ(lista.Text(), u"FUN9\r\nA\r\nFUN9\r\n");
  EXPECT_EQ(lista.IndexOf(u"a"), 1);
  EXPECT_EQ(lista.IndexOf(u"b"), -1);
  EXPECT_THROW(lista.Insert(4, u"B"), EStringListError);
}

TEST(TStringList, ReadsNamesAndValues) {
  TStringList lista;
  lista.SetText(u"A=1\r\nB=x=y\nsuelto\n\rÑ=");
  ASSERT_EQ(lista.Count(), 5U);
  EXPECT_EQ(lista.Values(u"b"), u"x=y");
  EXPECT_EQ(lista.Values(u"suelto"), u"");
  EXPECT_EQ(lista.Names(2), u"");
  EXPECT_EQ(lista.ValueFromIndex(2), u"");
  EXPECT_EQ(lista.IndexOfName(u"ñ"), 4);
  lista.SetValue(u"a", u"2");
  lista.SetValue(u"C", u"3");
  EXPECT_EQ(lista.Text(), u"a=2\r\nB=x=y\r\nsuelto\r\n\r\nÑ=\r\nC=3\r\n");
  lista.AddStrings(lista);
  EXPECT_EQ(lista.Count(), 12U);
  lista.Put(11, u"un renglón largo\r\ny otro");
  lista.SetText(lista.Strings(11));
  EXPECT_EQ(lista.Text(), u"un renglón largo\r\ny otro\r\n") << "of its own text";
}

}  // namespace
}  // namespace vel

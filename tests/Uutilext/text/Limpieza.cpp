#include "Uutilext/text/Limpieza.h"

#include <gtest/gtest.h>

namespace vel {
namespace {

struct Caso {
  const char16_t* texto;
  const char16_t* esperado;
};

TEST(Limpieza, DeletesWhatTheTaxAuthorityDoesNotTake) {
  for (const Caso& c :
       {Caso{u"S.A. de C.V.", u"SA de CV"}, Caso{u",-_.:*;", u""}, Caso{u"", u""}, Caso{u"a;b+c", u"ab+c"}}) {
    UnicodeString texto(c.texto);
    QuitaCaracteresExtraniosSAT(texto);
    EXPECT_EQ(texto, c.esperado);
  }
}

TEST(Limpieza, KeepsNumbersAndPicksDigits) {
  for (const Caso& c :
       {Caso{u"12.50", u"12.50"}, Caso{u" -1E3 ", u" -1E3 "}, Caso{u"12-50", u"1250"}, Caso{u"", u""},
        Caso{u"(55) 1234-5678", u"5512345678"}, Caso{u"٣x", u"٣"}, Caso{u"1,234.5", u"12345"}}) {
    EXPECT_EQ(DevuelveSoloNumeros(c.texto), c.esperado) << UTF8Encode(c.texto);
  }
}

TEST(Limpieza, FoldsAndDropsBlanks) {
  for (const Caso& c : {Caso{u"  a   b c  ", u"a b c"}, Caso{u"", u""}, Caso{u"   ", u""},
                        Caso{u"a \t  b", u"a \t b"}, Caso{u"\t a\n", u"a"}}) {
    EXPECT_EQ(DejaSoloUnEspacioEntrePalabras(c.texto), c.esperado) << UTF8Encode(c.texto);
  }
  for (const Caso& c : {Caso{u"  A B  C ", u"ABC"}, Caso{u"\tA\t B\n", u"A\tB"}, Caso{u" ", u""}}) {
    EXPECT_EQ(QuitaBlancos(c.texto), c.esperado) << UTF8Encode(c.texto);
  }
}

TEST(Limpieza, DoublesAmpersandsAndKeepsAlphanumerics) {
  EXPECT_EQ(MuestraAmpersAnd(u"A & B&&"), u"A && B&&&&");
  for (const Caso& c : {Caso{u"Av. Ñu & Co #5", u"AVÑU&CO5"}, Caso{u"peña@x[`{", u"PEÑA@X"},
                        Caso{u"é—½ß", u"Éß"}, Caso{u"", u""}}) {
    EXPECT_EQ(RegresaCadAlfaNum(c.texto), c.esperado) << UTF8Encode(c.texto);
  }
}

}  // namespace
}  // namespace vel

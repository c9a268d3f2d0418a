#include "Uutilext/text/Claves.h"

#include <gtest/gtest.h>

#include "Uutilext/text/Listas.h"
#include "Uutilext/text/Mascaras.h"
#include "framework/Excepciones.h"

namespace vel {
namespace {

TEST(Claves, AlignDigitsAndTrimTheRest) {
  const struct {
    const char16_t* valor;
    int ancho;
    const char16_t* formateado;
    const char16_t* clave;
  } casos[] = {{u"ABCDEFGHIJKL", 10, u"ABCDEFGHIJ", u"ABCDEFGHIJKL"},
               {u"12", 5, u"   12", u"   12"},
               {u"A12", 10, u"       A12", u"A12"},
               {u" A ", 4, u"  A ", u"A"},
               {u" 12 ", 6, u"   12 ", u"   12 "},
               {u"", 5, u"", u""},
               {u"12", 0, u"", u""},
               {u"12", -3, u"", u""}};
  for (const auto& c : casos) {
    EXPECT_EQ(FormateaValor(c.valor, c.ancho), c.formateado) << UTF8Encode(c.valor);
    EXPECT_EQ(FormateaValorCve(c.valor, c.ancho), c.clave) << UTF8Encode(c.valor);
  }
  EXPECT_EQ(FormateaValor(u"1", 1'000'000).size(), 1'000'000U);
  EXPECT_THROW(FormateaValor(u"1", 1'000'001), EInvalidOperation);
}

TEST(Claves, SplitSeriesAndNumber) {
  const struct {
    const char16_t* texto;
    const char16_t* serie;
    std::int32_t numero;
  } casos[] = {{u"FAC00123", u"FAC", 123},
               {u"FAC", u"FAC", 0},
               {u"A1B2 ", u"A1B", 2},
               {u" 12", u"", 12},
               {u"", u"", 0},
               {u"A12345678901", u"A", -1},
               {u"2147483647", u"", 2147483647},
               {u"2147483648", u"", -1},
               {u"00000000012", u"", -1},
               {u"A-5", u"A-", 5},
               {u"A٣", u"A٣", 0}};
  for (const auto& c : casos) {
    EXPECT_EQ(DameParteAlfanumerica(c.texto), c.serie) << UTF8Encode(c.texto);
    EXPECT_EQ(DameParteNumerica(c.texto), c.numero) << UTF8Encode(c.texto);
  }
}

TEST(Claves, FormatDocumentKeys) {
  const struct {
    const char16_t* clave;
    const char16_t* esperado;
  } casos[] = {
      {u"0012", u"0012"},     {u" 12 ", u"        12"},         {u"A-12", u"A-12"}, {u"", u""}, {u"  ", u""},
      {u"-5", u"        -5"}, {u"12345678901", u"12345678901"}, {u"0", u"0"}};
  for (const auto& c : casos) EXPECT_EQ(FormateaCveDocto(c.clave), c.esperado) << UTF8Encode(c.clave);
}

TEST(Folios, KeepSeriesAndWidth) {
  const struct {
    const char16_t* anterior;
    const char16_t* nuevo;
    const char16_t* folio;
  } casos[] = {{u"F0009", u"10", u"F0010"},
               {u"123", u"124", u"      124"},
               {u"F9", u"10", u"F10"},
               {u"", u"1", u"        1"},
               {u"0099", u"100", u"     0100"},
               {u"F1009", u"10", u"F10"},
               {u"      123", u"124", u"      124"},
               {u"F0099", u"10000", u"F10000"},
               // Outer blanks count in the old width: one behind adds a zero, one before hides the digits.
               {u"F0009 ", u"10", u"F00010"},
               {u" F0009", u"10", u"F10"}};
  for (const auto& c : casos)
    EXPECT_EQ(FormateaFolioCxCP(c.anterior, c.nuevo), c.folio) << UTF8Encode(c.anterior);
  try {
    FormateaFolioCxCP(u"ABCDEF999", u"1000");
    FAIL();
  } catch (const Exception& e) {
    EXPECT_EQ(e.Message(),
              u"Esta configuración de folio ha alcanzado el valor máximo permitido en su rango. \nNo podrás "
              u"agregar más "
              u"folios con esta configuración");
  }
}

TEST(Mascaras, SeparateThousands) {
  const struct {
    int enteros;
    int decimales;
    const char16_t* mascara;
  } casos[] = {{7, 2, u"#,###,##0.00"}, {3, 0, u"##0."},       {6, 1, u"###,##0.0"}, {1, 0, u"0."},
               {2, 2, u"#0.00"},        {0, 2, u"0.00"},       {-2, 1, u"0.0"},      {-3, 2, u""},
               {5, -4, u"##,##0."},     {8, 0, u"##,###,##0."}};
  for (const auto& c : casos) EXPECT_EQ(FormatoMiles(c.enteros, c.decimales), c.mascara) << c.enteros;
  EXPECT_THROW(FormatoMiles(1'000'001, 0), EInvalidOperation);
  EXPECT_THROW(FormatoMiles(1, 2'000'000'000), EInvalidOperation);
}

TEST(Mascaras, MatchKeysAndTestShortTexts) {
  for (const char16_t* valor : {u"AXY1", u"AXY1ZZZ"}) EXPECT_TRUE(p_mascarilla(u"A??1??", valor));
  for (const char16_t* valor : {u"AXY", u"BXY1", u"aXY1", u""}) EXPECT_FALSE(p_mascarilla(u"A??1??", valor));
  EXPECT_TRUE(p_mascarilla(u"???", u""));
  for (const char16_t c : std::u16string_view(u"\\/:*?\"<>|"))
    EXPECT_FALSE(EsSerieValida(UnicodeString(u"A") + c));
  EXPECT_TRUE(EsSerieValida(u"A-B"));
  EXPECT_TRUE(EsSerieValida(u""));
  EXPECT_TRUE(DameTipoContribuyente(u"VECJ-880326 XX4"));
  EXPECT_FALSE(DameTipoContribuyente(u"ABC-680524-P76"));
}

TEST(Listas, MoveItemsUpToALimit) {
  const struct {
    const char16_t* destino;
    const char16_t* origen;
    int limite;
    const char16_t* queda;
    const char16_t* resto;
  } casos[] = {{u"", u"1,2,3", 9, u"1,2,3", u""},
               {u"", u"A,B", 9, u"A", u"B"},            // "A" no longer stands before "9"
               {u"", u"10,20,30", 5, u"10,20", u"30"},  // the comma is not counted
               {u"9", u"1", 50, u"9", u"1"},
               {u"", u",,1", 9, u"1", u""},
               {u"", u"12345", 3, u"", u"12345"},
               {u"", u"1", -1, u"", u"1"},
               {u"", u"", 5, u"", u""}};
  for (const auto& c : casos) {
    UnicodeString destino(c.destino);
    UnicodeString origen(c.origen);
    DivideCadena(destino, origen, c.limite);
    EXPECT_EQ(destino, c.queda) << UTF8Encode(c.origen);
    EXPECT_EQ(origen, c.resto) << UTF8Encode(c.origen);
  }
  EXPECT_EQ(CuentaVecesStr(u"aa", u"aaaaa"), 2);
  EXPECT_EQ(CuentaVecesStr(u"", u"abc"), 0);
  EXPECT_EQ(CuentaVecesStr(u"ñ", u"ñañ"), 2);
}

}  // namespace
}  // namespace vel

#include "framework/TextoIni.h"

#include <gtest/gtest.h>

#include "framework/Excepciones.h"

namespace vel {
namespace {

const UnicodeString kTexto =
    u"; comentario\r\nsuelta\r\n[Sistema]\r\nAcceso = \"LOCAL\"  \r\n\r\n; antes de "
    u"B\r\n[B]\r\nk=1\r\nK=2\r\n=sin\r\n[sistema]\r\nOtra=x=y";

TEST(TextoIni, FindsTheFirstOfAnyCase) {
  const TextoIni ini(kTexto);
  EXPECT_EQ(ini.Valor(u"SISTEMA", u"acceso"), u"\"LOCAL\"");
  EXPECT_EQ(ini.Valor(u"Sistema", u"OTRA"), u"x=y") << "sections of one name are one";
  EXPECT_EQ(ini.Valor(u"b", u"k"), u"1");
  EXPECT_FALSE(ini.Valor(u"B", u"Acceso").has_value());
  EXPECT_FALSE(ini.Valor(u"", u"suelta").has_value());
  EXPECT_EQ(ini.Secciones(), (std::vector<UnicodeString>{u"Sistema", u"B"}));
  EXPECT_EQ(ini.Seccion(u"B").size(), 3U);
}

TEST(TextoIni, ChangesNothingElse) {
  const auto cambia = [](UnicodeString texto, const char16_t* seccion, const char16_t* clave,
                         const char16_t* valor) {
    TextoIni ini(std::move(texto));
    ini.Pon(seccion, clave, valor);
    return UTF8Encode(ini.Texto());
  };
  const std::string antes = UTF8Encode(kTexto);
  const auto con = [&antes](const std::string& viejo, const std::string& nuevo) {
    std::string texto = antes;
    return texto.replace(texto.find(viejo), viejo.size(), nuevo);
  };
  EXPECT_EQ(cambia(kTexto, u"Sistema", u"ACCESO", u"REMOTO"), con("\"LOCAL\"", "REMOTO"));
  EXPECT_EQ(cambia(kTexto, u"B", u"k", u""), con("k=1", "k="));
  EXPECT_EQ(cambia(kTexto, u"sistema", u"Nueva", u"n"),
            con("; antes de B\r\n", "; antes de B\r\nNueva=n\r\n"));
  EXPECT_EQ(cambia(kTexto, u"C", u"k", u"v"), antes + "\r\n\r\n[C]\r\nk=v\r\n");
  EXPECT_EQ(cambia(u"[A]\na=1", u"A", u"b", u"2"), "[A]\na=1\nb=2\n") << "the file's own line ends";
  EXPECT_EQ(cambia(u"", u"A", u"a", u"ñ"), "[A]\r\na=ñ\r\n");
  for (const char16_t* viejo : {u"[A] ; c [x]\na= x \n", u"[A] ; c [x]\na= y \n"})
    EXPECT_EQ(cambia(viejo, u"A", u"a", u" y "), "[A] ; c [x]\na= y \n") << "blanks do not pile up";
  TextoIni ini(kTexto);
  ini.Borra(u"SISTEMA");
  EXPECT_EQ(UTF8Encode(ini.Texto()),
            "; comentario\r\nsuelta\r\n; antes de B\r\n[B]\r\nk=1\r\nK=2\r\n=sin\r\n");
}

TEST(TextoIni, RefusesWhatItCouldNotReadBack) {
  TextoIni ini(kTexto);
  const UnicodeString nulo(1, u'\0');
  const struct {
    UnicodeString seccion, clave, valor;
  } malos[] = {{u"A\n", u"k", u"v"}, {u"A]", u"k", u"v"},  {u"A", u"k\r", u"v"}, {u"A", u"k", u"v\nx"},
               {u"A", u"k", nulo},   {u"A", u"a=b", u"v"}, {u"A", u"[k", u"v"},  {u"A", u" ;k", u"v"}};
  for (const auto& m : malos) EXPECT_THROW(ini.Pon(m.seccion, m.clave, m.valor), EInvalidOperation);
  EXPECT_EQ(ini.Texto(), kTexto);
  for (const auto& [valor, sin] : {std::pair(u"\"a\"", u"a"),
                                   {u" 'a b' ", u"a b"},
                                   {u"\"a'", u"\"a'"},
                                   {u"\"", u"\""},
                                   {u"\"\"a\"\"", u"\"a\""}}) {
    EXPECT_EQ(QuitaComillas(valor), sin);
  }
}

}  // namespace
}  // namespace vel

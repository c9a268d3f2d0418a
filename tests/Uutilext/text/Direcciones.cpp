#include "Uutilext/text/Direcciones.h"

#include <gtest/gtest.h>

#include "Uutilext/text/Correo.h"
#include "framework/Excepciones.h"

namespace vel {
namespace {

std::string Divide(std::u16string_view direccion) {
  UnicodeString partes[5] = {u"?", u"?", u"?", u"?", u"?"};
  DividirDireccion(direccion, partes[0], partes[1], partes[2], partes[3], partes[4]);
  std::string texto;
  for (const UnicodeString& parte : partes) texto += UTF8Encode(parte) + "|";
  return texto;
}

TEST(DividirDireccion, CutsAtItsKeywords) {
  const struct {
    const char16_t* direccion;
    const char* partes;
  } casos[] = {
      {u"AV. JUAREZ NUMERO 120 INT. 4 ENTRE HIDALGO Y MORELOS", "AV. JUAREZ|120|4|HIDALGO|MORELOS|"},
      {u"  Paseo de la Reforma  ", "Paseo de la Reforma|||||"},
      {u"Hidalgo y Morelos", "Hidalgo||||Morelos|"},
      {u"CALLE 9 NUMERO 5 # 3", "CALLE 9 NUMERO 5|3||||"},
      {u"CALLE 60 x 47 y 49 # 455 INT 2", "CALLE 60|455|2|47|49|"},
      {u"Peña int. B no. 7 % Ñandú", "Peña|7|B|Ñandú||"},
      {u"NUM.5", "NUM.5|||||"},
      {u"#5 CENTRO", "#5 CENTRO|||||"},
      {u" # ", "|||||"},
      {u"A S/N Y", "A|Y||||"},
      {u"A # Y B", "A||||B|"},  // both keywords share a blank: no room for a number
      {u"", "|||||"},
  };
  for (const auto& c : casos) {
    EXPECT_EQ(Divide(c.direccion), c.partes) << UTF8Encode(c.direccion);
  }
  for (const std::size_t n : {9'997U, 9'998U, 9'999U, 20'000U}) {
    const UnicodeString larga = UnicodeString(n, u'a') + u" # 5 " + UnicodeString(n, u'b') + u" Y c";
    EXPECT_EQ(Divide(larga), std::string(n, 'a') + "|5 " + std::string(n, 'b') + "|||c|");
  }
}

TEST(DividirDireccion, AnOutputMayHoldTheAddress) {
  UnicodeString partes[5] = {u"Una calle bastante larga # 12 ENTRE Otra y Otra más"};
  DividirDireccion(partes[0], partes[0], partes[1], partes[2], partes[3], partes[4]);
  EXPECT_EQ(partes[0], u"Una calle bastante larga");
  EXPECT_EQ(partes[4], u"Otra más");
}

TEST(DividePoblacion, WritesOnlyWhatItsCommasSay) {
  const struct {
    const char16_t* texto;
    const char* partes;
  } casos[] = {{u"Mérida", "Mérida|?|?|?|"},    {u"", "||?|?|"},       {u"A, B", "A|A|| B|"},
               {u"A, B, C", "A|A|?| C|"},       {u"A,B,", "A|A|?|?|"}, {u"A,", "A|A|?|?|"},
               {u" A ,B,C,D", " A | A |?|C,D|"}};
  for (const auto& c : casos) {
    UnicodeString partes[4] = {u"?", u"?", u"?", u"?"};
    DividePoblacion(c.texto, partes[0], partes[1], partes[2], partes[3]);
    std::string texto;
    for (const UnicodeString& parte : partes) texto += UTF8Encode(parte) + "|";
    EXPECT_EQ(texto, c.partes) << UTF8Encode(c.texto);
  }
}

TEST(ValidarCorreo, RaisesAtTheFirstFault) {
  for (const char16_t* bueno : {u"a@b", u"a@b.mx;c@d.mx", u"a@b;a@b;", u"a@;c@d", u"a@b;xa@b;c@d"}) {
    EXPECT_NO_THROW(ValidarCorreo(bueno)) << UTF8Encode(bueno);
  }
  const struct {
    const char16_t* correos;
    const char16_t* mensaje;
  } malos[] = {{u"", u"Debes capturar el correo electrónico."},
               {u"a", u"Correo inválido."},
               {u"@b", u"Correo inválido."},
               {u"a@", u"Correo inválido."},
               {u" a@b ; c", u"Correo inválido."},
               {u"a@b@c", u"Correo inválido."},
               {u"a@b;;c@d", u"Correo inválido."},
               // The tested text is dropped from within the next address too.
               {u"a@b;xa@b;", u"Correo inválido."}};
  for (const auto& m : malos) {
    try {
      ValidarCorreo(m.correos);
      ADD_FAILURE() << UTF8Encode(m.correos);
    } catch (const EInvalidOperation& e) {
      EXPECT_EQ(e.Message(), m.mensaje);
    }
  }
}

}  // namespace
}  // namespace vel

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <limits>
#include <random>
#include <string>

#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "framework/TClientDataSet.h"
#include "tests/Casos.h"
#include "tests/framework/OtroXml.h"

namespace vel {
namespace {

std::string Archivo(const std::string& nombre) {
  std::ifstream entrada(std::string(DATOS_PRUEBA) + "/paquetes/" + nombre, std::ios::binary);
  return {std::istreambuf_iterator<char>(entrada), {}};
}

// A packet of one field and one row.
std::string Paquete(const std::string& campo, const std::string& fila) {
  return "<DATAPACKET Version=\"2.0\"><METADATA><FIELDS>\n<FIELD attrname=\"F\" " + campo +
         "/></FIELDS></METADATA><ROWDATA>\n\n" + fila + "</ROWDATA></DATAPACKET>";
}

UnicodeString ErrorDe(const std::string& bytes) {
  TClientDataSet datos;
  datos.CreateDataSet({{.Name = u"Previo", .DataType = TFieldType::ftInteger}});
  try {
    datos.LoadFromXML(bytes, u"Empresas.xml");
  } catch (const EDatabaseError& e) {
    EXPECT_EQ(datos.FieldDefs().front().Name, u"Previo") << "a failed load must leave the data set alone";
    return e.Message();
  }
  return u"ninguno";
}

TEST(PaqueteXml, ReadsWhatTheValuesMean) {
  TClientDataSet datos;
  datos.LoadFromXML(Archivo("tipos.xml"), u"tipos.xml");
  datos.LoadFromXML(datos.SaveToXML(), u"guardado");
  ASSERT_EQ(datos.RecordCount(), 3U);
  datos.First();
  const auto texto = [&datos](std::u16string_view campo) { return datos.FieldByName(campo).AsString(); };
  EXPECT_TRUE(datos.FieldByName(u"Num").Required());
  EXPECT_EQ(datos.FieldByName(u"I8").AsLargeInt(), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(datos.FieldByName(u"real").AsFloat(), 0.1);
  EXPECT_EQ(datos.FieldByName(u"Fijo").AsFloat(), 1234.5678);
  EXPECT_TRUE(datos.FieldByName(u"Si").AsBoolean());
  const std::pair<const char16_t*, const char16_t*> textos[] = {{u"Cve", u"A&<\""},
                                                                {u"Nombre", u"Ñandú \n\t€ \U0001F600"},
                                                                {u"Dia", u"29/02/2024"},
                                                                {u"Hora", u"23:59:58.007"},
                                                                {u"Momento", u"15/05/2024 06:00:00.500"},
                                                                {u"Sello", u"01/01/0001"},
                                                                {u"Memo", u"línea\r\ndos"},
                                                                {u"Con blanco", u"sí"}};
  for (const auto& [campo, esperado] : textos) EXPECT_EQ(texto(campo), esperado) << UTF8Encode(campo);
  EXPECT_EQ(datos.FieldByName(u"Nombre").Size(), 20);
  EXPECT_FALSE(datos.FieldByName(u"MemoU").IsNull()) << "an empty text is not a null";
  TClientDataSet* const campos = datos.FieldByName(u"Campos").NestedDataSet();
  ASSERT_NE(campos, nullptr);
  ASSERT_EQ(campos->RecordCount(), 2U);
  campos->First();
  EXPECT_EQ(campos->FieldByName(u"Mas").NestedDataSet()->RecordCount(), 2U);
  datos.Next();
  EXPECT_EQ(texto(u"Num"), u"4");
  EXPECT_FALSE(datos.FieldByName(u"Si").IsNull());
  EXPECT_TRUE(datos.FieldByName(u"Cve").IsNull());
  datos.Next();
  EXPECT_EQ(texto(u"Num"), u"5");
}

TEST(PaqueteXml, KeepsEveryType) {
  // Each type that a data set keeps is a field of the file, named by its ordinal, with both ends of its
  // values.
  TClientDataSet uno;
  std::vector<TFieldDef> defs;
  for (int n = 0; n < 256; ++n) {
    const TFieldDef def{.Name = u"T" + IntToStr(n), .DataType = static_cast<TFieldType>(n)};
    try {
      uno.CreateDataSet({def});
      defs.push_back(def);
    } catch (const EDatabaseError&) {
      continue;
    }
  }
  TClientDataSet datos;
  datos.LoadFromXML(Archivo("todos.xml"), u"todos.xml");
  EXPECT_EQ(datos.FieldDefs(), defs);
  EXPECT_EQ(datos.SaveToXML(), Archivo("todos.xml"));
}

TEST(PaqueteXml, RefusesToSaveWhatXmlCannotHold) {
  TClientDataSet datos;
  datos.CreateDataSet({{.Name = u"R", .DataType = TFieldType::ftFloat}});
  datos.Append();
  datos.FieldByName(u"R").SetAsFloat(std::numeric_limits<double>::infinity());
  EXPECT_THROW(datos.SaveToXML(), EDatabaseError);
  datos.CreateDataSet({{.Name = u"T", .DataType = TFieldType::ftWideString}});
  datos.Append();
  for (const char16_t malo : {u'\x01', u'\xFFFF', u'\xD800'}) {
    datos.FieldByName(u"T").SetAsString(UnicodeString(1, malo));
    EXPECT_THROW(datos.SaveToXML(), EDatabaseError);
  }
}

TEST(PaqueteXml, ReadsOtherEncodings) {
  std::string altos;
  UnicodeString latin;
  for (int c = 0x80; c <= 0xFF; ++c) {
    altos += static_cast<char>(c);
    latin += static_cast<char16_t>(c);
  }
  const UnicodeString windows =
      u"€\u0081‚ƒ„…†‡ˆ‰Š‹Œ\u008DŽ\u008F\u0090‘’“”•–—˜™š›œ\u009DžŸ" + latin.substr(0x20);
  const std::string paquete = Paquete("fieldtype=\"string\"", "<ROW F=\"" + altos + "\"/>");
  std::string utf16 = "\xFF\xFE";
  for (const char c : paquete) utf16.append({c, '\0'});
  const auto declarado = [&paquete](const std::string& codificacion) {
    return "<?xml version=\"1.0\" encoding" + codificacion + "?>" + paquete;
  };
  const struct {
    std::string bytes;
    UnicodeString texto;
  } casos[] = {{declarado("=\"ISO-8859-1\""), latin},
               {declarado(" =\t'iso-8859-1' standalone='yes' "), latin},
               {declarado(" = \"Windows-1252\""), windows},
               {utf16, latin}};
  TClientDataSet datos;
  for (const auto& c : casos) {
    datos.LoadFromXML(c.bytes, u"x");
    EXPECT_EQ(datos.FieldByName(u"F").AsString(), c.texto) << c.bytes;
  }
  utf16.pop_back();
  EXPECT_EQ(ErrorDe(utf16), u"Empresas.xml, línea 1: el texto no es UTF-16 válido");
}

TEST(PaqueteXml, KeepsWhatOtherProgramsPutInIt) {
  TClientDataSet datos;
  TClientDataSet copia;
  datos.LoadFromXML(Archivo("resto.xml"), u"resto.xml");
  copia.AssignData(datos);
  EXPECT_EQ(copia.SaveToXML(), Archivo("resto_guardado.xml"));
  datos.LoadFromXML(copia.SaveToXML(), u"guardado");
  EXPECT_EQ(datos.SaveToXML(), Archivo("resto_guardado.xml"));
}

bool EsXml(const std::string& bytes) {
  const UnicodeString error = ErrorDe(bytes);
  return error.find(u" XML válido") == error.npos && error.find(u" UTF-8 válido") == error.npos;
}

TEST(PaqueteXml, AgreesWithAnotherParserOnWhatIsXml) {
  const std::string paquete[] = {"<DATAPACKET Version=\"2.0\"><METADATA><FIELDS/>",
                                 "</METADATA><ROWDATA/></DATAPACKET>"};
  for (const auto& caso : pruebas::Casos("paquetes/xml.txt", "|")) {
    std::string texto = pruebas::Descifra(caso.at(1));
    if (texto.find('%') == texto.npos) texto = paquete[0] + "<PARAMS>" + texto + "</PARAMS>" + paquete[1];
    for (std::size_t i; (i = texto.find('%')) != texto.npos;) texto.replace(i, 1, paquete[0] + paquete[1]);
    EXPECT_EQ(EsXml(texto), caso.at(0) == "+") << caso.at(1);
    EXPECT_EQ(pruebas::OtroLectorAcepta(texto), caso.at(0) == "+") << caso.at(1);
  }
  // And on a good packet with a few bytes changed, after its declaration, whose version the other one takes
  // as it comes.
  const std::string bueno = Archivo("resto_guardado.xml");
  const std::size_t declaracion = bueno.find('\n');
  const std::string bytes("<>&\"'/=;#x1?!-[] \r\n\x01\xC3\xB1", 22);
  std::mt19937 azar(1);
  for (int i = 0; i < 4000; ++i) {
    std::string texto = bueno;
    for (std::size_t k = azar() % 3 + 1; k > 0; --k) {
      texto.replace(declaracion + azar() % (texto.size() - declaracion), azar() % 3, azar() % 3,
                    bytes[azar() % bytes.size()]);
    }
    const UnicodeString error = ErrorDe(texto);
    if (error != u"ninguno" && EsXml(texto)) continue;
    EXPECT_EQ(error == u"ninguno", pruebas::OtroLectorAcepta(texto)) << texto << UTF8Encode(error);
  }
}

TEST(PaqueteXml, WritesWhatAnotherParserReads) {
  TClientDataSet datos;
  TClientDataSet otra;
  for (const std::u16string_view nombre : {u"xmlns", u"XmlA", u"RowState", u"a:b", u"Año", u"<"}) {
    datos.CreateDataSet({{.Name = UnicodeString(nombre), .DataType = TFieldType::ftWideString}});
    datos.Append();
    for (int c = 0; c < 0x10000; c += c == 0x100 ? 0xD6FF : c == 0xE000 ? 0x1FF0 : 1) {
      const UnicodeString texto{u'a', static_cast<char16_t>(c), u'b'};
      datos.Fields(0).SetAsString(texto);
      std::string xml;
      try {
        xml = datos.SaveToXML();
      } catch (const EDatabaseError&) {
        continue;
      }
      ASSERT_TRUE(pruebas::OtroLectorAcepta(xml)) << xml;
      ASSERT_EQ(xml.find(" " + UTF8Encode(nombre) + "="), xml.npos) << "no attribute of its own";
      otra.LoadFromXML(xml, u"x");
      ASSERT_EQ(otra.FieldByName(nombre).AsString(), texto);
    }
  }
}

TEST(PaqueteXml, SaysWhereItIsWrong) {
  for (const auto& c : pruebas::Casos("paquetes/errores.txt", "|")) {
    const std::string bytes = c.at(0) == "todo" ? pruebas::Descifra(c.at(1)) : Paquete(c[0], c.at(1));
    const std::string mensaje = "Empresas.xml, " + c.at(2);
    EXPECT_EQ(UTF8Encode(ErrorDe(bytes)).substr(0, mensaje.size()), mensaje) << bytes;
  }
}

TEST(PaqueteXml, EndsOnHostileInput) {
  const auto repite = [](const std::string& s, int veces) {
    std::string salida;
    for (int i = 0; i < veces; ++i) salida += s;
    return salida;
  };
  const std::string hondo = "<DATAPACKET Version=\"2.0\"><METADATA>" +
                            repite("<FIELDS><FIELD attrname=\"a\" fieldtype=\"nested\">", 100'000) +
                            repite("</FIELD></FIELDS>", 100'000) + "</METADATA><ROWDATA/></DATAPACKET>";
  EXPECT_EQ(ErrorDe(hondo), u"Empresas.xml, línea 1: hay demasiados niveles de campos anidados");
  const std::string elementos = repite("<a>", 100'000) + repite("</a>", 100'000);
  EXPECT_NE(ErrorDe(Paquete("fieldtype=\"i4\"", elementos)), u"ninguno");
  EXPECT_EQ(ErrorDe("<DATAPACKET Version=\"2.0\"><METADATA>" + elementos),
            u"Empresas.xml, línea 1: no es un documento XML válido (tiene demasiados niveles de elementos)");
  // Every beginning of a good packet either loads or says what is wrong.
  const std::string bueno = Archivo("tipos.xml");
  for (std::size_t n = 0; n + 4 < bueno.size(); n += 7)
    EXPECT_NE(ErrorDe(bueno.substr(0, n)), u"ninguno") << n;
}

}  // namespace
}  // namespace vel

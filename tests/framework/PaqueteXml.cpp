#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <limits>
#include <string>

#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "framework/TClientDataSet.h"
#include "tests/Casos.h"

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

void ExigeContenido(TClientDataSet& datos) {
  ASSERT_EQ(datos.RecordCount(), 3U);
  datos.First();
  const auto texto = [&datos](std::u16string_view campo) { return datos.FieldByName(campo).AsString(); };
  EXPECT_EQ(texto(u"Corto"), u"-128");
  EXPECT_EQ(texto(u"UI4"), u"4294967295");
  EXPECT_EQ(datos.FieldByName(u"I8").AsLargeInt(), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(datos.FieldByName(u"real").AsFloat(), 0.1);
  EXPECT_EQ(datos.FieldByName(u"Fijo").AsFloat(), 1234.5678);
  EXPECT_TRUE(datos.FieldByName(u"Si").AsBoolean());
  EXPECT_EQ(texto(u"Cve"), u"A&<\"");
  EXPECT_EQ(texto(u"Nombre"), u"Ñandú \n\t€ \U0001F600");
  EXPECT_EQ(datos.FieldByName(u"Nombre").Size(), 20);
  EXPECT_EQ(texto(u"Dia"), u"29/02/2024");
  EXPECT_EQ(texto(u"Hora"), u"23:59:58.007");
  EXPECT_EQ(texto(u"Momento"), u"15/05/2024 06:00:00.500");
  EXPECT_EQ(texto(u"Sello"), u"01/01/0001");
  EXPECT_EQ(texto(u"Memo"), u"línea\r\ndos");
  EXPECT_FALSE(datos.FieldByName(u"MemoU").IsNull()) << "an empty text is not a null";
  EXPECT_EQ(texto(u"Con blanco"), u"sí");
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

TEST(PaqueteXml, LoadsEveryTypeAndSavesItBack) {
  TClientDataSet datos;
  datos.LoadFromXML(Archivo("tipos.xml"), u"tipos.xml");
  ExigeContenido(datos);
  TClientDataSet otra;
  const std::string guardado = datos.SaveToXML();
  otra.LoadFromXML(guardado, u"guardado");
  EXPECT_EQ(otra.FieldDefs(), datos.FieldDefs());
  ExigeContenido(otra);
  EXPECT_EQ(otra.SaveToXML(), guardado);
}

TEST(PaqueteXml, KeepsDoublesToTheLastBit) {
  TClientDataSet datos;
  datos.CreateDataSet({{.Name = u"R", .DataType = TFieldType::ftFloat}});
  const double valores[] = {0.1 + 0.2, 1.0 / 3, 5e-324, 1.7976931348623157e308, -123456789.123456789};
  for (const double v : valores) {
    datos.Append();
    datos.FieldByName(u"R").SetAsFloat(v);
    datos.Post();
  }
  TClientDataSet otra;
  otra.LoadFromXML(datos.SaveToXML(), u"x");
  for (const double v : valores) {
    EXPECT_EQ(otra.FieldByName(u"R").AsFloat(), v);
    otra.Next();
  }
  datos.Edit();
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
  const std::string latin = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>" +
                            Paquete("fieldtype=\"string\"", "<ROW F=\"A\xF1o\"/>");
  TClientDataSet datos;
  datos.LoadFromXML(latin, u"x");
  EXPECT_EQ(datos.FieldByName(u"F").AsString(), u"Año");
  std::string utf16 = "\xFF\xFE";
  for (const char c : Paquete("fieldtype=\"string\"", "<ROW F=\"A\xF1o\"/>")) {
    utf16.push_back(c);
    utf16.push_back('\0');
  }
  datos.LoadFromXML(utf16, u"x");
  EXPECT_EQ(datos.FieldByName(u"F").AsString(), u"Año");
}

TEST(PaqueteXml, SaysWhereItIsWrong) {
  const struct {
    std::string bytes;
    const char16_t* mensaje;
  } casos[] = {
      {"", u"Empresas.xml, línea 1: no es un documento XML válido"},
      {"<DATAPACKET>\n<a>\n</DATAPACKET>", u"Empresas.xml, línea 3: no es un documento XML válido"},
      {"\n<OTRO/>", u"Empresas.xml, línea 2: falta el elemento DATAPACKET"},
      {Paquete("fieldtype=\"i4\"", "") + "\nsobra", u"Empresas.xml, línea 4: no es un documento XML válido"},
      {Paquete("fieldtype=\"string\"", "<ROW F=\"\x01\"/>"),
       u"Empresas.xml, línea 4: no es un documento XML"},
      {"<DATAPACKET Version=\"1.0\"/>", u"Empresas.xml, línea 1: la versión del paquete no es 2.0"},
      {"<DATAPACKET Version=\"2.0\"/>", u"Empresas.xml, línea 1: falta el elemento METADATA"},
      {Paquete("fieldtype=\"string\"", "<ROW F=\"\xF1\"/>"),
       u"Empresas.xml, línea 4: el texto no es UTF-8 válido"},
      {"<?xml version=\"1.0\" encoding=\"windows-1252\"?>",
       u"Empresas.xml, línea 1: la codificación 'windows-1252'"},
  };
  const auto exige = [](const std::string& bytes, const std::string& mensaje) {
    EXPECT_EQ(UTF8Encode(ErrorDe(bytes)).substr(0, mensaje.size()), mensaje) << bytes;
  };
  for (const auto& c : casos) exige(c.bytes, UTF8Encode(c.mensaje));
  for (const auto& c : pruebas::Casos("paquetes/errores.txt", "|"))
    exige(Paquete(c.at(0), c.at(1)), "Empresas.xml, " + c.at(2));
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
  const std::string entidades =
      "<!DOCTYPE a [<!ENTITY b \"cccccccc\">]>" + Paquete("fieldtype=\"string\"", "<ROW F=\"&b;&b;\"/>");
  TClientDataSet datos;
  datos.LoadFromXML(entidades, u"x");
  EXPECT_EQ(datos.FieldByName(u"F").AsString(), u"&b;&b;") << "entities are not expanded";
  // Every beginning of a good packet either loads or says what is wrong.
  const std::string bueno = Archivo("tipos.xml");
  for (std::size_t n = 0; n + 4 < bueno.size(); n += 7)
    EXPECT_NE(ErrorDe(bueno.substr(0, n)), u"ninguno") << n;
}

}  // namespace
}  // namespace vel

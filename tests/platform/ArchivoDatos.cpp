// Data sets on the disk: whole or not at all.

#include <gtest/gtest.h>

#include "framework/Excepciones.h"
#include "framework/TClientDataSet.h"
#include "tests/CarpetaTemporal.h"
#include "tests/Mensaje.h"

namespace vel {
namespace {

TEST(ArchivoDatos, IsReplacedWholeOrNotAtAll) {
  const pruebas::CarpetaTemporal c;
  TClientDataSet datos;
  datos.CreateDataSet({{.Name = u"N", .DataType = TFieldType::ftString, .Size = 20}});
  datos.Append();
  datos.FieldByName(u"N").SetAsString(u"Peña & Ñandú");
  datos.Post();
  datos.SaveToFile(c.Archivo("a.xml"));
  EXPECT_EQ(c.Lee("a.xml"), datos.SaveToXML());
  TClientDataSet leido;
  leido.LoadFromFile(StringReplace(c.Archivo("a.xml"), u"/", u"\\"));
  EXPECT_EQ(leido.FieldByName(u"N").AsString(), u"Peña & Ñandú");

  datos.Edit();
  datos.FieldByName(u"N").SetAsString(u"\u0001");
  datos.Post();
  EXPECT_THROW(datos.SaveToFile(c.Archivo("a.xml")), EDatabaseError) << "XML holds no such character";
  EXPECT_EQ(c.Lee("a.xml"), leido.SaveToXML());
  c.Escribe("malo.xml", "<a");
  const std::string falta = c.Utf8("no/b.xml");
  EXPECT_EQ(pruebas::MensajeDe([&] { leido.SaveToFile(c.Archivo("no/b.xml")); }),
            "No se puede escribir en el archivo \"" + falta + "\": la carpeta no existe");
  EXPECT_EQ(pruebas::MensajeDe([&] { leido.LoadFromFile(c.Archivo("no/b.xml")); }),
            "No se puede leer el archivo \"" + falta + "\": la carpeta no existe");
  EXPECT_NE(pruebas::MensajeDe([&] { leido.LoadFromFile(c.Archivo("malo.xml")); }).find("malo.xml"),
            std::string::npos);
  EXPECT_EQ(leido.RecordCount(), 1U);
}

}  // namespace
}  // namespace vel

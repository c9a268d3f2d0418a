#include "framework/TClientDataSet.h"

#include <gtest/gtest.h>
#include <utility>

#include "framework/Excepciones.h"

namespace vel {
namespace {

TClientDataSet Productos() {
  TClientDataSet datos;
  datos.CreateDataSet({{.Name = u"CVE", .DataType = TFieldType::ftString, .Size = 4, .Required = true},
                       {.Name = u"PREC", .DataType = TFieldType::ftFloat},
                       {.Name = u"CANT", .DataType = TFieldType::ftInteger},
                       {.Name = u"LOTES",
                        .DataType = TFieldType::ftDataSet,
                        .ChildDefs = {{.Name = u"LOTE", .DataType = TFieldType::ftString}}}});
  return datos;
}

void Agrega(TClientDataSet& datos, std::u16string_view cve, double precio) {
  datos.Append();
  datos.FieldByName(u"CVE").SetAsString(cve);
  datos.FieldByName(u"PREC").SetAsFloat(precio);
  datos.Post();
}

TEST(TClientDataSet, WalksItsRecords) {
  TClientDataSet datos = Productos();
  EXPECT_TRUE(datos.Eof() && datos.Bof());
  EXPECT_EQ(datos.RecNo(), 0U);
  EXPECT_EQ(datos.FieldByName(u"prec").AsFloat(), 0) << "an empty data set reads as null";
  datos.Next();
  EXPECT_TRUE(datos.Eof());
  Agrega(datos, u"A", 1.5);
  Agrega(datos, u"B", 2);
  datos.First();
  const TField& cve = datos.FieldByName(u"CVE");
  EXPECT_EQ(cve.TextView(), u"A");
  EXPECT_TRUE(datos.Bof());
  datos.Next();
  EXPECT_EQ(cve.TextView(), u"B");
  EXPECT_FALSE(datos.Eof());
  datos.Next();
  EXPECT_TRUE(datos.Eof());
  EXPECT_EQ(cve.TextView(), u"B") << "the last record stays current after the end";
  datos.Prior();
  EXPECT_EQ(cve.TextView(), u"A");
  EXPECT_TRUE(datos.Locate(u"PREC", Variant(2)));
  EXPECT_EQ(datos.RecNo(), 2U);
  EXPECT_FALSE(datos.Locate(u"CVE", Variant(u"a")));
  EXPECT_FALSE(datos.Locate(u"PREC", Variant(u"mucho")));
  EXPECT_TRUE(datos.Locate(u"CANT", Variant::Null()));
  EXPECT_THROW(datos.Locate(u"NADA", Variant(1)), EDatabaseError);
}

TEST(TClientDataSet, EditsAndPutsBack) {
  TClientDataSet datos = Productos();
  EXPECT_THROW(datos.Edit(), EDatabaseError);
  Agrega(datos, u"A", 1.5);
  EXPECT_THROW(datos.FieldByName(u"PREC").SetAsFloat(3), EDatabaseError) << "not in edit";
  datos.Edit();
  datos.FieldByName(u"PREC").SetAsString(u" 7.25 ");
  TClientDataSet* const lotes = datos.FieldByName(u"LOTES").NestedDataSet();
  lotes->Append();
  lotes->FieldByName(u"LOTE").SetAsString(u"L1");
  lotes->Post();
  EXPECT_THROW(datos.FieldByName(u"PREC").SetAsString(u"doce"), EConvertError);
  EXPECT_THROW(datos.FieldByName(u"CANT").SetAsFloat(3e9), EDatabaseError);
  EXPECT_THROW(datos.FieldByName(u"CVE").SetAsString(u"LARGA"), EDatabaseError);
  EXPECT_EQ(datos.FieldByName(u"PREC").AsFloat(), 7.25);
  datos.Cancel();
  EXPECT_EQ(datos.FieldByName(u"PREC").AsFloat(), 1.5);
  EXPECT_TRUE(datos.FieldByName(u"LOTES").IsNull());
  datos.Edit();
  datos.FieldByName(u"CVE").Clear();
  EXPECT_THROW(datos.Post(), EDatabaseError) << "required";
  datos.FieldByName(u"CVE").SetValue(Variant(12));
  datos.First();
  EXPECT_EQ(datos.FieldByName(u"CVE").AsString(), u"12") << "a move posts";
  datos.Append();
  datos.Cancel();
  EXPECT_EQ(datos.RecordCount(), 1U);
  datos.Delete();
  EXPECT_TRUE(datos.IsEmpty() && datos.Eof());
  EXPECT_THROW(datos.Delete(), EDatabaseError);
}

TEST(TClientDataSet, CopiesAndAppendsByName) {
  TClientDataSet origen = Productos();
  Agrega(origen, u"A", 1.5);
  Agrega(origen, u"1", 2);
  TClientDataSet copia;
  copia.AppendData(origen);
  copia.AppendData(copia);
  EXPECT_EQ(copia.RecordCount(), 4U);
  copia.AssignData(copia);
  EXPECT_EQ(copia.RecordCount(), 4U);

  TClientDataSet otra;
  otra.CreateDataSet({{.Name = u"lotes",
                       .DataType = TFieldType::ftDataSet,
                       .ChildDefs = {{.Name = u"LOTE", .DataType = TFieldType::ftWideString}}},
                      {.Name = u"cant", .DataType = TFieldType::ftFloat},
                      {.Name = u"prec", .DataType = TFieldType::ftString},
                      {.Name = u"cve", .DataType = TFieldType::ftWideString},
                      {.Name = u"mas", .DataType = TFieldType::ftBoolean}});
  otra.AppendData(origen);
  EXPECT_EQ(otra.FieldByName(u"PREC").AsString(), u"1.5");
  EXPECT_TRUE(otra.FieldByName(u"mas").IsNull());

  TClientDataSet numeros = Productos();
  numeros.CreateDataSet({{.Name = u"CVE", .DataType = TFieldType::ftInteger},
                         {.Name = u"PREC", .DataType = TFieldType::ftFloat},
                         {.Name = u"CANT", .DataType = TFieldType::ftInteger},
                         {.Name = u"LOTES", .DataType = TFieldType::ftDataSet, .ChildDefs = {}}});
  EXPECT_THROW(numeros.AppendData(origen), EConvertError);
  EXPECT_TRUE(numeros.IsEmpty()) << "all or nothing";
  TClientDataSet pobre;
  pobre.CreateDataSet({{.Name = u"CVE", .DataType = TFieldType::ftString}});
  EXPECT_THROW(pobre.AppendData(origen), EDatabaseError);
}

TEST(TClientDataSet, NamesTheFieldThatFails) {
  TClientDataSet datos;
  EXPECT_THROW(datos.Append(), EDatabaseError);
  EXPECT_THROW(datos.CreateDataSet({{.Name = u"A", .DataType = TFieldType::ftBlob}}), EDatabaseError);
  EXPECT_THROW(datos.CreateDataSet({{.Name = u"A", .DataType = TFieldType::ftFloat},
                                    {.Name = u"a", .DataType = TFieldType::ftFloat}}),
               EDatabaseError);
  datos.CreateDataSet({{.Name = u"CANT", .DataType = TFieldType::ftString}});
  datos.Append();
  const TField& cantidad = datos.FieldByName(u"CANT");
  EXPECT_EQ(cantidad.AsFloat(), 0) << "null reads as zero";
  datos.FieldByName(u"CANT").SetAsString(u"doce");
  try {
    cantidad.AsFloat();
    FAIL();
  } catch (const EConvertError& e) {
    EXPECT_EQ(e.Message(), u"'doce' no es un valor de punto flotante válido (campo 'CANT')");
  }
  EXPECT_THROW(cantidad.AsInteger(), EConvertError);
  EXPECT_THROW(cantidad.AsDateTime(), EConvertError);
  try {
    datos.FieldByName(u"PRECIO");
    FAIL();
  } catch (const EDatabaseError& e) {
    EXPECT_EQ(e.Message(), u"El campo 'PRECIO' no existe");
  }
}

}  // namespace
}  // namespace vel

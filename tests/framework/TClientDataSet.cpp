#include "framework/TClientDataSet.h"

#include <gtest/gtest.h>
#include <utility>

#include "framework/Excepciones.h"
#include "tests/Mensaje.h"

namespace vel {
namespace {

using pruebas::MensajeDe;

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
  datos.Edit();
  datos.FieldByName(u"CVE").SetAsString(u"7");
  datos.FieldByName(u"CANT").SetAsInteger(2);
  EXPECT_TRUE(datos.Locate(u"CVE", Variant(7)));
  EXPECT_FALSE(datos.Locate(u"CANT", Variant(2.5))) << "no whole number";
  EXPECT_FALSE(datos.Locate(u"PREC", Variant(u"mucho")));
  EXPECT_TRUE(datos.Locate(u"CANT", Variant::Null()));
  EXPECT_THROW(datos.Locate(u"NADA", Variant(1)), EDatabaseError);
  datos.First();
  Agrega(datos, u"C", 3);
  datos.First();
  datos.Delete();
  EXPECT_EQ(datos.RecNo(), 1U);
}

TEST(TClientDataSet, EditsAndPutsBack) {
  TClientDataSet datos = Productos();
  EXPECT_THROW(datos.Edit(), EDatabaseError);
  Agrega(datos, u"AAAA", 1.5);
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
  datos.Edit();
  datos.EmptyDataSet();
  EXPECT_TRUE(datos.IsEmpty() && datos.Eof());
  EXPECT_THROW(datos.FieldByName(u"PREC").SetAsFloat(3), EDatabaseError) << "no more in edit";
  EXPECT_THROW(datos.Delete(), EDatabaseError);
}

TEST(TClientDataSet, CopiesAndAppendsByName) {
  TClientDataSet origen = Productos();
  Agrega(origen, u"1", 1.5);
  Agrega(origen, u"A", 2);
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
  numeros.Append();
  EXPECT_EQ(numeros.RecordCount(), 1U) << "all or nothing";
  EXPECT_TRUE(numeros.FieldByName(u"CVE").IsNull());
  TClientDataSet pobre;
  pobre.CreateDataSet({{.Name = u"CVE", .DataType = TFieldType::ftString}});
  EXPECT_THROW(pobre.AppendData(origen), EDatabaseError);
}

TEST(TClientDataSet, KeepsOfAValueWhatItsFieldIs) {
  const struct {
    TFieldType tipo;
    Variant valor;
    double queda;
  } casos[] = {{TFieldType::ftDate, Variant(TDateTime(45427.75)), 45427},
               {TFieldType::ftTime, Variant(TDateTime(45427.75)), 0.75},
               {TFieldType::ftTime, Variant(TDateTime(-1.25)), 0.25},
               {TFieldType::ftInteger, Variant(true), -1},
               {TFieldType::ftFloat, Variant(true), -1},
               {TFieldType::ftBoolean, Variant(7), -1}};
  TClientDataSet datos;
  for (const auto& c : casos) {
    datos.CreateDataSet({{.Name = u"A", .DataType = c.tipo}});
    datos.Append();
    datos.Fields(0).SetValue(c.valor);
    EXPECT_EQ(datos.Fields(0).AsFloat(), c.queda) << static_cast<int>(c.tipo);
  }
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
  EXPECT_EQ(MensajeDe([&] { cantidad.AsFloat(); }),
            "'doce' no es un valor de punto flotante válido (campo 'CANT')");
  EXPECT_THROW(cantidad.AsInteger(), EConvertError);
  EXPECT_THROW(cantidad.AsDateTime(), EConvertError);
  EXPECT_EQ(MensajeDe([&] { datos.FieldByName(u"PRECIO"); }), "El campo 'PRECIO' no existe");
}

}  // namespace
}  // namespace vel

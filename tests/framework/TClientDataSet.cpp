#include "framework/TClientDataSet.h"

#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <utility>

#include "framework/Excepciones.h"
#include "framework/TParams.h"
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
  EXPECT_EQ(datos.FieldByName(u"CVE").AsString(), u"");
  EXPECT_EQ(datos.FieldByName(u"CVE").TextView(), u"");
  EXPECT_EQ(datos.FieldByName(u"CVE").AsDateTime().Val(), 0);
  EXPECT_TRUE(datos.FieldByName(u"CVE").Value().IsNull());
  EXPECT_EQ(datos.FieldByName(u"LOTES").NestedDataSet(), nullptr);
  datos.Prior();
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
  EXPECT_FALSE(datos.Bof());
  datos.Prior();
  EXPECT_TRUE(datos.Bof());
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
  datos.Append();
  datos.Delete();
  EXPECT_EQ(datos.RecordCount(), 2U) << "what was not put is not there to delete";
  datos.Delete();
  datos.Delete();
  EXPECT_TRUE(datos.Bof() && datos.Eof());
  datos.Append();
  datos.Cancel();
  datos.Cancel();
  EXPECT_TRUE(datos.Bof() && datos.Eof());
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
  datos.Edit();
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
  origen.Edit();
  TClientDataSet* const lotes = origen.FieldByName(u"LOTES").NestedDataSet();
  lotes->Append();
  lotes->Fields(0).SetAsString(u"L1");
  origen.Post();
  TClientDataSet copia;
  copia.AppendData(TClientDataSet());
  EXPECT_EQ(copia.FieldCount(), 0U);
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
  otra = TClientDataSet(std::move(otra));
  EXPECT_TRUE(otra.Locate(u"cve", Variant(u"A")));
  EXPECT_EQ(otra.FieldByName(u"lotes").NestedDataSet()->Fields(0).AsString(), u"L1");
  TClientDataSet angosta;
  angosta.CreateDataSet({{.Name = u"LOTES", .DataType = TFieldType::ftDataSet, .ChildDefs = {}},
                         {.Name = u"CVE", .DataType = TFieldType::ftString, .Size = 1},
                         {.Name = u"PREC", .DataType = TFieldType::ftFloat},
                         {.Name = u"CANT", .DataType = TFieldType::ftInteger}});
  angosta.AppendData(origen);
  EXPECT_TRUE(angosta.Locate(u"CVE", Variant(u"A")));
  EXPECT_EQ(angosta.FieldByName(u"LOTES").NestedDataSet()->Fields(0).AsString(), u"L1");

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
    const char16_t* texto;
  } casos[] = {{TFieldType::ftDate, Variant(TDateTime(45427.75)), 45427, u"15/05/2024"},
               {TFieldType::ftTime, Variant(TDateTime(45427.75)), 0.75, u"18:00:00"},
               {TFieldType::ftTime, Variant(TDateTime(-1.25)), 0.25, u"06:00:00"},
               {TFieldType::ftTime, Variant(TDateTime(45427)), 0, u"00:00:00"},
               {TFieldType::ftDateTime, Variant(u"15/05/2024"), 45427, u"15/05/2024"},
               {TFieldType::ftInteger, Variant(true), -1, u"-1"},
               {TFieldType::ftInteger, Variant(u" "), 0, u""},
               {TFieldType::ftLargeint, Variant(std::int64_t{5'000'000'000}), 5e9, u"5000000000"},
               {TFieldType::ftFloat, Variant(true), -1, u"-1"},
               {TFieldType::ftBoolean, Variant(7), -1, u"True"},
               {TFieldType::ftBoolean, Variant(0), 0, u"False"},
               {TFieldType::ftBoolean, Variant(-0.5), -1, u"True"},
               {TFieldType::ftBoolean, Variant(u"true"), -1, u"True"},
               {TFieldType::ftString, Variant(-1.5), -1.5, u"-1.5"}};
  TClientDataSet datos;
  for (const auto& c : casos) {
    datos.CreateDataSet({{.Name = u"A", .DataType = c.tipo}});
    datos.Append();
    datos.Fields(0).SetValue(c.valor);
    SCOPED_TRACE(static_cast<int>(c.tipo));
    EXPECT_EQ(datos.Fields(0).AsFloat(), c.queda);
    EXPECT_EQ(datos.Fields(0).AsString(), c.texto);
    EXPECT_EQ(datos.Fields(0).AsBoolean(), c.queda != 0);
    EXPECT_EQ(datos.Locate(u"A", c.valor), *c.texto != 0);
  }
  datos.CreateDataSet({{.Name = u"A", .DataType = TFieldType::ftString}});
  datos.Append();
  datos.Fields(0).SetAsBoolean(true);
  EXPECT_EQ(datos.Fields(0).AsString(), u"True");
  datos.Fields(0).SetAsDateTime(TDateTime(45427));
  EXPECT_EQ(datos.Fields(0).AsString(), u"15/05/2024");
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
  EXPECT_THROW(cantidad.AsBoolean(), EConvertError);
  EXPECT_THROW(cantidad.AsDateTime(), EConvertError);
  EXPECT_EQ(MensajeDe([&] { datos.FieldByName(u"PRECIO"); }), "El campo 'PRECIO' no existe");
  EXPECT_EQ(MensajeDe([&] { datos.Fields(1); }), "Índice de campo fuera de rango (1)");

  datos.CreateDataSet({{.Name = u"L", .DataType = TFieldType::ftDataSet, .ChildDefs = {}},
                       {.Name = u"N", .DataType = TFieldType::ftLargeint},
                       {.Name = u"S", .DataType = TFieldType::ftSingle},
                       {.Name = u"D", .DataType = TFieldType::ftDate}});
  datos.Append();
  TField& lotes = datos.Fields(0);
  lotes.NestedDataSet()->CreateDataSet({{.Name = u"A", .DataType = TFieldType::ftInteger}});
  lotes.NestedDataSet()->Append();
  const std::function<void()> ajenos[] = {[&] { lotes.AsString(); },
                                          [&] { lotes.AsFloat(); },
                                          [&] { lotes.AsInteger(); },
                                          [&] { lotes.TextView(); },
                                          [&] { lotes.SetAsString(u""); },
                                          [&] { lotes.SetAsFloat(1); },
                                          [&] { lotes.SetAsInteger(1); },
                                          [&] { datos.Locate(u"L", Variant(1)); },
                                          [&] { lotes.SetValue(VarArrayOf({})); }};
  for (const auto& ajeno : ajenos)
    EXPECT_EQ(MensajeDe(ajeno), "El valor no corresponde al tipo del campo 'L'");
  datos.Fields(1).SetAsLargeInt(5'000'000'000);
  EXPECT_EQ(MensajeDe([&] { datos.Fields(1).AsInteger(); }), "5000000000 está fuera de rango (campo 'N')");
  EXPECT_EQ(MensajeDe([&] { datos.Fields(1).SetAsFloat(1e30); }), "1E30 está fuera de rango (campo 'N')");
  EXPECT_EQ(MensajeDe([&] { datos.Fields(2).SetAsFloat(1e39); }), "1E39 está fuera de rango (campo 'S')");
  EXPECT_EQ(MensajeDe([&] { datos.Fields(3).SetAsFloat(1e9); }),
            "1000000000 no es una fecha válida (campo 'D')");
}

TEST(TParams, AreFoundByNameInAnyCase) {
  TParams parametros;
  parametros.Add({.Name = u"Var1", .Value = Variant(7)});
  parametros.ParamByName(u"VAR1").Value = Variant(8);
  EXPECT_EQ(std::as_const(parametros).ParamByName(u"var1").Value, Variant(8));
  EXPECT_EQ(parametros.FindParam(u"var"), nullptr);
  EXPECT_EQ(MensajeDe([&] { parametros.ParamByName(u"otro"); }), "El parámetro 'otro' no existe");
  EXPECT_EQ(MensajeDe([&] { parametros[1]; }), "Índice de parámetro fuera de rango (1)");
  parametros.Clear();
  EXPECT_EQ(parametros.FindParam(u"Var1"), nullptr);
}

}  // namespace
}  // namespace vel

#include "framework/TClientDataSet.h"

#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <string>
#include <utility>

#include "framework/Excepciones.h"
#include "framework/TParams.h"
#include "tests/Casos.h"
#include "tests/Mensaje.h"
#include "tests/Paramsql/Valores.h"

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

// What a program sees of it: see recorridos.txt.
std::string Ve(const TClientDataSet& datos) {
  std::string texto = std::string(datos.Bof() ? "B" : ".") + (datos.Eof() ? "E" : ".") + " " +
                      std::to_string(datos.RecNo()) + "/" + std::to_string(datos.RecordCount());
  for (const char16_t* const nombre : {u"CVE", u"PREC", u"CANT"}) {
    const TField& campo = datos.FieldByName(nombre);
    texto += " " + (campo.IsNull() ? "-" : UTF8Encode(campo.AsString()));
  }
  const TField& lotes = datos.FieldByName(u"LOTES");
  texto += " " + (lotes.IsNull() ? "-" : UTF8Encode(lotes.NestedDataSet()->Fields(0).AsString()));
  return texto;
}

// One step of a walk; gives what it answers.
std::string Da(TClientDataSet& datos, const std::string& paso) {
  using D = TClientDataSet;
  static const std::map<std::string, void (D::*)()> sueltos = {
      {"first", &D::First},   {"next", &D::Next},     {"prior", &D::Prior},
      {"append", &D::Append}, {"edit", &D::Edit},     {"post", &D::Post},
      {"cancel", &D::Cancel}, {"delete", &D::Delete}, {"empty", &D::EmptyDataSet}};
  if (const auto suelto = sueltos.find(paso); suelto != sueltos.end()) return (datos.*suelto->second)(), "";
  std::istringstream entrada = pruebas::Entrada(paso);
  std::string verbo, nombre, valor;
  std::getline(entrada >> verbo >> nombre >> std::ws, valor);
  if (verbo == "locate")
    return datos.Locate(UTF8ToString(nombre), pruebas::ValorDe(valor)) ? "found" : "not found";
  TField& campo = datos.FieldByName(UTF8ToString(nombre));
  if (verbo == "text") campo.SetAsString(UTF8ToString(valor.substr(1, valor.size() - 2)));
  if (verbo == "float") campo.SetAsFloat(pruebas::Real(valor));
  if (verbo == "integer") campo.SetAsInteger(std::stoi(valor));
  if (verbo == "value") campo.SetValue(pruebas::ValorDe(valor));
  if (verbo == "clear") campo.Clear();
  if (verbo == "nest") {
    TClientDataSet* const lotes = campo.NestedDataSet();
    lotes->Append();
    lotes->Fields(0).SetAsString(UTF8ToString(valor));
    lotes->Post();
  }
  return "";
}

TEST(TClientDataSet, IsWalkedAndEdited) {
  TClientDataSet datos = Productos();
  const TField& cve = datos.FieldByName(u"cve");
  EXPECT_EQ(datos.FieldByName(u"PREC").AsFloat(), 0) << "an empty data set reads as null";
  EXPECT_EQ(cve.TextView(), u"");
  EXPECT_EQ(cve.AsDateTime().Val(), 0);
  EXPECT_TRUE(cve.Value().IsNull());
  EXPECT_EQ(datos.FieldByName(u"LOTES").NestedDataSet(), nullptr);
  for (const auto& caso : pruebas::Casos("paquetes/recorridos.txt", " | ")) {
    std::istringstream pasos = pruebas::Entrada(caso.at(0));
    std::string dice;
    for (std::string paso; std::getline(pasos >> std::ws, paso, ';');) {
      try {
        dice += Da(datos, paso);
      } catch (const EConvertError& e) {
        dice += "no conversion: " + UTF8Encode(e.Message());
      } catch (const EDatabaseError& e) {
        dice += UTF8Encode(e.Message());
      }
    }
    EXPECT_EQ(Ve(datos) + (dice.empty() ? "" : " " + dice), caso.at(1)) << caso[0];
    EXPECT_EQ(cve.TextView(), cve.AsString());
  }
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
  TClientDataSet datos;
  for (const auto& c : pruebas::Casos("paquetes/conversiones.txt", "|")) {
    const Variant valor = pruebas::ValorDe(c.at(1));
    const double queda = pruebas::Real(c.at(2));
    datos.CreateDataSet({{.Name = u"A", .DataType = pruebas::TipoDe(c.at(0))}});
    datos.Append();
    datos.Fields(0).SetValue(valor);
    SCOPED_TRACE(c[0] + " " + c[1]);
    EXPECT_EQ(datos.Fields(0).AsFloat(), queda);
    EXPECT_EQ(UTF8Encode(datos.Fields(0).AsString()), c.at(3));
    EXPECT_EQ(datos.Fields(0).AsBoolean(), queda != 0);
    EXPECT_EQ(datos.Locate(u"A", valor), !c[3].empty());
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

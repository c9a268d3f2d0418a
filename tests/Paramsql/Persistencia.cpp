#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <string>

#include "Paramsql/Paramsql.h"
#include "Uutilext/config/Configuracion.h"
#include "framework/Excepciones.h"
#include "platform/Archivos.h"
#include "tests/CarpetaTemporal.h"
#include "tests/Casos.h"
#include "tests/Mensaje.h"
#include "tests/Paramsql/Valores.h"

namespace vel {
namespace {

constexpr auto Y = ENUM_CONECTOR::AND;
constexpr auto SIN = ENUM_GRUPO::NADA;
using Op = ENUM_OPERADOR;
using Tipo = TFieldType;

class Definicion : public testing::Test {
 protected:
  void Escribe(const std::string& texto) const { carpeta_.Escribe("consulta.ini", texto); }
  std::string Lee() const { return carpeta_.Lee("consulta.ini"); }

  pruebas::CarpetaTemporal carpeta_;
  UnicodeString archivo_ = carpeta_.Archivo("consulta.ini");
};

// Statement and parameters of a definition as one text.
std::string Huella(TParametrosFiltro& f) {
  std::string huella = UTF8Encode(f.DameSentenciaSQL(false, 0)) + "\n";
  huella += UTF8Encode(f.DameSentenciaSQL(true, 0));
  TParams parametros;
  f.AsignaParametros(parametros, 0);
  EXPECT_EQ(parametros.Count() == 0, huella.find(":var1") == std::string::npos);
  for (const TParam& p : parametros) {
    huella += "\n" + UTF8Encode(p.Name) + " " + std::to_string(static_cast<int>(p.DataType)) + " " +
              std::to_string(static_cast<int>(p.Value.GetKind())) + " " + UTF8Encode(p.Value.AsString());
    if (p.Value.GetKind() == Variant::Kind::Double) huella += " " + std::to_string(p.Value.AsDouble() * 1e17);
  }
  return huella;
}

void ArmaTodo(TParametrosFiltro& f) {
  f.AgregaCampoSelect(u"C.NOMBRE", u"\"Nombre\"", true);
  f.AgregaCampoSelect(u"SUM(S)", u"", false);
  f.AgregaJoin(u"JOIN C ON C.I = T.I");
  f.AgregaJoin(u"LEFT JOIN D ON D.N = 'x'");
  for (const auto& c : pruebas::Casos("sentencias/condiciones.txt", "|")) {
    f.AgregaFiltro(UTF8ToString(c.at(0)), pruebas::TipoDe(c.at(1)), pruebas::ValorDe(c.at(3)),
                   TParametrosFiltro::DameOperador(UTF8ToString(c.at(2))),
                   TParametrosFiltro::DameOperadorUnion(UTF8ToString(c.at(4))),
                   TParametrosFiltro::DameCharGrupo(UTF8ToString(c.at(5))), c.at(6) == "sí");
  }
  f.GroupBy = u"C.NOMBRE, C.I";
  f.AgregaHaving(u"MIN(N)", Tipo::ftString, Variant(u"a%"), Op::LIKE, ENUM_CONECTOR::OR, ENUM_GRUPO::INICIA,
                 false);
  f.AgregaHaving(u"MIN(N)", Tipo::ftString, Variant(u"b%"), Op::LIKE, Y, ENUM_GRUPO::TERMINA, false);
  f.AgregaHaving(u"MAX(N)", Tipo::ftInteger, Variant(true), Op::MACRO, Y, SIN, true);
  f.AgregaHaving(u"COUNT(*)", Tipo::ftInteger, VarArrayOf({Variant(1), Variant(2)}), Op::BETWEEN, Y, SIN,
                 true);
  f.FiltroPActivo = 2;
  f.FilterTextPers = u" C.I > 0 ";
  f.FilterPersItems = {u"I mayor que 0", u"con, coma"};
  f.FilterParamsPers = VarArrayOf({Variant(u"x'y"), Variant(3), Variant(0.5), Variant::Null(), Variant(false),
                                   Variant(std::int64_t{1} << 40), Variant(TDateTime(45427.5))});
}

TEST_F(Definicion, OfAnyContentReloadsToTheSame) {
  TParametrosFiltro f(u"FACTF01 T");
  ArmaTodo(f);
  TParametrosFiltro* u = &f;
  for (const char16_t* tabla : {u"A", u"B", u"C"}) {
    u = u->AgregaUnion(tabla);
    ArmaTodo(*u);
  }
  f.ParamWhere.insert(f.ParamWhere.begin(), nullptr);
  f.SaveToIni(archivo_, 0);
  f.ParamWhere.erase(f.ParamWhere.begin());
  TParametrosFiltro leida(u"otra");
  leida.AgregaJoin(u"vieja");
  TParametrosFiltro* const partner = leida.AgregaUnion(u"vieja");
  leida.FechaTrabajo = TDateTime(45427);
  leida.LoadFromIni(archivo_, 0);
  EXPECT_EQ(Huella(leida), Huella(f));
  EXPECT_EQ(leida.ParametrosUnion->ParametrosUnion->FechaTrabajo, TDateTime(45427));
  EXPECT_EQ(partner->NombreTabla, u"vieja");
  // By its properties it goes as XML, whole.
  TParametrosFiltro deXml(u"");
  LeeRemotableXML(deXml, EscribeRemotableXML(f, u"Filtro"));
  EXPECT_EQ(Huella(deXml), Huella(f));
  EXPECT_EQ(deXml.FilterParamsPers, f.FilterParamsPers);
  EXPECT_EQ(leida.FilterPersItems, f.FilterPersItems);
  EXPECT_EQ(leida.FilterParamsPers, f.FilterParamsPers);
  EXPECT_TRUE(leida.CampoVisible(u"C.NOMBRE"));
  // Saved again the file stays as it is, and a shorter definition leaves nothing stale.
  const std::string bytes = Lee();
  leida.SaveToIni(archivo_, 0);
  EXPECT_EQ(Lee(), bytes);
  TParametrosFiltro corta(u"T");
  corta.SaveToIni(archivo_, -5);
  leida.LoadFromIni(archivo_, 0);
  EXPECT_EQ(Huella(leida), Huella(corta));
}

TEST_F(Definicion, HasItsLayout) {
  TParametrosFiltro f(u"T");
  f.SaveToIni(archivo_, 0);
  EXPECT_EQ(Lee(), "[TABLAPIV]\r\nTABLA=T\r\n");
  f.AgregaCampoSelect(u"A", u"X", true);
  f.AgregaJoin(u"JOIN D");
  f.AgregaFiltro(u"N", Tipo::ftString, Variant(u"O'Brien"), Op::DIFERENTE, Y, ENUM_GRUPO::INICIA, true);
  f.AgregaFiltro(u"I", Tipo::ftInteger, Op::INN, Y, SIN, Variant(1), Variant(2));
  f.GroupBy = u"A";
  f.AgregaHaving(u"H", Tipo::ftInteger, Variant(3), Op::LIKE, Y, SIN, true);
  for (const Op op : {Op::INN, Op::NOTIN, Op::BETWEEN, Op::EXISTS})
    f.AgregaHaving(u"X", Tipo::ftDataSet, VarArrayOf({Variant(u"1"), Variant(u"'b'")}), op, Y, SIN, true);
  f.AgregaHaving(u"N", Tipo::ftString, Variant(), Op::ISNULL, Y, SIN, true);
  f.AgregaUnion(u"U");
  f.SaveToIni(archivo_, 0);
  EXPECT_EQ(Lee(), LeeArchivo(UTF8ToString(DATOS_PRUEBA "/sentencias/definicion.ini")));
}

TEST(Valores, AreStoredAsTheirOwnTexts) {
  for (const auto& c : pruebas::Casos("sentencias/valores.txt", "|")) {
    const std::size_t i = c.at(0) == "lee" ? 1 : 0;
    const TFieldType tipo = pruebas::TipoDe(c.at(i));
    const Variant valor = pruebas::ValorDe(c.at(i + 1));
    EXPECT_EQ(TParametrosFiltro::DameValorLstCampos(tipo, UTF8ToString(c.at(i + 2))), valor) << c[i + 2];
    if (i == 1) continue;
    EXPECT_EQ(UTF8Encode(TParametrosFiltro::DameValorIni(tipo, valor)), '"' + c[2] + '"');
  }
  EXPECT_EQ(TParametrosFiltro::DameValorIni(Tipo::ftInteger, Variant(u"a'b")), u"\"'a'b'\"");
  constexpr double kInfinito = std::numeric_limits<double>::infinity();
  for (const double ajeno : {kInfinito, -kInfinito, kInfinito - kInfinito})
    EXPECT_THROW(TParametrosFiltro::DameValorIni(Tipo::ftFloat, Variant(ajeno)), EInvalidOperation);
  EXPECT_EQ(TParametrosFiltro(u"T").SaveToExistsInn(Variant(1)), u"\"{}\"");
}

TEST_F(Definicion, WrittenByHandLoads) {
  Escribe(
      "[tablapiv]\ntabla = CLIENTES\n[Filtro]\nNumFiltros=3\nNomCampo0=NOMBRE\nTipoCampo0=1\nValCampo0=Pe\xF1"
      "a\nOpCampo0=LIKE\nConectCampo0=OR\nNomCampo1=I\nTipoCampo1=3\nValCampo1='1','2'\nOpCampo1=IN\n"
      "CharGrupCampo1=)\nSensitive1=T\nNomCampo2=M\nOpCampo2=NINGUNO\n[JOINS]\nNumJoins=1\nJoin0=JOIN "
      "D\n[Vista1]\nOrdenadoPor=NOMBRE\nDescendente=-1\n");
  TParametrosFiltro f(u"");
  f.LoadFromIni(archivo_, 0);
  EXPECT_EQ(
      f.DameSentenciaSQL(false, 0),
      u"SELECT  *  from CLIENTES   JOIN D  WHERE ((UPPER( NOMBRE)  LIKE 'PEÑA' OR I IN  ( 1, 2) ) AND )  "
      u"ORDER BY NOMBRE DESC");
  for (const auto& [texto, desciende] :
       {std::pair("TRUE", true), {"t", true}, {"1", true}, {"FALSE", false}, {"0", false}}) {
    Escribe("[Vista1]\nOrdenadoPor=A\nDescendente=" + std::string(texto) + "\n");
    f.LoadFromIni(archivo_, 0);
    EXPECT_EQ(f.OrdDesc, desciende) << texto;
  }
  Escribe("[Vista1]\nOrdenadoPor=A\n");
  f.OrdDesc = false;
  for (int vez = 0; vez < 2; ++vez) {
    f.LoadFromIni(archivo_, 0);
    EXPECT_FALSE(f.OrdDesc) << "loading again does not turn the order around";
  }
  f.OrdDesc = true;
  Escribe("[TABLAPIV]\nTABLA=T\n");
  f.LoadFromIni(archivo_, 0);
  EXPECT_EQ(f.DameSentenciaSQL(false, 0), u"SELECT  *  from T  ORDER BY A DESC");
}

TEST_F(Definicion, OneSectionHoldsConditions) {
  TParametrosFiltro f(u"T");
  f.AgregaFiltro(u"I", Tipo::ftInteger, Variant(1), Op::IGUAL, Y, SIN, true);
  f.FilterTextPers = u"P=1";
  f.FilterPersItems = {u"P es uno"};
  f.SaveToIni(archivo_, u"Otra");
  f.SaveToIni(archivo_, u"MiFiltro");
  const std::string bytes = Lee();
  f.SaveToIni(archivo_, u"MiFiltro");
  EXPECT_EQ(Lee(), bytes) << "nothing piles up";
  TParametrosFiltro leida(u"T");
  leida.LoadFromIni(archivo_, u"MIFILTRO");
  EXPECT_EQ(Huella(leida), Huella(f));
  EXPECT_EQ(leida.FilterTextPers, u"P=1");
  EXPECT_EQ(leida.FilterPersItems, f.FilterPersItems) << "one alone";
  leida.FilterTextPers.clear();
  leida.LoadParamPersFromIni(archivo_, u"MiFiltro");
  EXPECT_EQ(leida.FilterTextPers, u"P=1");
  leida.FilterTextPers.clear();
  leida.SaveParamPersToIni(archivo_, u"MiFiltro", false);
  leida.LoadFromIni(archivo_, u"MiFiltro");
  EXPECT_EQ(leida.FilterTextPers, u"") << "old keys do not come back";
  EXPECT_EQ(leida.ParamWhere.size(), 1U);
  leida.SaveParamPersToIni(archivo_, u"MiFiltro", true);
  leida.LoadFromIni(archivo_, u"MiFiltro");
  EXPECT_TRUE(leida.ParamWhere.empty());
}

TEST_F(Definicion, StaysWholeOnBadInput) {
  TParametrosFiltro f(u"T");
  f.AgregaFiltro(u"I", Tipo::ftInteger, Variant(1), Op::IGUAL, Y, SIN, true);
  f.SaveToIni(archivo_, 0);
  const std::string bytes = Lee();
  f.AgregaFiltro(u"N", Tipo::ftString, Variant(u"dos\nlíneas"), Op::IGUAL, Y, SIN, true);
  EXPECT_THROW(f.SaveToIni(archivo_, 0), EInvalidOperation);
  EXPECT_EQ(Lee(), bytes);
  EXPECT_EQ(pruebas::MensajeDe([&] { f.SaveToIni(carpeta_.Archivo("nada/consulta.ini"), 0); }),
            "No se puede actualizar la información del archivo \"" + carpeta_.Utf8("nada/consulta.ini") +
                "\"\nCompruebe que tenga los permisos necesarios.");
  const std::string huella = Huella(f);
  for (const char* malo : {"[UNION]\nFiltro=0\n", "[UNION]\nFiltro=1\n[UNION1]\nFiltro=1\n",
                           "[UNION]\nFiltro=x\n", "[FILTRO]\nNumFiltros=1\nTipoCampo0=3\nValCampo0=doce\n"}) {
    Escribe(malo);
    EXPECT_THROW(f.LoadFromIni(archivo_, 0), Exception) << malo;
    EXPECT_EQ(Huella(f), huella);
  }
  TParametrosFiltro larga(u"T");
  TParametrosFiltro* ultima = &larga;
  for (int i = 0; i < 64; ++i) ultima = ultima->AgregaUnion(u"U");
  larga.SaveToIni(archivo_, 0);
  f.LoadFromIni(archivo_, 0);
  EXPECT_EQ(Huella(f), Huella(larga));
  EscribeValor(archivo_, u"UNION64", u"Filtro", u"65");
  EXPECT_THROW(f.LoadFromIni(archivo_, 0), EInvalidOperation);
  ultima->AgregaUnion(u"U");
  EXPECT_THROW(larga.SaveToIni(archivo_, 0), EInvalidOperation);
  Escribe("[FILTRO]\nNumFiltros=2000000000\nNomCampo0=A\n");
  f.LoadFromIni(archivo_, 0);
  EXPECT_LE(f.ParamWhere.size(), 2U);
}

}  // namespace
}  // namespace vel

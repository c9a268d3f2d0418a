#include <gtest/gtest.h>
#include <utility>

#include "Paramsql/Paramsql.h"
#include "framework/Excepciones.h"
#include "tests/Casos.h"

namespace vel {
namespace {

constexpr auto kTexto = TFieldType::ftString;
constexpr auto Y = ENUM_CONECTOR::AND;
constexpr auto SIN = ENUM_GRUPO::NADA;

void Agrega(TParametrosFiltro& filtro, std::u16string_view campo, bool sensitive = true) {
  filtro.AgregaFiltro(campo, kTexto, Variant(u"x"), ENUM_OPERADOR::IGUAL, Y, SIN, sensitive);
}

UnicodeString Campos(const TParametrosFiltro& filtro) {
  UnicodeString texto;
  for (const auto& c : filtro.ParamWhere) texto.append(c->NombreCampo).append(c->Sensitive ? u"+ " : u"- ");
  return texto;
}

TEST(Operadores, TranslateBothWaysAndDifferOnPurpose) {
  TParamWhereSimple condicion;
  std::uint8_t ordinal = 0;
  for (const auto& c : pruebas::Casos("sentencias/operadores.txt", "|")) {
    condicion.Operador = static_cast<ENUM_OPERADOR>(ordinal++);
    EXPECT_EQ(UTF8Encode(TParametrosFiltro::DameOperador(condicion.Operador)), c.at(0));
    EXPECT_EQ(UTF8Encode(condicion.DameOperador()), c.at(1));
    EXPECT_EQ(TParametrosFiltro::DameOperador(UTF8ToString(c.at(2))), condicion.Operador) << c[2];
  }
  condicion.Operador = static_cast<ENUM_OPERADOR>(ordinal);
  EXPECT_EQ(TParametrosFiltro::DameOperador(condicion.Operador) + condicion.DameOperador(), u"");
  for (const char16_t* otro : {u"", u" LIKE ", u"like", u"MACRO", u" <> "}) {
    EXPECT_EQ(TParametrosFiltro::DameOperador(otro), ENUM_OPERADOR::DIFERENTE);
  }
  EXPECT_EQ(TParametrosFiltro::DameOperadorUnion(u"AND"), ENUM_CONECTOR::AND);
  EXPECT_EQ(TParametrosFiltro::DameOperadorUnion(u" AND "), ENUM_CONECTOR::OR);
  EXPECT_EQ(TParametrosFiltro::DameOperadorUnion(static_cast<ENUM_CONECTOR>(2)), u"");
  EXPECT_EQ(TParametrosFiltro::DameCharGrupo(u")"), ENUM_GRUPO::TERMINA);
  EXPECT_EQ(TParametrosFiltro::DameCharGrupo(u" ("), ENUM_GRUPO::NADA);
  EXPECT_EQ(TParamWhereSimple().DameCharGrupo(), u"(");
}

TEST(Condiciones, CopyKeepsSensitiveAndAppendDropsIt) {
  TParametrosFiltro filtro(u"T");
  Agrega(filtro, u"A");
  Agrega(filtro, u"B", false);
  TParametrosFiltro otro(u"T");
  Agrega(otro, u"C");
  otro.AgregaFiltros(filtro.ParamWhere);
  EXPECT_EQ(Campos(otro), u"C+ A- B- ");
  otro.CopiaFiltros(filtro.ParamWhere, 0);
  EXPECT_EQ(Campos(otro), u"A+ B- ");
  otro.CopiaFiltros(otro.ParamWhere, 1);
  EXPECT_EQ(Campos(otro), u"B- ") << "its own list";
  otro.AgregaFiltros(otro.ParamWhere);
  EXPECT_EQ(Campos(otro), u"B- B- ");
  // A list that programs fill may hold nothing at a place.
  otro.ParamWhere.insert(otro.ParamWhere.begin(), nullptr);
  filtro.CopiaFiltros(otro.ParamWhere, 0);
  filtro.AgregaFiltros(otro.ParamWhere);
  EXPECT_EQ(Campos(filtro), u"B- B- B- B- ");
  int numero = 0;
  EXPECT_EQ(otro.DameCondWhere(false, numero), u"B='x' AND B='x'");
  otro.EliminaFiltro(u"B");
  otro.CopiaFiltros(filtro.ParamWhere, 4);
  EXPECT_EQ(Campos(otro), u"");
}

TEST(Condiciones, RemovingAColumnResetsSensitive) {
  TParametrosFiltro filtro(u"T");
  for (const char16_t* campo : {u"A", u"B", u"A", u"C"}) Agrega(filtro, campo);
  filtro.EliminaFiltro(u"a");
  EXPECT_EQ(Campos(filtro), u"A+ B+ A+ C+ ");
  filtro.EliminaFiltro(u"A");
  EXPECT_EQ(Campos(filtro), u"B- C- ");
}

TEST(Condiciones, SeveralValuesMakeAnArray) {
  TParametrosFiltro filtro(u"T");
  const Variant v(1);
  filtro.AgregaFiltro(u"A", TFieldType::ftInteger, ENUM_OPERADOR::INN, Y, SIN, v, v, v, v, Variant(5));
  filtro.AgregaFiltro(u"A", TFieldType::ftInteger, ENUM_OPERADOR::INN, Y, SIN, v, v, v, Variant(4));
  filtro.AgregaFiltro(u"A", TFieldType::ftInteger, ENUM_OPERADOR::INN, Y, SIN, v, v, Variant(3));
  EXPECT_EQ(filtro.ParamWhere[0]->ValorCampo, VarArrayOf({v, v, v, v, Variant(5)}));
  EXPECT_EQ(filtro.ParamWhere[1]->ValorCampo, VarArrayOf({v, v, v, Variant(4)}));
  EXPECT_EQ(filtro.ParamWhere[2]->ValorCampo, VarArrayOf({v, v, Variant(3)}));
  EXPECT_FALSE(filtro.ParamWhere[0]->Sensitive);
}

TEST(Condiciones, TypedPatternsAreEscapedForTheirDriver) {
  using enum TiposDeDriver;
  const auto fin = ENUM_COINCIDENCIA::TERMINA;
  TParametrosFiltro f(u"T");
  f.AgregaFiltroLIKE(u"A", u"/[%_]", fin, Y, SIN, true);
  f.AgregaHavingLIKE(u"A", u"/[%_]", fin, Y, SIN, true);
  for (const auto driver : {DEVARTINTERBASE, DEVARTSQLSERVER, DEVARTSQLSERVERCOMPACT}) {
    f.AgregaFiltroLIKE(u"A", u"/[%_]", fin, Y, SIN, true, driver);
    f.AgregaHavingLIKE(u"A", u"/[%_]", fin, Y, SIN, true, driver);
  }
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(f.ParamWhere[i]->ValorCampo, Variant(i < 2 ? u"%//[/%/_]" : u"%///[/%/_]")) << i;
    EXPECT_EQ(f.ParamHaving[i]->ValorCampo, f.ParamWhere[i]->ValorCampo);
  }
}

TEST(Condiciones, ReadFromTexts) {
  TParametrosFiltro filtro(u"T");
  filtro.AgregaFiltroStr(u"A", u"1", u"\"'O''Brien'\"", u"LIKE", u"AND", u")", true);
  const TParamWhereSimple& c = *filtro.ParamWhere[0];
  EXPECT_EQ(c.TipoCampo, kTexto);
  EXPECT_EQ(c.ValorCampo, Variant(u"O'Brien"));
  EXPECT_EQ(c.Operador, ENUM_OPERADOR::LIKE);
  EXPECT_EQ(c.ConectorSigCampo, ENUM_CONECTOR::AND);
  EXPECT_EQ(c.CharGrupo, ENUM_GRUPO::TERMINA);
  EXPECT_TRUE(c.Sensitive);
  EXPECT_THROW(filtro.AgregaFiltroStr(u"A", u"texto", u"", u"", u"", u"", false), EConvertError);
  EXPECT_THROW(TParametrosFiltro::DameValorLstCampos(TFieldType::ftInteger, u"'doce'"), EConvertError);
}

TEST(Seleccion, AnswersNamesAndAliases) {
  TParametrosFiltro filtro(u"T");
  filtro.AgregaCampoSelect(u"C.NOMBRE", u"\"Nombre completo\"", true);
  filtro.AgregaCampoSelect(u"C.RFC", u"", false);
  filtro.AgregaCampoSelect(u"SALDO", u"", true);
  EXPECT_EQ(filtro.CamposSelect(), u"\"Nombre completo\",C.RFC,SALDO");
  EXPECT_EQ(filtro.DameAliasCampo(u" C.NOMBRE "), u"Nombre completo");
  EXPECT_EQ(filtro.DameAliasCampo(u"C.RFC"), u"RFC");
  EXPECT_EQ(filtro.DameAliasCampo(u"SALDO"), u"SALDO");
  EXPECT_EQ(filtro.DameAliasCampo(u"OTRO"), u"");
  EXPECT_TRUE(filtro.CampoVisible(u" C.NOMBRE"));
  EXPECT_FALSE(filtro.CampoVisible(u"C.RFC"));
  EXPECT_FALSE(filtro.CampoVisible(u"OTRO"));
  EXPECT_NE(filtro.DameSentenciaSQL(false, 0).find(filtro.DameCamposSelect()), UnicodeString::npos);
  for (const auto& [escrito, alias] : {std::pair{u"Suma", u"Suma"}, {u"\"Suma", u"\"Suma"}, {u"\"", u""}}) {
    filtro.ParamSelect[2]->AliasCampo = escrito;
    EXPECT_EQ(filtro.DameAliasCampo(u"SALDO"), alias);
  }
  filtro.ParamSelect.insert(filtro.ParamSelect.begin(), nullptr);
  EXPECT_EQ(filtro.CamposSelect(), u"\"Nombre completo\",C.RFC,\"");
  TParametrosFiltro copia(u"X");
  copia.CopiaCamposSelect(&filtro);
  copia.CopiaCamposSelect(&copia);
  EXPECT_EQ(copia.CamposSelect(), filtro.CamposSelect());
  copia.CopiaCamposSelect(nullptr);
  EXPECT_EQ(copia.CamposSelect(), u"");
}

TEST(Seleccion, JoinsAndOrderKeepTheirTexts) {
  TParametrosFiltro filtro(u"T");
  for (const char16_t* join : {u"A", u"B", u"A"}) filtro.AgregaJoin(join);
  EXPECT_EQ(filtro.DameCadenaJoin(), u"  A  B  A ");
  filtro.EliminaJoin(u"A");
  EXPECT_EQ(filtro.DameCadenaJoin(), u"  B ");
  filtro.CopiaJoin(std::make_unique<TParametrosFiltro>(u"V").get());
  filtro.CopiaJoin(&filtro);
  filtro.CopiaJoin(nullptr);
  EXPECT_EQ(filtro.DameCadenaJoin(), u"  B ") << "nothing to copy";
  TParametrosFiltro copia(u"T");
  copia.AgregaJoin(u"C");
  copia.CopiaJoin(&filtro);
  EXPECT_EQ(copia.DameCadenaJoin(), u"  B ");
  filtro.SetOrderBy(u"NOMBRE");
  EXPECT_FALSE(filtro.OrdDesc);
  filtro.SetOrderBy(u"NOM");
  EXPECT_TRUE(filtro.OrdDesc) << "part of the present order";
  filtro.SetOrderBy(u"NOM");
  EXPECT_FALSE(filtro.OrdDesc);
  filtro.OrdDesc = true;
  filtro.SetOrderBy(u"");
  EXPECT_FALSE(filtro.OrdDesc);
}

TEST(Union, ReplacedPartnerStaysValid) {
  const std::unique_ptr<TParametrosFiltro> filtro(CreaParametrosFiltro(u"T"));
  filtro->FechaTrabajo = TDateTime(45427);
  TParametrosFiltro* const primero = filtro->AgregaUnion(u"A");
  EXPECT_EQ(primero->FechaTrabajo, TDateTime(45427));
  filtro->AgregaUnion(u"B");
  EXPECT_EQ(primero->NombreTabla, u"A");
  EXPECT_EQ(filtro->DameSentenciaSQL(false, 0), u"SELECT  *  from T  UNION SELECT  *  from B ");
  filtro->QuitaUnion();
  EXPECT_EQ(filtro->DameSentenciaSQL(false, 0), u"SELECT  *  from T ");
}

}  // namespace
}  // namespace vel

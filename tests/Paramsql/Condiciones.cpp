#include <gtest/gtest.h>

#include "Paramsql/Paramsql.h"
#include "framework/Excepciones.h"

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
  const struct {
    const char16_t* filtro;
    const char16_t* condicion;
    const char16_t* leido;
  } textos[] = {{u"=", u"=", u"="},
                {u"<", u"<", u"<"},
                {u"<=", u"<=", u"<="},
                {u">", u">", u">"},
                {u">=", u">=", u">="},
                {u" <> ", u" != ", u"<>"},
                {u" LIKE ", u" LIKE ", u"LIKE"},
                {u" IN ", u" IN ", u"IN"},
                {u" NOT IN ", u" NOT IN ", u"NOT IN"},
                {u" IS NOT NULL ", u" IS NOT NULL", u"IS NOT NULL"},
                {u" IS NULL ", u" IS NULL", u"IS NULL"},
                {u" BETWEEN ", u" BETWEEN ", u"BETWEEN"},
                {u" EXISTS ", u" EXISTS ", u"EXISTS"},
                {u" NINGUNO ", u" MACRO ", u"NINGUNO"},
                {u"", u"", u""}};
  TParamWhereSimple condicion;
  for (std::uint8_t i = 0; i < std::size(textos); ++i) {
    const auto op = static_cast<ENUM_OPERADOR>(i);
    condicion.Operador = op;
    EXPECT_EQ(TParametrosFiltro::DameOperador(op), textos[i].filtro);
    EXPECT_EQ(condicion.DameOperador(), textos[i].condicion);
    if (*textos[i].filtro == u'\0') continue;  // No operator.
    EXPECT_EQ(TParametrosFiltro::DameOperador(textos[i].leido), op);
  }
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
  otro.CopiaFiltros(filtro.ParamWhere, 2);
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
  EXPECT_EQ(filtro.ParamWhere[0]->ValorCampo, VarArrayOf({v, v, v, v, Variant(5)}));
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

  const struct {
    TFieldType tipo;
    const char16_t* texto;
    Variant valor;
  } valores[] = {
      {kTexto, u"plano", Variant(u"plano")},
      {kTexto, u"", Variant()},
      {kTexto, u"\"''\"", Variant(u"")},
      {kTexto, u"\"'a,b','c''d' , 'e\"'\"", VarArrayOf({Variant(u"a,b"), Variant(u"c'd"), Variant(u"e\"")})},
      {kTexto, u"'O'Brien'", Variant(u"O'Brien")},
      {kTexto, u"{}", VarArrayOf({})},
      {TFieldType::ftDataSet, u"\"{'A','B''C'}\"", VarArrayOf({Variant(u"A"), Variant(u"B'C")})},
      {TFieldType::ftInteger, u"\"'1','-2'\"", VarArrayOf({Variant(1), Variant(-2)})},
      {TFieldType::ftInteger, u"NULL", Variant::Null()},
      {TFieldType::ftFloat, u"'0.5'", Variant(0.5)},
      {TFieldType::ftBoolean, u"'True'", Variant(true)},
      {TFieldType::ftDateTime, u"'15/05/2024'", Variant(TDateTime(45427))},
      {TFieldType::ftDateTime, u"2024-05-15", Variant(u"2024-05-15")},
      {TFieldType::ftDataSet, u"\"'SELECT 'x''\"", Variant(u"SELECT 'x'")}};
  for (const auto& v : valores) {
    EXPECT_EQ(TParametrosFiltro::DameValorLstCampos(v.tipo, v.texto), v.valor) << UTF8Encode(v.texto);
  }
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
  TParametrosFiltro copia(u"X");
  copia.CopiaCamposSelect(&filtro);
  copia.CopiaCamposSelect(&copia);
  EXPECT_EQ(copia.CamposSelect(), filtro.CamposSelect());
}

TEST(Seleccion, JoinsAndOrderKeepTheirTexts) {
  TParametrosFiltro filtro(u"T");
  for (const char16_t* join : {u"A", u"B", u"A"}) filtro.AgregaJoin(join);
  EXPECT_EQ(filtro.DameCadenaJoin(), u"  A  B  A ");
  filtro.EliminaJoin(u"A");
  EXPECT_EQ(filtro.DameCadenaJoin(), u"  B ");
  filtro.CopiaJoin(std::make_unique<TParametrosFiltro>(u"V").get());
  EXPECT_EQ(filtro.Join.size(), 1U);
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

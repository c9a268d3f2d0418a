#include <algorithm>
#include <gtest/gtest.h>
#include <limits>

#include "Paramsql/Paramsql.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "tests/Casos.h"
#include "tests/Paramsql/Valores.h"

namespace vel {
namespace {

constexpr auto kTexto = TFieldType::ftString;
constexpr auto kEntero = TFieldType::ftInteger;
constexpr auto kCrudo = TFieldType::ftDataSet;
constexpr auto Y = ENUM_CONECTOR::AND;
constexpr auto O = ENUM_CONECTOR::OR;
constexpr auto SIN = ENUM_GRUPO::NADA;
using Op = ENUM_OPERADOR;

TEST(Clausulas, ReadAlikeInWhereAndHaving) {
  for (const auto& c : pruebas::Casos("sentencias/clausulas.txt", "|")) {
    const auto texto = [&c](std::size_t i) { return UTF8ToString(c.at(i)); };
    const bool like = c[0] == "like";
    TParametrosFiltro f(u"T");
    f.AgregaFiltroStr(u"C", texto(1), texto(2), like ? u"LIKE" : texto(0), u"AND", u"", !like);
    const TParamWhereSimple& condicion = *f.ParamWhere[0];
    f.AgregaHaving(u"C", condicion.TipoCampo, condicion.ValorCampo, condicion.Operador, Y, SIN, !like);
    int n = 0;
    EXPECT_EQ(UTF8Encode(f.DameCondWhere(false, n)), c[3]);
    EXPECT_EQ(UTF8Encode(f.DameCondWhere(true, n)), c.at(4));
    EXPECT_EQ(n, std::ranges::count(c[4], ':'));
    n = 0;
    EXPECT_EQ(f.DameHaving(true, n),
              u" HAVING " + (c.size() > 6 ? texto(5) : StringReplace(texto(4), u":var", u":hav")));
  }
}

TEST(Clausulas, AreCallableOneByOne) {
  using Pieza = UnicodeString (TParametrosFiltro::*)(int, std::u16string_view, int, int*) const;
  using F = TParametrosFiltro;
  const struct {
    Pieza where, having;
    Op op;
    const char16_t* texto;  // "#" stands for ":var" or ":hav"
  } casos[] = {{&F::DameWhereDefault, &F::DameHavingDefault, Op::MENOR, u"(A<#5"},
               {&F::DameWhereLIKE, &F::DameHavingLIKE, Op::LIKE, u"(A LIKE  #5"},
               {&F::DameWhereINNOTIN, &F::DameHavingINNOTIN, Op::NOTIN, u"(A NOT IN  ( #5, #6) "},
               {&F::DameWhereISNULLNOTNULL, &F::DameHavingISNULLNOTNULL, Op::NOTNULL, u"(A IS NOT NULL "},
               {&F::DameWhereBETWEEN, &F::DameHavingBETWEEN, Op::BETWEEN, u" ( (A BETWEEN  #5 AND  #6 ) "},
               {&F::DameWhereExists, &F::DameHavingExists, Op::EXISTS, u"(EXISTS  ( x  ) "}};
  for (const auto& c : casos) {
    const bool conDos = c.op == Op::NOTIN || c.op == Op::BETWEEN;
    const Variant valor = conDos ? VarArrayOf({Variant(u"a"), Variant(u"b")}) : Variant(u"x");
    TParametrosFiltro f(u"T");
    f.AgregaFiltro(u"A", kTexto, valor, c.op, Y, ENUM_GRUPO::INICIA, true);
    f.AgregaHaving(u"A", kTexto, valor, c.op, Y, ENUM_GRUPO::INICIA, true);
    int n = 4;
    EXPECT_EQ((f.*c.where)(0, u"(", 1, &n), StringReplace(c.texto, u"#", u":var"));
    EXPECT_EQ(n, 4 + std::ranges::count(std::u16string_view(c.texto), u'#'));
    n = 4;
    EXPECT_EQ((f.*c.having)(0, u"(", 1, &n), StringReplace(c.texto, u"#", u":hav"));
    EXPECT_EQ((f.*c.where)(0, u"(", 0, nullptr).find(u':'), UnicodeString::npos);
    f.ParamWhere[0] = nullptr;
    EXPECT_EQ((f.*c.where)(0, u"(", 1, &n), u"");
    EXPECT_THROW((f.*c.where)(1, u"", 0, &n), EInvalidOperation);
    EXPECT_THROW((f.*c.having)(-1, u"", 0, &n), EInvalidOperation);
  }
}

template <typename... T>
concept DaSentencia = requires(TParametrosFiltro f, T... t) {
  f.DameSentenciaSQL(t...);
};
static_assert(DaSentencia<bool> && DaSentencia<bool, int> && DaSentencia<int, int>);
static_assert(!DaSentencia<int> && !DaSentencia<const char16_t*>, "no truth value was meant");

TEST(Sentencia, LeavesOutWhatIsUsual) {
  TParametrosFiltro breve(u"T"), f(u"T");
  breve.AgregaCampoSelect(u"A");
  f.AgregaCampoSelect(u"A", u"", true);
  breve.AgregaFiltro(u"A", kTexto, u"x", Op::LIKE);
  f.AgregaFiltro(u"A", kTexto, Variant(u"x"), Op::LIKE, Y, SIN, true);
  breve.AgregaFiltroLIKE(u"A", u"x%", ENUM_COINCIDENCIA::CONTIENE);
  f.AgregaFiltroLIKE(u"A", u"x%", ENUM_COINCIDENCIA::CONTIENE, Y, SIN, true);
  breve.AgregaHaving(u"A", kTexto, u"x", Op::LIKE);
  f.AgregaHaving(u"A", kTexto, Variant(u"x"), Op::LIKE, Y, SIN, true);
  breve.AgregaHavingLIKE(u"A", u"x", ENUM_COINCIDENCIA::EMPIEZA);
  f.AgregaHavingLIKE(u"A", u"x", ENUM_COINCIDENCIA::EMPIEZA, Y, SIN, true);
  breve.CopiaFiltros(breve.ParamWhere);
  EXPECT_EQ(breve.DameSentenciaSQL(true), f.DameSentenciaSQL(true, 0));
  TParams parametros, otros;
  breve.AsignaParametros(parametros);
  f.AsignaParametros(otros, 0);
  EXPECT_EQ(parametros.Count(), 4U);
  EXPECT_TRUE(std::ranges::equal(parametros, otros));
}

TEST(Sentencia, JoinsItsPartsBlankByBlank) {
  TParametrosFiltro f(u"T");
  EXPECT_EQ(f.DameSentenciaSQL(true, 0), u"SELECT  *  from T ");
  f.OrdDesc = true;
  EXPECT_EQ(f.DameSentenciaSQL(true, 0), u"SELECT  *  from T  DESC");
  f.OrdDesc = false;
  f.Distinct = true;
  f.AgregaCampoSelect(u"A", u"X", true);
  f.AgregaCampoSelect(u"B", u"", false);
  f.AgregaJoin(u"JOIN D ON D.I=T.I");
  f.AgregaFiltro(u"A", kEntero, Variant(1), Op::IGUAL, O, ENUM_GRUPO::INICIA, true);
  f.AgregaFiltro(u"B", kEntero, Variant(2), Op::MENOR, Y, ENUM_GRUPO::TERMINA, true);
  f.AgregaFiltro(u"C", kTexto, Variant(), Op::ISNULL, Y, SIN, true);
  f.GroupBy = u"A,B";
  f.AgregaHaving(u"SUM(S)", TFieldType::ftFloat, Variant(0.5), Op::MAYOR, Y, SIN, true);
  f.AgregaUnion(u"U")->AgregaFiltro(u"D", kEntero, Variant(3), Op::IGUAL, Y, SIN, true);
  f.SetOrderBy(u"A");
  f.SetOrderBy(u"A");
  EXPECT_EQ(f.DameSentenciaSQL(true, 5),
            u"SELECT DISTINCT A AS X,B from T   JOIN D ON D.I=T.I  WHERE ((A=:var6 OR B<:var7) AND C IS NULL "
            u")  GROUP BY A,B "
            u"HAVING SUM(S)>:hav8 UNION SELECT  *  from U  WHERE (D=:var9)  ORDER BY A DESC");
  EXPECT_TRUE(f.ConParametros && f.ParametrosUnion->ConParametros);
  TParams p;
  f.AsignaParametros(p, 5);
  ASSERT_EQ(p.Count(), 4U);
  EXPECT_EQ(p[0].Name, u"var6");
  EXPECT_EQ(p[2], (TParam{u"hav8", TFieldType::ftFloat, Variant(0.5)}));
  EXPECT_EQ(p[3], (TParam{u"var9", kEntero, Variant(3)}));
  EXPECT_EQ(f.DameSentenciaSQL(false, 0),
            u"SELECT DISTINCT A AS X,B from T   JOIN D ON D.I=T.I  WHERE ((A=1 OR B<2) AND C IS NULL )  "
            u"GROUP BY A,B HAVING "
            u"SUM(S)>0.5 UNION SELECT  *  from U  WHERE (D=3)  ORDER BY A DESC");
  f.AsignaParametros(p, 0);
  EXPECT_EQ(p.Count(), 0U) << "built with literals";
}

TEST(Sentencia, MarksItsParametersInEveryStyle) {
  TParametrosFiltro f(u"T");
  f.AgregaCampoSelect(u"':var1?'", u"", true);
  f.AgregaFiltro(u"A", kTexto, Variant(u":var1"), Op::IGUAL, Y, SIN, true);
  f.AgregaFiltro(u"B", kCrudo, Variant(u"'$1 @var1'"), Op::IGUAL, Y, SIN, true);
  f.GroupBy = u"A";
  f.AgregaHaving(u"MAX(C)", kTexto, Variant(u"'x'"), Op::MAYOR, Y, SIN, true);
  f.AgregaUnion(u"U")->AgregaFiltro(u"D", kEntero, Op::INN, Y, SIN, Variant(3), Variant(4));
  const std::u16string_view textos[] = {
      u"SELECT ':var1?' from T  WHERE (A=:var8 AND B='$1 @var1')  GROUP BY A HAVING MAX(C)>:hav9 UNION "
      u"SELECT  *  from U  WHERE (D IN  ( :var10, :var11) ) ",
      u"SELECT ':var1?' from T  WHERE (A=? AND B='$1 @var1')  GROUP BY A HAVING MAX(C)>? UNION "
      u"SELECT  *  from U  WHERE (D IN  ( ?, ?) ) ",
      u"SELECT ':var1?' from T  WHERE (A=$8 AND B='$1 @var1')  GROUP BY A HAVING MAX(C)>$9 UNION "
      u"SELECT  *  from U  WHERE (D IN  ( $10, $11) ) ",
      u"SELECT ':var1?' from T  WHERE (A=@var8 AND B='$1 @var1')  GROUP BY A HAVING MAX(C)>@hav9 UNION "
      u"SELECT  *  from U  WHERE (D IN  ( @var10, @var11) ) "};
  TParams p;
  for (std::uint8_t estilo = 0; estilo < 4; ++estilo) {
    f.ConParametros = false;
    EXPECT_EQ(f.DameSentenciaSQL(static_cast<ENUM_MARCADOR>(estilo), 7, p), textos[estilo]);
    TParams aparte;
    f.AsignaParametros(aparte, 7);
    EXPECT_TRUE(std::equal(p.begin(), p.end(), aparte.begin(), aparte.end()));
  }
  EXPECT_EQ(p[1], (TParam{u"hav9", kTexto, Variant(u"'x'")}));
  EXPECT_THROW(f.DameSentenciaSQL(static_cast<ENUM_MARCADOR>(4), 0, p), EInvalidOperation);
  // Four parameters: their last number is the largest int, or past it.
  constexpr int kMayor = std::numeric_limits<int>::max();
  f.DameSentenciaSQL(false, kMayor);
  EXPECT_THROW(f.DameSentenciaSQL(true, kMayor - 3), EInvalidOperation);
  EXPECT_FALSE(f.ConParametros);
  EXPECT_NE(f.DameSentenciaSQL(true, kMayor - 4).find(u":var2147483647)"), UnicodeString::npos);
}

TEST(Sentencia, WritesAndBindsDatesByTheirTypes) {
  for (const auto& c : pruebas::Casos("sentencias/fechas.txt", "|")) {
    TParametrosFiltro f(u"T");
    const Variant valor = pruebas::ValorDe(c.at(1));
    f.AgregaFiltro(u"C", pruebas::TipoDe(c.at(0)), valor, valor.IsArray() ? Op::BETWEEN : Op::IGUAL, Y, SIN,
                   true);
    TParams p;
    f.DameSentenciaSQL(ENUM_MARCADOR::DOSPUNTOS, 0, p);
    int n = 0;
    if (valor.IsArray()) {
      EXPECT_EQ(UTF8Encode(f.DameCondWhere(false, n)), " ( C BETWEEN " + c.at(2) + " ) ");
    } else {
      EXPECT_EQ(p[0].Value, pruebas::ValorDe(c.at(2))) << c[1];
    }
  }
}

TEST(Sentencia, BindsANullPatternAsNull) {
  for (const auto tipo : {kTexto, TFieldType::ftDateTime})
    EXPECT_EQ(TParametrosFiltro::DameValorCampoStr(tipo, Variant(u"x"), true), u"") << "bound, not written";
  TParametrosFiltro f(u"T");
  f.AgregaFiltro(u"C", kTexto, Variant::Null(), Op::LIKE, Y, SIN, false);
  TParams p;
  f.DameSentenciaSQL(ENUM_MARCADOR::DOSPUNTOS, 0, p);
  EXPECT_EQ(p[0].Value, Variant::Null());
}

TEST(Sentencia, TakesWhereFromItsSource) {
  for (const auto& c : pruebas::Casos("sentencias/fuentes.txt", "|")) {
    TParametrosFiltro f(u"T");
    f.FiltroPActivo = std::stoi(c.at(0));
    f.FilterTextPers = UTF8ToString(c.at(2));
    if (c.at(1) == "lista") f.AgregaFiltro(u"A", kEntero, Variant(1), Op::IGUAL, Y, SIN, true);
    EXPECT_EQ(UTF8Encode(f.DameSentenciaSQL(false, 0)), "SELECT  *  from T " + c.at(3)) << c[0];
  }
}

TEST(Grupos, BalanceInWhereAndStayInHaving) {
  const auto arma = [](std::u16string_view marcas) {
    auto f = std::make_unique<TParametrosFiltro>(u"T");
    for (const char16_t m : marcas) {
      const auto grupo = m == u'(' ? ENUM_GRUPO::INICIA : m == u')' ? ENUM_GRUPO::TERMINA : ENUM_GRUPO::NADA;
      f->AgregaFiltro(u"A", kEntero, Variant(1), m == u'm' ? Op::MACRO : Op::IGUAL, Y, grupo, true);
      f->AgregaHaving(u"A", kEntero, Variant(1), m == u'm' ? Op::MACRO : Op::IGUAL, Y, grupo, true);
    }
    return f;
  };
  int n = 0;
  EXPECT_EQ(arma(u"(()")->DameCondWhere(false, n), u"(A=1 AND (A=1 AND A=1))");
  EXPECT_EQ(arma(u"))")->DameCondWhere(false, n), u"((A=1) AND A=1)");
  EXPECT_EQ(arma(u")")->DameHaving(false, n), u" HAVING A=1)");
  EXPECT_EQ(arma(u"mm")->DameWhere(false, n), u" WHERE ");
  EXPECT_EQ(arma(u"m.")->DameWhere(false, n), u" WHERE (A=1) ");
  EXPECT_EQ(arma(u".m")->DameWhere(false, n), u" WHERE (A=1 AND ) ") << "a last MACRO leaves the connector";
  EXPECT_EQ(arma(u".m")->DameHaving(false, n), u" HAVING A=1 AND A NINGUNO 1");
}

TEST(Sentencia, SaysWhatItCannotWrite) {
  const struct {
    Op op;
    TFieldType tipo;
    Variant valor;
  } malos[] = {{Op::BETWEEN, kEntero, Variant(1)},
               {Op::BETWEEN, kEntero, VarArrayOf({Variant(1)})},
               {Op::INN, kEntero, VarArrayOf({})}};
  for (const auto& m : malos) {
    TParametrosFiltro f(u"T");
    f.AgregaFiltro(u"C", m.tipo, m.valor, m.op, Y, SIN, true);
    EXPECT_THROW(f.DameSentenciaSQL(true, 0), EInvalidOperation);
  }
  TParametrosFiltro f(u"T");
  f.AgregaFiltro(u"C", kEntero, Variant(u"doce"), Op::IGUAL, Y, SIN, true);
  EXPECT_THROW(f.DameSentenciaSQL(false, 0), EConvertError);
  f.DameSentenciaSQL(true, 0);
  TParams p;
  EXPECT_THROW(f.AsignaParametros(p, 0), EConvertError);
  f.ParamWhere[0] = nullptr;
  f.ParamSelect.push_back(nullptr);
  EXPECT_EQ(f.DameSentenciaSQL(true, 0), u"SELECT  from T  WHERE ");
  f.AgregaFiltro(u"C", static_cast<TFieldType>(200), Variant(1), static_cast<Op>(99),
                 static_cast<ENUM_CONECTOR>(9), static_cast<ENUM_GRUPO>(9), true);
  EXPECT_EQ(f.DameSentenciaSQL(true, 0), u"SELECT  from T  WHERE (C:var1) ");
}

}  // namespace
}  // namespace vel

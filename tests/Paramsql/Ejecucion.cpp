// The statements run: values bound through AsignaParametros find their rows in a database.

#include <gtest/gtest.h>
#include <memory>
#include <sqlite3.h>
#include <string>
#include <vector>

#include "Paramsql/Paramsql.h"

namespace vel {
namespace {

constexpr auto Y = ENUM_CONECTOR::AND;
constexpr auto SIN = ENUM_GRUPO::NADA;
using Op = ENUM_OPERADOR;

class Base : public testing::Test {
 protected:
  void SetUp() override {
    sqlite3* base = nullptr;
    ASSERT_EQ(sqlite3_open(":memory:", &base), SQLITE_OK);
    base_.reset(base);
    ASSERT_EQ(sqlite3_exec(base,
                           "CREATE TABLE T (I INTEGER, N TEXT, S REAL, D TEXT);"
                           "INSERT INTO T VALUES (1,'O''Brien; \"S.A.\"',10.5,NULL),(2,'50% _/[x]',20,'b'),"
                           "(3,'50x yy[x]',30,'a'),(4,'Obrien',40,'a'),(5,'O''BRIEN; "
                           "\"S.A.\"',50.25,'b'),(6,'a//b',0,NULL);",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
  }

  // The first column of the rows, joined by blanks.
  std::string Ejecuta(TParametrosFiltro& filtro) {
    const std::string sql = UTF8Encode(filtro.DameSentenciaSQL(true, 0));
    TParams parametros;
    filtro.AsignaParametros(parametros, 0);
    sqlite3_stmt* crudo = nullptr;
    if (sqlite3_prepare_v2(base_.get(), sql.c_str(), -1, &crudo, nullptr) != SQLITE_OK) {
      return sql + ": " + sqlite3_errmsg(base_.get());
    }
    const std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> sentencia(crudo, sqlite3_finalize);
    EXPECT_EQ(sqlite3_bind_parameter_count(crudo), static_cast<int>(parametros.Count()));
    for (const TParam& p : parametros) {
      const int lugar = sqlite3_bind_parameter_index(crudo, (":" + UTF8Encode(p.Name)).c_str());
      EXPECT_NE(lugar, 0);
      if (p.Value.TextPtr() != nullptr) {
        const std::string texto = UTF8Encode(*p.Value.TextPtr());
        sqlite3_bind_text(crudo, lugar, texto.c_str(), -1, SQLITE_TRANSIENT);
      } else {
        sqlite3_bind_double(crudo, lugar, p.Value.AsDouble());
      }
    }
    std::string filas;
    while (sqlite3_step(crudo) == SQLITE_ROW) {
      filas += std::string(filas.empty() ? "" : " ") +
               reinterpret_cast<const char*>(sqlite3_column_text(crudo, 0));
    }
    return filas;
  }

 private:
  std::unique_ptr<sqlite3, int (*)(sqlite3*)> base_{nullptr, sqlite3_close};
};

TEST_F(Base, HostileTextsFindTheirRowAndNothingElse) {
  const struct {
    const char16_t* texto;
    ENUM_COINCIDENCIA donde;
    bool sensitive;
    const char* filas;
  } casos[] = {{u"O'Brien; \"S.A.\"", ENUM_COINCIDENCIA::EXACTA, false, "1 5"},
               {u"50% _/[x]", ENUM_COINCIDENCIA::EXACTA, true, "2"},
               {u"50%", ENUM_COINCIDENCIA::EMPIEZA, true, "2"},
               {u"_/[", ENUM_COINCIDENCIA::CONTIENE, false, "2"},
               {u"[X]", ENUM_COINCIDENCIA::TERMINA, false, "2 3"},
               {u"/", ENUM_COINCIDENCIA::CONTIENE, true, "2 6"},
               {u"a/", ENUM_COINCIDENCIA::EMPIEZA, true, "6"},
               {u"//", ENUM_COINCIDENCIA::CONTIENE, true, "6"},
               {u"%", ENUM_COINCIDENCIA::CONTIENE, true, "2"},
               {u"' OR 1=1 --", ENUM_COINCIDENCIA::CONTIENE, false, ""}};
  for (const auto& c : casos) {
    TParametrosFiltro f(u"T");
    f.AgregaCampoSelect(u"I", u"", true);
    f.AgregaFiltroLIKE(u"N", c.texto, c.donde, Y, SIN, c.sensitive);
    EXPECT_EQ(Ejecuta(f), c.filas) << UTF8Encode(c.texto);
    if (c.donde != ENUM_COINCIDENCIA::EXACTA || !c.sensitive) continue;
    TParametrosFiltro igual(u"T");
    igual.AgregaCampoSelect(u"I", u"", true);
    igual.AgregaFiltro(u"N", TFieldType::ftString, Variant(c.texto), Op::IGUAL, Y, SIN, true);
    EXPECT_EQ(Ejecuta(igual), c.filas) << UTF8Encode(c.texto);
  }
  TParametrosFiltro igual(u"T");
  igual.AgregaCampoSelect(u"I", u"", true);
  igual.AgregaFiltro(u"N", TFieldType::ftString, Variant(u"O'Brien; \"S.A.\""), Op::IGUAL, Y, SIN, true);
  EXPECT_EQ(Ejecuta(igual), "1");
}

TEST_F(Base, EveryOperatorFindsItsRows) {
  const auto entero = TFieldType::ftInteger;
  const auto filas = [this](auto agrega) {
    TParametrosFiltro f(u"T");
    f.AgregaCampoSelect(u"I", u"", true);
    agrega(f);
    f.SetOrderBy(u"I");
    return Ejecuta(f);
  };
  EXPECT_EQ(filas([&](auto& f) {
              f.AgregaFiltro(u"I", entero, Op::INN, Y, SIN, Variant(1), Variant(4), Variant(9));
            }),
            "1 4");
  EXPECT_EQ(filas([&](auto& f) { f.AgregaFiltro(u"I", entero, Op::NOTIN, Y, SIN, Variant(1), Variant(4)); }),
            "2 3 5 6");
  EXPECT_EQ(filas([&](auto& f) {
              f.AgregaFiltro(u"S", TFieldType::ftFloat, Op::BETWEEN, Y, SIN, Variant(10.5), Variant(u"30"));
            }),
            "1 2 3");
  EXPECT_EQ(filas([&](auto& f) { f.AgregaFiltro(u"D", entero, Variant(), Op::ISNULL, Y, SIN, true); }),
            "1 6");
  EXPECT_EQ(filas([&](auto& f) {
              f.AgregaFiltro(u"", entero, Variant(u"SELECT 1 WHERE T.I > 5"), Op::EXISTS, Y, SIN, true);
            }),
            "6");
  EXPECT_EQ(filas([&](auto& f) {
              f.AgregaFiltro(u"D", TFieldType::ftString, Variant(u"a"), Op::IGUAL, ENUM_CONECTOR::OR,
                             ENUM_GRUPO::INICIA, true);
              f.AgregaFiltro(u"D", TFieldType::ftString, Variant(u"b"), Op::IGUAL, Y, ENUM_GRUPO::TERMINA,
                             true);
              f.AgregaFiltro(u"S", TFieldType::ftFloat, Variant(30), Op::MENOR_IGUAL, Y, SIN, true);
            }),
            "2 3");
}

TEST_F(Base, GroupsHavingAndUnionShareTheirNumbers) {
  TParametrosFiltro f(u"T");
  f.AgregaCampoSelect(u"D", u"K", true);
  f.AgregaFiltro(u"I", TFieldType::ftInteger, Variant(1), Op::MAYOR, Y, SIN, true);
  f.AgregaFiltro(u"D", TFieldType::ftString, Variant(), Op::NOTNULL, Y, SIN, true);
  f.GroupBy = u"D";
  f.AgregaHaving(u"SUM(S)", TFieldType::ftFloat, Variant(70.0), Op::MAYOR, Y, SIN, true);
  f.AgregaHaving(u"MIN(D)", TFieldType::ftString, Variant(u"B%"), Op::LIKE, Y, SIN, false);
  TParametrosFiltro* const u = f.AgregaUnion(u"T");
  u->AgregaCampoSelect(u"N", u"K", true);
  u->AgregaFiltro(u"I", TFieldType::ftInteger, Variant(6), Op::IGUAL, Y, SIN, true);
  f.SetOrderBy(u"K");
  EXPECT_EQ(Ejecuta(f), "a//b b");
}

}  // namespace
}  // namespace vel

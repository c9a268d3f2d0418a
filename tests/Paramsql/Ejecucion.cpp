// The statements run, on SQLite and on embedded Firebird: every way of giving their values finds the same
// rows.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <ctime>
#include <deque>
#include <fstream>
#include <gtest/gtest.h>
#include <ibase.h>
#include <map>
#include <soci/firebird/soci-firebird.h>
#include <soci/soci.h>
#include <soci/sqlite3/soci-sqlite3.h>
#include <string>
#include <utility>
#include <variant>

#include "Paramsql/Paramsql.h"
#include "tests/CarpetaTemporal.h"
#include "tests/Casos.h"

// Asked by the address checker of this program. Firebird's library leaves text converters open and threads
// that the search for leaks cannot follow.
extern "C" [[gnu::visibility("default")]] const char* __asan_default_options() { return "detect_leaks=0"; }

namespace vel {
namespace {

const std::map<std::string, ENUM_COINCIDENCIA> kCoincidencias = {{"exacta", ENUM_COINCIDENCIA::EXACTA},
                                                                 {"empieza", ENUM_COINCIDENCIA::EMPIEZA},
                                                                 {"contiene", ENUM_COINCIDENCIA::CONTIENE},
                                                                 {"termina", ENUM_COINCIDENCIA::TERMINA}};

// Takes what stands before the mark off the front.
UnicodeString Toma(UnicodeString& texto, std::u16string_view marca) {
  const std::size_t fin = std::min(texto.find(marca), texto.size());
  UnicodeString parte = texto.substr(0, fin);
  texto.erase(0, fin + marca.size());
  return parte;
}

// Adds one clause of a case; "union" leads to the partner.
void Agrega(TParametrosFiltro*& f, UnicodeString resto) {
  UnicodeString palabra = Toma(resto, u" ");
  UnicodeString grupo;
  if (palabra == u"(" || palabra == u")") grupo = std::exchange(palabra, Toma(resto, u" "));
  const bool conO = palabra == u"o";
  const bool having = palabra == u"having";
  if (conO || having) palabra = Toma(resto, u" ");
  if (palabra == u"select") return f->AgregaCampoSelect(resto, u"", true);
  if (palabra == u"group") return void(f->GroupBy = resto);
  if (palabra == u"join") return f->AgregaJoin(resto);
  if (palabra == u"union") return void(f = f->AgregaUnion(resto));
  const UnicodeString tipo = Toma(resto, u" ");
  if (const auto donde = kCoincidencias.find(UTF8Encode(tipo)); donde != kCoincidencias.end()) {
    f->AgregaFiltroLIKE(palabra, resto, donde->second, ENUM_CONECTOR::AND, ENUM_GRUPO::NADA, false);
  } else {
    const UnicodeString op = StringReplace(Toma(resto, u" "), u"_", u" ");
    f->AgregaFiltroStr(palabra, tipo, resto, op == u"like" ? u"LIKE" : op, conO ? u"OR" : u"AND", grupo,
                       op != u"like");
  }
  if (!having) return;
  f->ParamHaving.push_back(std::move(f->ParamWhere.back()));
  f->ParamWhere.pop_back();
}

// Values by their kind, for as long as the statement needs them.
using Enlazado = std::variant<long long, double, std::string, std::tm>;

Enlazado DeParametro(const TParam& p, bool conFechas) {
  switch (p.Value.GetKind()) {
    case Variant::Kind::Integer:
      return static_cast<long long>(p.Value.AsInteger());
    case Variant::Kind::Double:
      return p.Value.AsDouble();
    case Variant::Kind::Date: {
      const TDateTime momento = p.Value.AsDateTime();
      if (!conFechas) return UTF8Encode(DateTimeToISO(momento, p.DataType));
      // Seconds since 1970; the structure has no fraction of them.
      const auto segundos = static_cast<std::time_t>(std::llround((momento.Val() - 25569) * 86400));
      std::tm fecha{};
      gmtime_r(&segundos, &fecha);
      return fecha;
    }
    default:
      return UTF8Encode(p.Value.AsString());
  }
}

struct Base {
  soci::session sesion;
  // Whether dates have a type of their own; else they are ISO texts.
  bool conFechas;
  // What the database said of the last statement that it refused.
  std::string queja;

  void Crea(const std::string& linea) {
    soci::transaction transaccion(sesion);
    sesion << linea;
    transaccion.commit();
  }

  // The first column of the rows, joined by blanks.
  std::string Ejecuta(const UnicodeString& sql, const TParams& parametros) try {
    soci::statement sentencia(sesion);
    std::deque<Enlazado> valores;
    for (const TParam& p : parametros) {
      valores.push_back(DeParametro(p, conFechas));
      std::visit([&sentencia](auto& valor) { sentencia.exchange(soci::use(valor)); }, valores.back());
    }
    std::string columna;
    sentencia.exchange(soci::into(columna));
    sentencia.alloc();
    sentencia.prepare(UTF8Encode(sql));
    sentencia.define_and_bind();
    std::string filas;
    for (bool hay = sentencia.execute(true); hay; hay = sentencia.fetch()) {
      filas += (filas.empty() ? "" : " ") + columna;
    }
    return filas.empty() ? "nada" : filas;
  } catch (const soci::soci_error& e) {
    queja = e.what();
    return "error";
  }
};

// The library of Firebird makes its databases; no server runs.
std::string CreaFirebird(pruebas::CarpetaTemporal& carpeta) {
  carpeta.Pon("FIREBIRD_LOCK", carpeta.Ruta().string());
  const std::string archivo = (carpeta.Ruta() / "base.fdb").string();
  const std::string sql = "CREATE DATABASE '" + archivo + "' USER 'SYSDBA' DEFAULT CHARACTER SET UTF8";
  ISC_STATUS_ARRAY estado{};
  isc_db_handle base = 0;
  isc_tr_handle transaccion = 0;
  isc_dsql_execute_immediate(estado, &base, &transaccion, 0, sql.c_str(), SQL_DIALECT_V6, nullptr);
  isc_detach_database(estado, &base);
  return "service=" + archivo + " user=SYSDBA charset=UTF8";
}

TEST(Sentencias, FindTheSameRowsOnEveryDatabase) {
  pruebas::CarpetaTemporal carpeta;
  Base bases[] = {{soci::session(soci::sqlite3, ":memory:"), false, ""},
                  {soci::session(soci::firebird, CreaFirebird(carpeta)), true, ""}};
  // SQLite compares patterns without regard to case unless it is told.
  bases[0].sesion << "PRAGMA case_sensitive_like=ON";
  std::ifstream script(DATOS_PRUEBA "/sentencias/base.sql");
  for (std::string linea; std::getline(script, linea);) {
    for (Base& base : bases) base.Crea(linea);
  }
  for (const auto& caso : pruebas::Casos("sentencias/casos.txt", " | ")) {
    TParametrosFiltro filtro(u"T");
    TParametrosFiltro* f = &filtro;
    for (UnicodeString clausulas = UTF8ToString(caso[1]); !clausulas.empty();) {
      Agrega(f, Toma(clausulas, u" ; "));
    }
    for (f = &filtro; f != nullptr; f = f->ParametrosUnion.get()) {
      if (f->ParamSelect.empty()) f->AgregaCampoSelect(u"T.I", u"", true);
    }
    filtro.SetOrderBy(u"1");
    for (const std::size_t i : {0U, 1U}) {
      const auto compara = [&](const UnicodeString& sql, const TParams& parametros, std::size_t literal) {
        EXPECT_EQ(bases[i].Ejecuta(sql, parametros),
                  caso[caso.size() == 6 ? 2 + 2 * i + literal : std::min(2 + literal, caso.size() - 1)])
            << caso[0] << ", " << i << ": " << UTF8Encode(sql) << bases[i].queja;
      };
      compara(filtro.DameSentenciaSQL(false, 0), {}, 1);
      for (const auto estilo : {ENUM_MARCADOR::DOSPUNTOS, ENUM_MARCADOR::INTERROGACION, ENUM_MARCADOR::PESOS,
                                ENUM_MARCADOR::ARROBA}) {
        // Firebird reads the first two.
        if (i == 1 && estilo > ENUM_MARCADOR::INTERROGACION) break;
        TParams parametros;
        const UnicodeString sql = filtro.DameSentenciaSQL(estilo, 4, parametros);
        compara(sql, parametros, 0);
      }
    }
  }
}

}  // namespace
}  // namespace vel

// The statements run on four engines, and every way of giving their values finds the same rows. SQLite and
// embedded Firebird need no server; tests/bases/servidores.sh starts the other two.

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <ibase.h>
#include <map>
#include <optional>
#include <soci/soci.h>
#include <string>
#include <utility>
#include <vector>

#include "Paramsql/Paramsql.h"
#include "tests/CarpetaTemporal.h"
#include "tests/Casos.h"
#include "tools/utilvel/Errores.h"
#include "tools/utilvel/base/Base.h"
#include "tools/utilvel/base/Motor.h"

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
  if (palabra == u"distinct") return void(f->Distinct = true);
  if (palabra == u"desc") return void(f->OrdDesc = true);
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

// The library of Firebird makes its databases; no server runs.
void CreaFirebird(const std::string& archivo) {
  const std::string sql = "CREATE DATABASE '" + archivo + "' USER 'SYSDBA' DEFAULT CHARACTER SET UTF8";
  ISC_STATUS_ARRAY estado{};
  isc_db_handle base = 0;
  isc_tr_handle transaccion = 0;
  isc_dsql_execute_immediate(estado, &base, &transaccion, 0, sql.c_str(), SQL_DIALECT_V6, nullptr);
  isc_detach_database(estado, &base);
}

// What an engine has of its own here.
struct Prueba {
  const char* nombre;
  // How it spells the types of the table.
  const char* momento;
  const char* hora;
  // How many styles of placeholders it reads, from the first.
  std::size_t estilos;
};
const std::map<utilvel::ClaseDeBase, Prueba> kPruebas = {
    {utilvel::ClaseDeBase::Sqlite, {"sqlite3", "TIMESTAMP", "TIME", 4}},
    {utilvel::ClaseDeBase::Firebird, {"firebird", "TIMESTAMP", "TIME", 2}},
    {utilvel::ClaseDeBase::Postgresql, {"postgresql", "TIMESTAMP", "TIME", 1}},
    {utilvel::ClaseDeBase::Mysql, {"mysql", "DATETIME(3)", "TIME(3)", 1}}};

// Writes the table of base.sql, with what the program itself refuses: a session that writes.
void Llena(soci::session& sesion, const Prueba& prueba) {
  std::ifstream script(DATOS_PRUEBA "/sentencias/base.sql");
  for (std::string linea; std::getline(script, linea);) {
    if (linea.starts_with("CREATE")) {
      linea.replace(linea.find("TIMESTAMP"), 9, prueba.momento);
      linea.replace(linea.rfind("TIME)"), 4, prueba.hora);
    }
    soci::transaction transaccion(sesion);
    sesion << linea;
    transaccion.commit();
  }
}

// The rows of a statement, the first column of each, joined by blanks; "error" when the database refuses it.
std::string Ejecuta(utilvel::Base& base, const UnicodeString& sql, const TParams& parametros,
                    std::string& queja) try {
  utilvel::Resultado resultado = base.Consulta(sql, parametros);
  std::string filas;
  for (std::vector<utilvel::Celda> fila; resultado.Siguiente(fila);) {
    filas += (filas.empty() ? "" : " ") + fila.at(0).value_or("nulo");
  }
  return filas.empty() ? "nada" : filas;
} catch (const utilvel::Falla& e) {
  queja = e.what();
  return "error";
}

// What a case expects of an engine: the most particular of its parts.
std::string Esperado(const std::vector<std::string>& caso, const std::string& motor, bool conParametros) {
  std::string esperado = caso[2];
  for (const std::string& clave : {std::string("literales"), motor, motor + " literales"}) {
    if (conParametros && clave != motor) continue;
    for (std::size_t i = 3; i < caso.size(); ++i) {
      if (caso[i].starts_with(clave + ": ")) esperado = caso[i].substr(clave.size() + 2);
    }
  }
  return esperado;
}

void Recorre(utilvel::Base& base, const Prueba& prueba) {
  for (const auto& caso : pruebas::Casos("sentencias/casos.txt", " | ")) {
    TParametrosFiltro filtro(u"T");
    TParametrosFiltro* f = &filtro;
    for (UnicodeString clausulas = UTF8ToString(caso[1]); !clausulas.empty();) {
      Agrega(f, Toma(clausulas, u" ; "));
    }
    for (f = &filtro; f != nullptr; f = f->ParametrosUnion.get()) {
      if (f->ParamSelect.empty()) f->AgregaCampoSelect(u"T.I", u"", true);
    }
    filtro.OrderBy = u"1";
    std::string queja;
    const auto compara = [&](const UnicodeString& sql, const TParams& parametros, bool conParametros) {
      EXPECT_EQ(Ejecuta(base, sql, parametros, queja), Esperado(caso, prueba.nombre, conParametros))
          << caso[0] << ", " << prueba.nombre << ": " << UTF8Encode(sql) << queja;
    };
    compara(filtro.DameSentenciaSQL(false, 0), {}, false);
    for (std::size_t estilo = 0; estilo < prueba.estilos; ++estilo) {
      TParams parametros;
      const UnicodeString sql = filtro.DameSentenciaSQL(static_cast<ENUM_MARCADOR>(estilo), 4, parametros);
      compara(sql, parametros, true);
    }
  }
}

TEST(Sentencias, FindTheSameRowsInFiles) {
  pruebas::CarpetaTemporal carpeta;
  carpeta.Pon("FIREBIRD_LOCK", carpeta.Ruta().string());
  for (const auto clase : {utilvel::ClaseDeBase::Sqlite, utilvel::ClaseDeBase::Firebird}) {
    const Prueba& prueba = kPruebas.at(clase);
    const std::string archivo = (carpeta.Ruta() / prueba.nombre).string();
    if (clase == utilvel::ClaseDeBase::Firebird) CreaFirebird(archivo);
    {
      soci::session sesion(prueba.nombre, clase == utilvel::ClaseDeBase::Firebird
                                              ? "service=" + archivo + " user=SYSDBA charset=UTF8"
                                              : archivo);
      Llena(sesion, prueba);
    }
    utilvel::Base base(utilvel::LeeDireccion(std::string(prueba.nombre) + "://" + archivo), "");
    Recorre(base, prueba);
  }
}

// Run by servidores.sh, which gives the addresses.
TEST(Servidores, FindTheSameRowsThere) {
  for (const char* const variable : {"UTILVEL_PRUEBA_POSTGRESQL", "UTILVEL_PRUEBA_MYSQL"}) {
    ASSERT_NE(std::getenv(variable), nullptr) << variable;
    const utilvel::DireccionBase direccion = utilvel::LeeDireccion(std::getenv(variable));
    const std::string clave = std::getenv("UTILVEL_CLAVE");
    const Prueba& prueba = kPruebas.at(direccion.clase);
    {
      soci::session sesion(prueba.nombre, utilvel::DameMotor(direccion.clase).Conexion(direccion, clave));
      if (direccion.clase == utilvel::ClaseDeBase::Postgresql)
        sesion << "SET default_transaction_read_only = off";
      Llena(sesion, prueba);
    }
    utilvel::Base base(direccion, clave);
    Recorre(base, prueba);
  }
}

}  // namespace
}  // namespace vel

// The statements run on four engines, and every way of giving their values finds the same rows. SQLite and
// embedded Firebird need no server; tests/bases/servidores.sh starts the other two.

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "Paramsql/Paramsql.h"
#include "tests/Casos.h"
#include "tests/tools/utilvel/base/Bases.h"
#include "tools/utilvel/Errores.h"
#include "tools/utilvel/base/Base.h"

// Asked by the address checker of this program. Firebird's library leaves text converters open and threads
// that the search for leaks cannot follow.
extern "C" [[gnu::visibility("default")]] const char* __asan_default_options() { return "detect_leaks=0"; }

namespace vel {
namespace {

using EnBases = pruebas::EnBases;

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

TEST_P(EnBases, FindTheSameRows) {
  const pruebas::Motor& motor = GetParam();
  utilvel::Base base(utilvel::LeeDireccion(direccion_), pruebas::Clave());
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
      EXPECT_EQ(Ejecuta(base, sql, parametros, queja), Esperado(caso, motor.nombre, conParametros))
          << caso[0] << ", " << motor.nombre << ": " << UTF8Encode(sql) << queja;
    };
    compara(filtro.DameSentenciaSQL(false, 0), {}, false);
    for (std::size_t estilo = 0; estilo < motor.estilos; ++estilo) {
      TParams parametros;
      const UnicodeString sql = filtro.DameSentenciaSQL(static_cast<ENUM_MARCADOR>(estilo), 4, parametros);
      compara(sql, parametros, true);
    }
  }
}

}  // namespace
}  // namespace vel

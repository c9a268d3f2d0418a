// SQLite, whose values have types and whose columns have none.

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <optional>
#include <soci/soci.h>
#include <soci/sqlite3/soci-sqlite3.h>
#include <string_view>
#include <system_error>
#include <vector>

#include "tools/utilvel/Errores.h"
#include "tools/utilvel/base/Motores.h"

namespace utilvel {
namespace {

sqlite_api::sqlite3_stmt* Sentencia(soci::details::statement_backend& sentencia) {
  return static_cast<soci::sqlite3_statement_backend&>(sentencia).stmt_;
}

// Whether SQLite would make numbers of what such a column gets (https://sqlite.org/datatype3.html, 3.1).
bool EsNumerica(const char* declarada) {
  if (declarada == nullptr) return false;
  std::string tipo = declarada;
  std::transform(tipo.begin(), tipo.end(), tipo.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  const auto tiene = [&tipo](std::string_view parte) { return tipo.find(parte) != std::string::npos; };
  return tiene("INT") || tiene("REAL") || tiene("FLOA") || tiene("DOUB") || tiene("NUM") || tiene("DEC");
}

}  // namespace

std::string MotorSqlite::Conexion(const DireccionBase& direccion, const std::string& /*clave*/) const {
  if (direccion.base.find('"') != std::string::npos) {
    throw Falla(Codigo::Archivo, "El nombre de una base no puede tener comillas: " + direccion.base);
  }
  std::error_code error;
  if (!std::filesystem::is_regular_file(direccion.base, error)) {
    throw Falla(Codigo::Archivo, "No existe el archivo de la base: " + direccion.base);
  }
  return "dbname=\"" + direccion.base + "\" readonly=true timeout=10";
}

std::vector<std::string> MotorSqlite::Inicio() const { return {"PRAGMA case_sensitive_like=ON"}; }

std::vector<ColumnaLeida> MotorSqlite::Describe(soci::details::statement_backend& sentencia) const {
  sqlite_api::sqlite3_stmt* const s = Sentencia(sentencia);
  const int cuenta = sqlite_api::sqlite3_column_count(s);
  std::vector<ColumnaLeida> columnas;
  columnas.reserve(static_cast<std::size_t>(cuenta));
  for (int i = 0; i < cuenta; ++i) {
    columnas.push_back(
        {{sqlite_api::sqlite3_column_name(s, i),
          EsNumerica(sqlite_api::sqlite3_column_decltype(s, i)) ? TipoColumna::Monto : TipoColumna::Texto},
         Lectura::Propia,
         false});
  }
  return columnas;
}

Celda MotorSqlite::LeeCelda(soci::details::statement_backend& sentencia, std::size_t columna) const {
  sqlite_api::sqlite3_stmt* const s = Sentencia(sentencia);
  const int i = static_cast<int>(columna);
  switch (sqlite_api::sqlite3_column_type(s, i)) {
    case SQLITE_NULL:
      return std::nullopt;
    case SQLITE_FLOAT:
      return TextoFlotante(sqlite_api::sqlite3_column_double(s, i));
    case SQLITE_BLOB: {
      const void* const bytes = sqlite_api::sqlite3_column_blob(s, i);
      const auto cuantos = static_cast<std::size_t>(sqlite_api::sqlite3_column_bytes(s, i));
      return TextoDeBytes({static_cast<const char*>(bytes), cuantos});
    }
    default: {
      const void* const texto = sqlite_api::sqlite3_column_text(s, i);
      const auto cuantos = static_cast<std::size_t>(sqlite_api::sqlite3_column_bytes(s, i));
      return std::string(static_cast<const char*>(texto), cuantos);
    }
  }
}

}  // namespace utilvel

#pragma once

#include <cstdio>
#include <memory>
#include <sqlite3.h>
#include <stdexcept>
#include <string>
#include <string_view>

#include "examples/Salida.h"
#include "facil/Consulta.h"
#include "framework/TParams.h"
#include "platform/Caracteres.h"

// A database in memory made from a script, and the running of a query on it.
namespace ejemplo {

class Base {
 public:
  explicit Base(const std::string& script) {
    sqlite3* base = nullptr;
    if (sqlite3_open(":memory:", &base) != SQLITE_OK) throw std::runtime_error("No se puede abrir la base");
    base_.reset(base);
    // SQLite's own UPPER knows ASCII only.
    sqlite3_create_function(base, "UPPER", 1, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, Mayusculas,
                            nullptr, nullptr);
    if (sqlite3_exec(base, script.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) Falla();
  }

  /// Runs a statement, whose parameters are marked with "?", and prints its rows.
  void Imprime(const vel::facil::Sentencia& consulta) {
    const std::string sql = consulta.utf8();
    sqlite3_stmt* cruda = nullptr;
    if (sqlite3_prepare_v2(base_.get(), sql.c_str(), -1, &cruda, nullptr) != SQLITE_OK) Falla();
    const std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> sentencia(cruda, sqlite3_finalize);
    int lugar = 0;
    for (const vel::TParam& p : consulta.parametros) Enlaza(cruda, ++lugar, p);
    int paso = SQLITE_ROW;
    while ((paso = sqlite3_step(cruda)) == SQLITE_ROW) {
      for (int i = 0; i < sqlite3_column_count(cruda); ++i) {
        const auto* texto = reinterpret_cast<const char*>(sqlite3_column_text(cruda, i));
        std::printf("  %s",
                    Columna(vel::UTF8ToString(texto == nullptr ? "" : texto), i == 0 ? 46 : -12).c_str());
      }
      std::printf("\n");
    }
    if (paso != SQLITE_DONE) Falla();
  }

 private:
  [[noreturn]] void Falla() const { throw std::runtime_error(sqlite3_errmsg(base_.get())); }

  // Each value by its kind: SQLite compares no number with a text, and keeps dates as ISO texts.
  void Enlaza(sqlite3_stmt* sentencia, int lugar, const vel::TParam& p) const {
    using Kind = vel::Variant::Kind;
    int estado = SQLITE_MISMATCH;
    switch (p.Value.GetKind()) {
      case Kind::Empty:
      case Kind::Null:
        estado = sqlite3_bind_null(sentencia, lugar);
        break;
      case Kind::Integer:
      case Kind::Int64:
        estado = sqlite3_bind_int64(sentencia, lugar, p.Value.AsInt64());
        break;
      case Kind::Double:
        estado = sqlite3_bind_double(sentencia, lugar, p.Value.AsDouble());
        break;
      case Kind::Boolean:
        estado = sqlite3_bind_int(sentencia, lugar, p.Value.AsBoolean() ? 1 : 0);
        break;
      case Kind::Date:
        estado = EnlazaTexto(sentencia, lugar, vel::DateTimeToISO(p.Value.AsDateTime(), p.DataType));
        break;
      case Kind::String:
        estado = EnlazaTexto(sentencia, lugar, *p.Value.TextPtr());
        break;
      case Kind::Array:  // never a parameter's
        break;
    }
    if (estado != SQLITE_OK) throw std::runtime_error(sqlite3_errstr(estado));
  }

  static int EnlazaTexto(sqlite3_stmt* sentencia, int lugar, std::u16string_view texto) {
    return sqlite3_bind_text(sentencia, lugar, vel::UTF8Encode(texto).c_str(), -1, SQLITE_TRANSIENT);
  }

  static void Mayusculas(sqlite3_context* contexto, int /*cuenta*/, sqlite3_value** valores) {
    const auto* texto = reinterpret_cast<const char*>(sqlite3_value_text(valores[0]));
    if (texto == nullptr) return sqlite3_result_null(contexto);
    const std::string mayusculas = vel::UTF8Encode(vel::Mayusculas(vel::UTF8ToString(texto)));
    sqlite3_result_text(contexto, mayusculas.c_str(), -1, SQLITE_TRANSIENT);
  }

  std::unique_ptr<sqlite3, int (*)(sqlite3*)> base_{nullptr, sqlite3_close};
};

}  // namespace ejemplo

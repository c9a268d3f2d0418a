#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace utilvel {

enum class ClaseDeBase : std::uint8_t { Sqlite, Firebird, Postgresql, Mysql };

/// Where a database is. Without a server it is a file, for SQLite and Firebird, or the engine's own way to a
/// server of this machine.
struct DireccionBase {
  ClaseDeBase clase = ClaseDeBase::Sqlite;
  std::string usuario;
  std::string servidor;
  /// 0 is the engine's own.
  int puerto = 0;
  /// Path of the file, or the name of the database.
  std::string base;
};

/// Reads the address of a database:
///
///     sqlite3://ventas.db                        a file, relative; sqlite3:///srv/ventas.db an absolute one
///     firebird://ventas.fdb                      a file, as firebird:///srv/... and firebird://./...
///     firebird://ana@servidor:3050/ventas        a server, and a path or an alias in it
///     postgresql://ana@servidor:5432/ventas      a server; postgresql:///ventas one of this machine
///     mysql://ana@servidor:3306/ventas           MariaDB or MySQL, likewise
///
/// User and port may be missing; "%40" and the like stand for a byte, but in paths of files. Raises Falla
/// (Uso), which never repeats the address: it may hold a password, which has no place in it.
DireccionBase LeeDireccion(std::string_view texto);

}  // namespace utilvel

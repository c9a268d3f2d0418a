#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "framework/TParams.h"
#include "framework/Texto.h"
#include "tools/utilvel/Filas.h"
#include "tools/utilvel/base/Direccion.h"

// Databases of four engines, through SOCI. Only the sources of this folder know it: whoever reads a database
// gets columns and cells of text.
namespace utilvel {

class Motor;
class Resultado;

/// A database open for reading: what writes is refused by SQLite, PostgreSQL and MariaDB.
///
/// All engines are brought as near to one another as their settings allow: texts in UTF-8, dates as ISO
/// texts, LIKE by letter and without an escape of its own in SQLite and MariaDB, names in double quotes.
class Base {
 public:
  /// Raises Falla: Archivo when the file is missing, Base when it cannot be opened. `clave` is empty where
  /// none is needed; it is held no longer than the call.
  Base(const DireccionBase& direccion, const std::string& clave);
  Base(const Base&) = delete;
  Base& operator=(const Base&) = delete;
  ~Base();

  /// Runs a statement with its values, and stands before its first row. Parameters are marked with ":" and
  /// their names, or with "?" where the engine takes that, and are bound in the order of the list. One
  /// statement runs at a time: its rows end before the next begins. Raises Falla (Base) with what the engine
  /// says.
  Resultado Consulta(std::u16string_view sql, const vel::TParams& parametros);

 private:
  friend class Resultado;
  struct Sesion;
  std::unique_ptr<Sesion> sesion_;
};

/// The rows of a statement, in constant memory but for MariaDB, whose library reads all of them first.
class Resultado {
 public:
  Resultado(Resultado&&) noexcept;
  Resultado(const Resultado&) = delete;
  Resultado& operator=(const Resultado&) = delete;
  Resultado& operator=(Resultado&&) = delete;
  ~Resultado();

  /// Names as the engine gives them, and whether each holds numbers (Monto) or not (Texto).
  const std::vector<Columna>& Columnas() const noexcept;
  /// The next row; false after the last one. Raises Falla (Base) when the database fails on the way, which is
  /// never taken for the end.
  ///
  /// Numbers are written with all the decimals that the column has, those of floating point with the fewest
  /// digits that read back to the same; dates as ISO texts ("2024-05-13 14:30:00"), without zeros at the end
  /// of a fraction; bytes that are no text as "\\x" and hexadecimal digits.
  bool Siguiente(std::vector<Celda>& fila);

 private:
  friend class Base;
  struct Estado;
  explicit Resultado(std::unique_ptr<Estado> estado);
  std::unique_ptr<Estado> estado_;
};

}  // namespace utilvel

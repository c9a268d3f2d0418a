#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "framework/TParams.h"
#include "tools/utilvel/Filas.h"
#include "tools/utilvel/base/Direccion.h"

namespace soci {
class session;
namespace details {
class statement_backend;
}
}  // namespace soci

namespace utilvel {

/// A value as the engine gets it.
using Enlazado = std::variant<long long, double, std::string>;

/// How a cell is read.
enum class Lectura : std::uint8_t {
  Texto,
  Flotante,
  /// A text of any length, kept apart from the row.
  Largo,
  /// Bytes, likewise.
  Bytes,
  /// A date with its time, which SOCI would cut to seconds: it only makes room for Motor::LeeCelda to read.
  Momento,
  /// By Motor::LeeCelda, which tells nulls too.
  Propia,
};

struct ColumnaLeida {
  Columna columna;
  Lectura lectura = Lectura::Texto;
  /// A date with its time may have a fraction of seconds.
  bool esFecha = false;
};

/// What an engine has of its own. The class itself is an engine that needs nothing special.
class Motor {
 public:
  Motor() = default;
  Motor(const Motor&) = delete;
  Motor& operator=(const Motor&) = delete;
  virtual ~Motor() = default;

  /// SOCI's name of the engine.
  virtual const char* Nombre() const noexcept = 0;
  /// SOCI's text to open the database.
  virtual std::string Conexion(const DireccionBase& direccion, const std::string& clave) const = 0;
  /// Statements that a new session begins with.
  virtual std::vector<std::string> Inicio() const { return {}; }
  /// Rows that a cursor brings at a time; 0 for an engine that brings rows one by one, or all, by itself.
  virtual std::size_t Lote() const noexcept { return 0; }
  /// Gives a parameter of the statement that is about to run the kind that the engine takes. `lugar` is
  /// 0-based. Raises Falla (Base) for a value that it would change.
  virtual Enlazado Enlaza(soci::details::statement_backend& sentencia, std::size_t lugar,
                          const vel::TParam& parametro) const;
  /// The columns of the statement that is about to run.
  virtual std::vector<ColumnaLeida> Describe(soci::details::statement_backend& sentencia) const;
  /// The cell of a column whose reading is Propia, or Momento and not null.
  virtual Celda LeeCelda(soci::details::statement_backend& sentencia, std::size_t columna) const;
};

const Motor& DameMotor(ClaseDeBase clase);

/// A number of floating point in the fewest digits that read back to the same.
std::string TextoFlotante(double valor);
/// "\\x" and two digits for each byte.
std::string TextoDeBytes(std::string_view bytes);

}  // namespace utilvel

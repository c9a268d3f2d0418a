#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/utilvel/Sistema.h"

namespace CLI {
class App;
}

namespace utilvel {

/// How rows are printed, as the user asks: an aligned table, one JSON object a line, or CSV with a line of
/// names.
enum class Formato : std::uint8_t { Tabla, Json, Csv };

struct OpcionesFilas {
  bool json = false;
  bool csv = false;
  /// File that gets the rows; empty for standard output.
  std::string archivo;
  Formato DameFormato() const noexcept { return json ? Formato::Json : csv ? Formato::Csv : Formato::Tabla; }
};

/// Gives a command the options --json, --csv and --salida.
void AgregaOpcionesFilas(CLI::App& comando, OpcionesFilas& opciones);

/// What a column holds: how a table aligns it and how JSON writes it. Amounts are texts in JSON, since a
/// reader that takes them for binary numbers would change them.
enum class TipoColumna : std::uint8_t {
  Texto,
  /// To the right in tables, a text in JSON.
  Monto,
  /// To the right in tables, a number in JSON: the cell's text must be one.
  Entero,
  /// Cells "sí" and "no"; true and false in JSON.
  Logico,
};

struct Columna {
  /// In small ASCII letters with "_" for blanks: programs that read JSON name fields so.
  std::string nombre;
  TipoColumna tipo = TipoColumna::Texto;
};

/// A cell, in UTF-8. What has no value is null in JSON and empty elsewhere.
using Celda = std::optional<std::string>;

/// Prints rows as they come, in constant memory. A table takes the widths of its columns from the first rows,
/// which wait for that; a later cell that is wider pushes its line to the right.
///
///     Filas filas(opciones, {{"zona"}, {"hora"}});
///     filas.Agrega({"Mérida", "12:00"});
///     filas.Termina();
///
/// Without Termina a file asked for with --salida does not appear.
class Filas {
 public:
  Filas(const OpcionesFilas& opciones, std::vector<Columna> columnas);
  /// A line above a table, with an empty one after it; not in other formats. Before the first row.
  void Titulo(const std::string& texto);
  /// One cell for each column. Raises Interrumpido after a Ctrl-C.
  void Agrega(std::vector<Celda> fila);
  void Termina();
  std::size_t Cuenta() const noexcept { return cuenta_; }

 private:
  void EscribeTabla(const std::vector<Celda>& fila);
  void EscribeJson(const std::vector<Celda>& fila);
  void EscribeCsv(const std::vector<Celda>& fila);
  void EscribeEnEspera();

  Escritor escritor_;
  Formato formato_;
  std::vector<Columna> columnas_;
  std::size_t cuenta_ = 0;
  // Of tables: rows that wait for the widths, and the widths once they are known.
  std::vector<std::vector<Celda>> espera_;
  std::vector<std::size_t> anchos_;
};

}  // namespace utilvel

#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "framework/Texto.h"
#include "tools/utilvel/Codigos.h"
#include "tools/utilvel/Sistema.h"

// What commands read: whole files, lines, and files for library functions that take paths. "-" is standard
// input everywhere. All raise Falla (Archivo) naming what cannot be read.
namespace utilvel {

std::string LeeTodo(const std::string& ruta);

/// Raises Falla (Uso) when the file that is to receive the results, an empty name for none, is one of those
/// that are read: it appears whole in that file's place, and an invoice would give way to the report on it.
void ExigeOtraSalida(const std::string& salida, const std::vector<std::string>& leidos);

/// A file that a library function is to read by its path. Standard input is copied to a private temporary
/// file that ends with the object. Raises when there is nothing to read, where those functions take a missing
/// file for an empty one.
class ArchivoParaLeer {
 public:
  explicit ArchivoParaLeer(const std::string& ruta);
  ArchivoParaLeer(const ArchivoParaLeer&) = delete;
  ArchivoParaLeer& operator=(const ArchivoParaLeer&) = delete;
  ~ArchivoParaLeer();
  vel::UnicodeString Ruta() const { return vel::UTF8ToString(ruta_); }

 private:
  std::string ruta_;
  bool temporal_ = false;
};

/// The lines of a file one after another, without their line breaks nor a byte-order mark. Constant memory: a
/// line of more than kMaximo bytes raises Falla (Datos).
class Renglones {
 public:
  static constexpr std::size_t kMaximo = 1U << 20U;
  explicit Renglones(const std::string& ruta) : lector_(ruta) {}
  /// The next line, valid until the one after it; false at the end.
  bool Siguiente(std::string_view& renglon);
  /// 1-based number of the line given last.
  std::size_t Numero() const noexcept { return numero_; }

 private:
  bool Llena();

  Lector lector_;
  std::vector<char> bloque_;
  std::size_t inicio_ = 0;
  std::size_t fin_ = 0;
  std::size_t numero_ = 0;
  bool acabo_ = false;
};

/// A whole number of the command line; `que` is the argument's or option's name. Raises Falla (Uso).
std::int32_t Entero(const std::string& texto, const std::string& que);

/// Runs a function on a text of the command line or, when it is "-", on each line of standard input. A line
/// that fails is told with its number and the run goes on: the result is then Parcial.
Codigo PorRenglon(const std::string& texto, const std::function<void(const vel::UnicodeString&)>& hace);

}  // namespace utilvel

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "framework/Texto.h"

// What the program asks of the terminal and of the system. SistemaPosix.cpp implements it; nothing else of
// the program knows the system.
namespace utilvel {

enum class Flujo : std::uint8_t { Entrada, Salida, Errores };

bool EsTerminal(Flujo flujo);
/// Columns of the terminal that shows the errors; 80 when it does not tell.
std::size_t AnchoTerminal();

/// Whether what goes to a terminal may have colours: not when NO_COLOR is set to anything (no-color.org), nor
/// on a terminal of kind "dumb".
bool ConColor(Flujo flujo);

/// From here on Ctrl-C (and what asks a program to end) only raises a flag, the second time it ends the
/// program and deletes the file that an Escritor has not finished, and a reader that went away is an error of
/// writing.
void AtiendeSenales();
bool HuboInterrupcion() noexcept;
/// Raises Interrumpido after a Ctrl-C. Loops ask between rows, where nothing is half done.
void RevisaInterrupcion();
/// Ends the program as the system's own treatment of the signal does, so that whoever started it sees why.
[[noreturn]] void TerminaPorInterrupcion();
[[noreturn]] void TerminaPorTuberia();

/// While one lives, Ctrl-C, also one that came just before, ends the program at once: around calls of other
/// libraries that wait and take no notice. The file that an Escritor has not finished is deleted even so.
class EsperaLarga {
 public:
  EsperaLarga() noexcept;
  EsperaLarga(const EsperaLarga&) = delete;
  EsperaLarga& operator=(const EsperaLarga&) = delete;
  ~EsperaLarga();
};

/// A file open to be read in pieces. Paths are the system's or the suite's (vel::RutaNativa).
class Lector {
 public:
  /// "-" is standard input. Raises Falla (Archivo) naming the file, also for a folder.
  explicit Lector(const std::string& ruta);
  Lector(const Lector&) = delete;
  Lector& operator=(const Lector&) = delete;
  ~Lector();
  /// Fills the beginning of `destino` and returns how many bytes it got; 0 at the end. A pipe gives what
  /// there is without waiting for more. Raises Interrumpido on Ctrl-C.
  std::size_t Lee(char* destino, std::size_t cuanto);
  /// Bytes of the file; 0 when they are not known (a pipe, a terminal).
  std::uint64_t Total() const noexcept { return total_; }
  const std::string& Nombre() const noexcept { return nombre_; }

 private:
  std::string nombre_;
  int descriptor_ = -1;
  std::uint64_t total_ = 0;
};

/// Where results go: standard output, or a file that appears whole under its name when Termina is called and
/// not at all when it is not.
class Escritor {
 public:
  /// An empty path or "-" is standard output.
  explicit Escritor(const std::string& ruta);
  Escritor(const Escritor&) = delete;
  Escritor& operator=(const Escritor&) = delete;
  /// Writes what standard output still holds, without telling of errors; throws a file that was not finished
  /// away.
  ~Escritor();
  /// Raises Falla (Archivo), or TuberiaCerrada.
  void Escribe(std::string_view texto) {
    if (pendiente_.size() + texto.size() > kBloque) Vacia();
    pendiente_ += texto;
  }
  /// Hands on what is pending: whoever reads a pipe sees every row so far.
  void Vacia();
  void Termina();
  /// True when results go to a terminal.
  bool Terminal() const noexcept { return terminal_; }

 private:
  static constexpr std::size_t kBloque = 65536;
  void Manda(std::string_view texto);
  [[noreturn]] void Lanza(int error) const;

  std::string ruta_;
  std::string temporal_;
  std::string pendiente_;
  int descriptor_ = -1;
  bool terminal_ = false;
};

/// An empty file of this user alone, in the folder of temporary files; the caller deletes it.
std::string CreaTemporal();

/// A password: asked for without echo when standard input is a terminal, else the first line of standard
/// input. In UTF-8; the caller wipes it.
std::string LeeContrasena(std::string_view pregunta);

}  // namespace utilvel

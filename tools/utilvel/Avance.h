#pragma once

#include <chrono>
#include <cstdint>

namespace utilvel {

/// A progress bar in the last line of the terminal that shows the errors. Nothing appears elsewhere, in the
/// first half second, or when the results go to a terminal too, where they are progress enough.
///
///     Avance avance(archivos.size(), salida.Terminal());
///     for (...) { ...; avance.Uno(); }
class Avance {
 public:
  Avance(std::uint64_t total, bool resultadosEnTerminal);
  Avance(const Avance&) = delete;
  Avance& operator=(const Avance&) = delete;
  /// Takes the bar away.
  ~Avance() { Borra(); }

  /// One more is done.
  void Uno() { Va(hechos_ + 1); }
  /// So many of the total (of files, of a file's bytes) are done.
  void Va(std::uint64_t hechos);
  /// Takes the bar away so that a message stands alone; it comes back with the next step.
  void Borra();

 private:
  using Reloj = std::chrono::steady_clock;
  void Dibuja();

  std::uint64_t total_;
  bool visible_;
  std::uint64_t hechos_ = 0;
  bool dibujada_ = false;
  Reloj::time_point inicio_ = Reloj::now();
  Reloj::time_point siguiente_;
};

}  // namespace utilvel

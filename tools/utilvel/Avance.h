#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace utilvel {

/// A progress bar on standard error: only on a terminal, only when the results do not go to one too, and
/// drawn a few times a second. It goes away with the object.
///
///     Avance avance(lector.Total(), "renglones");
///     while (...) avance.Lleva(lector.Leido(), renglones);
class Avance {
 public:
  /// `total` is 0 when it is not known: only the count shows. `resultadosEnTerminal` as Escritor::Terminal.
  Avance(std::uint64_t total, std::string unidad, bool resultadosEnTerminal);
  Avance(const Avance&) = delete;
  Avance& operator=(const Avance&) = delete;
  ~Avance();

  /// How much of the total is done, and how many units that is. Cheap: may be called for every unit.
  void Lleva(std::uint64_t hecho, std::uint64_t cuenta) {
    if (visible_ && ++llamadas_ % 256 == 1) Dibuja(hecho, cuenta);
  }

 private:
  void Dibuja(std::uint64_t hecho, std::uint64_t cuenta);

  std::uint64_t total_;
  std::string unidad_;
  bool visible_;
  bool dibujada_ = false;
  std::uint32_t llamadas_ = 0;
  std::chrono::steady_clock::time_point proxima_;
};

}  // namespace utilvel

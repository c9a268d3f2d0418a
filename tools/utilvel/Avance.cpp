#include "tools/utilvel/Avance.h"

#include <algorithm>
#include <cstdio>

#include "tools/utilvel/Sistema.h"

namespace utilvel {
namespace {

constexpr std::chrono::milliseconds kEspera{500};
constexpr std::chrono::milliseconds kPaso{100};
constexpr std::size_t kAnchoMaximo = 60;
// What stands beside the bar at its longest: brackets, "100 %, faltan " and the time.
constexpr std::size_t kTextos = 40;

}  // namespace

Avance::Avance(std::uint64_t total, bool resultadosEnTerminal)
    : total_(total),
      visible_(total > 0 && !resultadosEnTerminal && EsTerminal(Flujo::Errores)),
      siguiente_(inicio_ + kEspera) {}

void Avance::Va(std::uint64_t hechos) {
  hechos_ = std::min(hechos, total_);
  if (!visible_) return;
  const Reloj::time_point ahora = Reloj::now();
  if (ahora < siguiente_) return;
  siguiente_ = ahora + kPaso;
  Dibuja();
}

void Avance::Dibuja() {
  const std::size_t libre = AnchoTerminal() > kTextos ? AnchoTerminal() - kTextos : 0;
  const std::size_t ancho = std::min(libre, kAnchoMaximo);
  const double parte = static_cast<double>(hechos_) / static_cast<double>(total_);
  const auto llenos = static_cast<std::size_t>(parte * static_cast<double>(ancho));
  const std::chrono::duration<double> lleva = Reloj::now() - inicio_;
  const double faltan = hechos_ == 0 ? 0 : lleva.count() * (1 / parte - 1);
  std::string linea = "\r[" + std::string(llenos, '#') + std::string(ancho - llenos, ' ') + "] ";
  linea += std::to_string(static_cast<int>(parte * 100)) + " %, faltan " +
           std::to_string(static_cast<std::int64_t>(faltan) + 1) + " s\x1B[K";
  static_cast<void>(std::fwrite(linea.data(), 1, linea.size(), stderr));
  std::fflush(stderr);
  dibujada_ = true;
}

void Avance::Borra() {
  if (!dibujada_) return;
  static_cast<void>(std::fputs("\r\x1B[K", stderr));
  std::fflush(stderr);
  dibujada_ = false;
}

}  // namespace utilvel

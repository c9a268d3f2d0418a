#include "tools/utilvel/Avance.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "tools/utilvel/Sistema.h"

namespace utilvel {
namespace {

constexpr std::chrono::milliseconds kPausa{200};
constexpr std::size_t kLargoBarra = 40;

// "1,234,567".
std::string ConMiles(std::uint64_t numero) {
  std::string texto = std::to_string(numero);
  for (std::size_t i = texto.size(); i > 3; i -= 3) texto.insert(i - 3, 1, ',');
  return texto;
}

}  // namespace

Avance::Avance(std::uint64_t total, std::string unidad, bool resultadosEnTerminal)
    : total_(total),
      unidad_(std::move(unidad)),
      visible_(!resultadosEnTerminal && EsTerminal(Flujo::Errores)),
      // What is done at once shows no bar.
      proxima_(std::chrono::steady_clock::now() + kPausa) {}

Avance::~Avance() {
  if (dibujada_) std::fputs("\r\x1B[K", stderr);
}

void Avance::Dibuja(std::uint64_t hecho, std::uint64_t cuenta) {
  const auto ahora = std::chrono::steady_clock::now();
  if (ahora < proxima_) return;
  proxima_ = ahora + kPausa;
  std::string linea;
  if (total_ > 0) {
    const std::uint64_t parte = std::min(hecho, total_);
    const auto lleno = static_cast<std::size_t>(kLargoBarra * parte / total_);
    linea = "[" + std::string(lleno, '#') + std::string(kLargoBarra - lleno, '.') + "] " +
            std::to_string(100 * parte / total_) + " %  ";
  }
  linea = (linea + ConMiles(cuenta) + " " + unidad_).substr(0, AnchoTerminal() - 1);
  std::fputs(("\r" + linea + "\x1B[K").c_str(), stderr);
  dibujada_ = true;
}

}  // namespace utilvel

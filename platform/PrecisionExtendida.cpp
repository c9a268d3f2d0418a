#include "platform/PrecisionExtendida.h"

#if defined(__i386__) || defined(__x86_64__)

#include <array>

namespace vel {
namespace {

// The exceptions that have occurred, and the stack fault.
constexpr std::uint16_t kBanderas = 0x7F;

std::uint16_t Banderas() noexcept {
  std::uint16_t estado = 0;
  asm volatile("fnstsw %0" : "=m"(estado));
  return estado & kBanderas;
}

// The only way to set flags: the unit's environment with others in it (volume 1, section 8.1.10), 28 bytes
// whose first two words are the control and the status.
void PonBanderas(std::uint16_t banderas) noexcept {
  std::array<std::uint32_t, 7> entorno{};
  asm volatile("fnstenv %0" : "=m"(entorno));
  entorno[1] = (entorno[1] & ~std::uint32_t{kBanderas}) | banderas;
  asm volatile("fldenv %0" : : "m"(entorno));
}

}  // namespace

void PrecisionExtendida::Cambia() noexcept {
  banderas_ = Banderas();
  asm volatile("fldcw %0" : : "m"(kPalabra));
}

void PrecisionExtendida::Regresa() noexcept {
  // A flag of ours left standing would be raised as an exception by the host's next instruction, where its
  // word does not mask it; so flags go back before the word does.
  if (Banderas() != banderas_) {
    asm volatile("fnclex");
    if (banderas_ != 0) PonBanderas(banderas_);
  }
  asm volatile("fldcw %0" : : "m"(palabra_));
}

}  // namespace vel

#endif

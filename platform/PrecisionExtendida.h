#pragma once

#include <cstdint>

namespace vel {

/// While it lives, this thread's long double arithmetic is whole: 64 bits of mantissa, rounded to nearest,
/// with no exception raised. The x87 unit of x86 processors takes these from a control word that belongs to
/// the thread, not to the type: Windows starts its threads at 53 bits, and some compilers' programs unmask
/// exceptions. Word and exception flags come back as they were. Where the word is right already, as on Linux,
/// it is only read, and the flags are what any arithmetic leaves. Other processors need none of this.
///
/// Compilers do not know that arithmetic depends on the word, and would move it across. So whatever is
/// computed from comes out of Fija, and the result goes through it before the guard ends:
///
///     const PrecisionExtendida guardia;
///     const long double tercio = PrecisionExtendida::Fija(valor) / 3.0L;
///     return PrecisionExtendida::Fija(static_cast<double>(tercio));
class PrecisionExtendida {
 public:
  PrecisionExtendida(const PrecisionExtendida&) = delete;
  PrecisionExtendida& operator=(const PrecisionExtendida&) = delete;

#if defined(__i386__) || defined(__x86_64__)
  PrecisionExtendida() noexcept {
    asm volatile("fnstcw %0" : "=m"(palabra_));
    cambiada_ = (palabra_ & kLoQueCuenta) != (kPalabra & kLoQueCuenta);
    if (cambiada_) [[unlikely]] {
      Cambia();
    }
  }
  ~PrecisionExtendida() {
    if (cambiada_) [[unlikely]] {
      Regresa();
    }
  }

  template <typename Numero>
  static Numero Fija(Numero valor) noexcept {
    asm volatile("" : "+m"(valor));
    return valor;
  }

 private:
  // Intel 64 and IA-32 Architectures Software Developer's Manual, volume 1, section 8.1.5: all exceptions
  // masked (bits 0 to 5), 64 bits (8 and 9), to nearest (10 and 11). The others have no effect.
  static constexpr std::uint16_t kPalabra = 0x037F;
  static constexpr std::uint16_t kLoQueCuenta = 0x0F3F;

  void Cambia() noexcept;
  void Regresa() noexcept;

  std::uint16_t palabra_ = 0;
  std::uint16_t banderas_ = 0;
  bool cambiada_ = false;
#else
  PrecisionExtendida() noexcept = default;
  ~PrecisionExtendida() {}

  template <typename Numero>
  static Numero Fija(Numero valor) noexcept {
    return valor;
  }
#endif
};

}  // namespace vel

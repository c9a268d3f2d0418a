#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

// Two doubles at a time, as the compiler's own vectors, which every processor that the library is built for
// has. Each lane gives the bits that the same operation gives on one double.
namespace vel::pares {

using Par [[gnu::vector_size(16)]] = double;
/// Of a comparison: all bits of a lane for true, none for false.
using Mascara [[gnu::vector_size(16)]] = std::int64_t;

inline Par Carga(const double* desde) noexcept {
  Par p;
  std::memcpy(&p, desde, sizeof p);
  return p;
}

inline void Guarda(Par p, double* hacia) noexcept { std::memcpy(hacia, &p, sizeof p); }

inline Mascara Bits(Par p) noexcept { return std::bit_cast<Mascara>(p); }
inline Par DeBits(Mascara bits) noexcept { return std::bit_cast<Par>(bits); }

inline constexpr Mascara kSigno = {INT64_MIN, INT64_MIN};

inline Par Abs(Par p) noexcept { return DeBits(Bits(p) & ~kSigno); }
inline Par ConSignoDe(Par magnitud, Par signo) noexcept {
  return DeBits(Bits(magnitud) | (Bits(signo) & kSigno));
}
/// The lanes of `si` where the mask holds, the others of `no`.
inline Par Elige(Mascara mascara, Par si, Par no) noexcept {
  return DeBits((mascara & Bits(si)) | (~mascara & Bits(no)));
}
/// One where the mask holds, else zero.
inline Par UnoOCero(Mascara mascara) noexcept { return DeBits(mascara & Bits(Par{1, 1})); }

/// The whole number nearest to a value from 0 to 2^51: adding 2^52 leaves no bits for a fraction.
inline Par Entero(Par p) noexcept {
  constexpr double kSinFraccion = 4503599627370496.0;
  return (p + kSinFraccion) - kSinFraccion;
}

}  // namespace vel::pares

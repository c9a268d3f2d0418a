#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

// Two doubles at a time, as the compiler's own vectors, which every processor that the library is built for
// has. Each lane gives the bits that the same operation gives on one double.
namespace vel::pares {

using Par [[gnu::vector_size(16)]] = double;
/// Of a comparison: all bits of a lane for true, none for false. As halves of lanes, because the oldest of
/// the processors cannot compare whole ones, and GCC would take masks of those apart.
using Mascara [[gnu::vector_size(16)]] = std::int32_t;

inline Par Carga(const double* desde) noexcept {
  Par p;
  std::memcpy(&p, desde, sizeof p);
  return p;
}

inline void Guarda(Par p, double* hacia) noexcept { std::memcpy(hacia, &p, sizeof p); }

inline Mascara Bits(Par p) noexcept { return std::bit_cast<Mascara>(p); }
inline Par DeBits(Mascara bits) noexcept { return std::bit_cast<Par>(bits); }
/// The mask of a comparison of pairs.
template <class Comparacion>
Mascara De(Comparacion comparacion) noexcept {
  return std::bit_cast<Mascara>(comparacion);
}
inline bool Lado(Mascara mascara, std::size_t lado) noexcept { return mascara[2 * lado] != 0; }
inline bool Ambos(Mascara mascara) noexcept { return Lado(mascara, 0) && Lado(mascara, 1); }

inline Par Abs(Par p) noexcept { return DeBits(Bits(p) & ~Bits(Par{-0.0, -0.0})); }
/// A magnitude, which is not negative, with the sign of another pair.
inline Par ConSignoDe(Par magnitud, Par signo) noexcept {
  return DeBits(Bits(magnitud) | (Bits(signo) & Bits(Par{-0.0, -0.0})));
}
/// The lanes of `si` where the mask holds, those of `no` elsewhere.
inline Par Elige(Mascara mascara, Par si, Par no) noexcept {
  return DeBits((mascara & Bits(si)) | (~mascara & Bits(no)));
}
/// One where the mask holds, else zero.
inline Par UnoOCero(Mascara mascara) noexcept { return DeBits(mascara & Bits(Par{1, 1})); }

/// The whole number nearest to a value within 2^51 of zero: beside 1.5 * 2^52 there are no bits for a
/// fraction. Zero of either sign gives positive zero.
inline Par Entero(Par p) noexcept {
  constexpr double kSinFraccion = 6755399441055744.0;
  return (p + kSinFraccion) - kSinFraccion;
}

}  // namespace vel::pares

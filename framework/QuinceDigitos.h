#pragma once

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "framework/PotenciasDiez.h"

// The fifteen significant digits that FloatToStr gives a value, by arithmetic: n * 10^-k, n being the whole
// number nearest to value * 10^k, with 1E14 <= n <= 1E15. Both n and 10^k are exact in a double.
namespace vel::quince {

inline constexpr int kMenorExponente = -24;
inline constexpr int kMayorExponente = 49;

/// For each binary exponent the k that takes 2^exponent to 15 digits: 1E14 <= 2^exponent * 10^k < 1E15.
inline constexpr auto kDecimales = []() {
  std::array<std::uint8_t, kMayorExponente - kMenorExponente + 1> tabla{};
  for (int e = kMenorExponente; e <= kMayorExponente; ++e) {
    const double potencia = e < 0 ? 1.0 / static_cast<double>(1LL << -e) : static_cast<double>(1LL << e);
    std::uint8_t k = 0;
    while (potencia * diez::kPotencias[k] < 1e14) ++k;
    tabla[static_cast<std::size_t>(e - kMenorExponente)] = k;
  }
  return tabla;
}();

/// k of a value that is not negative; false for one that is not from 2^-24 to 1E15.
inline bool Decimales(double magnitud, std::size_t& k) noexcept {
  const int exponente = static_cast<int>(std::bit_cast<std::uint64_t>(magnitud) >> 52) - 1023;
  if (!(magnitud < 1e15) || exponente < kMenorExponente) return false;
  k = kDecimales[static_cast<std::size_t>(exponente - kMenorExponente)];
  // Up to 2E15: then it is one decimal less. Which it is cannot be foretold, so nothing branches on it.
  k -= static_cast<std::size_t>(magnitud * diez::kPotencias[k] >= 1e15);
  return true;
}

/// What a * b has more than its rounded product, exactly, of doubles or pairs (T. J. Dekker, "A
/// floating-point technique for extending the available precision", 1971).
template <class Numero>
inline Numero ErrorProducto(Numero a, Numero b, Numero producto) noexcept {
  constexpr double kCorte = 134217729;  // 2^27 + 1: parts the 53 bits in two halves.
  const Numero a1 = a * kCorte - (a * kCorte - a);
  const Numero b1 = b * kCorte - (b * kCorte - b);
  const Numero a2 = a - a1;
  const Numero b2 = b - b1;
  return ((a1 * b1 - producto) + a1 * b2 + a2 * b1) + a2 * b2;
}

/// n of a value, whose 10^k is `potencia`. False when the product is a true half: the text decides.
///
/// The product, of at most 50 bits, is rounded once: it lies within 1/16 of the true one, so n is certain
/// while the product lies within 7/16 of it; nearer to a half, the product's own error decides. Where
/// rounding takes the product up to 1E15 or down to 1E14, either count of decimals gives the same value.
inline bool Entero(double magnitud, double potencia, double& n) noexcept {
  // Adding 2^52 leaves no bits for a fraction.
  constexpr double kSinFraccion = 4503599627370496.0;
  const double producto = magnitud * potencia;
  n = (producto + kSinFraccion) - kSinFraccion;
  const double fraccion = producto - n;
  if (std::abs(fraccion) < 0.4375) [[likely]]
    return true;
  const double error = ErrorProducto(magnitud, potencia, producto);
  const double falta = std::copysign(0.5, fraccion) - fraccion;
  if (fraccion > 0 && error > falta) n += 1;
  if (fraccion < 0 && error < falta) n -= 1;
  return error != falta;
}

}  // namespace vel::quince

#pragma once

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "framework/PotenciasDiez.h"

namespace vel::formula {

/// Between two operations a value travels as text: FloatToStr of the result, converted back. AcarreaTexto
/// does just that. False, `acarreado` left alone, when the text does not convert: infinite, undefined, or so
/// near the largest double that 15 digits round beyond it.
bool AcarreaTexto(double resultado, double& acarreado) noexcept;

namespace acarreo {

inline constexpr int kMenorExponente = -24;
inline constexpr int kMayorExponente = 49;

/// For each binary exponent the decimals k that take 2^exponent to 15 digits: 1E14 <= 2^exponent * 10^k <
/// 1E15.
inline constexpr auto kDecimales = [] {
  std::array<std::uint8_t, kMayorExponente - kMenorExponente + 1> tabla{};
  for (int e = kMenorExponente; e <= kMayorExponente; ++e) {
    const double potencia = e < 0 ? 1.0 / static_cast<double>(1LL << -e) : static_cast<double>(1LL << e);
    std::uint8_t k = 0;
    while (potencia * diez::kPotencias[k] < 1e14) ++k;
    tabla[static_cast<std::size_t>(e - kMenorExponente)] = k;
  }
  return tabla;
}();

/// What a * b has more than its rounded product, exactly (T. J. Dekker, "A floating-point technique for
/// extending the available precision", 1971).
inline double ErrorProducto(double a, double b, double producto) noexcept {
  constexpr double kCorte = 134217729;  // 2^27 + 1: parts the 53 bits in two halves.
  const double a1 = a * kCorte - (a * kCorte - a);
  const double b1 = b * kCorte - (b * kCorte - b);
  const double a2 = a - a1;
  const double b2 = b - b1;
  return ((a1 * b1 - producto) + a1 * b2 + a2 * b1) + a2 * b2;
}

}  // namespace acarreo

/// AcarreaTexto without making the text where its outcome is known.
///
/// A whole number below 1E15 has at most 15 digits: its text is exact. Zero of either sign is "0".
///
/// Other values: the text holds n * 10^-k, n being the whole number nearest to value * 10^k, of 15 digits.
/// Both n and 10^k are exact in a double, so n / 10^k is the double nearest to the text, which is what
/// reading it gives. The product is below 2^50 and rounded once: it lies within 1/16 of the true one, so n is
/// certain while the product lies within 7/16 of it; nearer to a half, the product's own error decides, and a
/// true half goes the way of the text. Where rounding takes the product up to 1E15 or down to 1E14, either
/// count of decimals gives the same value.
inline bool Acarrea(double resultado, double& acarreado) noexcept {
  const double magnitud = std::abs(resultado);
  if (!(magnitud < 1e15)) [[unlikely]]
    return AcarreaTexto(resultado, acarreado);
  const auto entero = static_cast<double>(static_cast<std::int64_t>(resultado));
  if (entero == resultado) {
    acarreado = entero;
    return true;
  }
  const int exponente = static_cast<int>(std::bit_cast<std::uint64_t>(magnitud) >> 52) - 1023;
  if (exponente < acarreo::kMenorExponente) [[unlikely]]
    return AcarreaTexto(resultado, acarreado);
  std::size_t k = acarreo::kDecimales[static_cast<std::size_t>(exponente - acarreo::kMenorExponente)];
  double producto = magnitud * diez::kPotencias[k];
  if (producto >= 1e15) producto = magnitud * diez::kPotencias[--k];
  // Adding 2^52 leaves no bits for a fraction.
  constexpr double kSinFraccion = 4503599627370496.0;
  double n = (producto + kSinFraccion) - kSinFraccion;
  const double fraccion = producto - n;
  if (std::abs(fraccion) >= 0.4375) [[unlikely]] {
    const double error = acarreo::ErrorProducto(magnitud, diez::kPotencias[k], producto);
    const double falta = std::copysign(0.5, fraccion) - fraccion;
    if (error == falta) return AcarreaTexto(resultado, acarreado);
    if (fraccion > 0 && error > falta) n += 1;
    if (fraccion < 0 && error < falta) n -= 1;
  }
  const double leido = n / diez::kPotencias[k];
  // Amounts nearly always survive; a predicted branch lets the next operation start before the division ends.
  if (leido == magnitud) [[likely]] {
    acarreado = resultado;
  } else {
    acarreado = std::copysign(leido, resultado);
  }
  return true;
}

}  // namespace vel::formula

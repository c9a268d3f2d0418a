#include "Uformula/Acarreo.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "framework/Numeros.h"
#include "framework/PotenciasDiez.h"

namespace vel::formula {
namespace {

constexpr int kMenorExponente = -24;
constexpr int kMayorExponente = 49;

// For each binary exponent the decimals k that take 2^exponent to 15 digits: 1E14 <= 2^exponent * 10^k <
// 1E15.
constexpr auto kDecimales = [] {
  std::array<std::uint8_t, kMayorExponente - kMenorExponente + 1> tabla{};
  for (int e = kMenorExponente; e <= kMayorExponente; ++e) {
    const double potencia = e < 0 ? 1.0 / static_cast<double>(1LL << -e) : static_cast<double>(1LL << e);
    std::uint8_t k = 0;
    while (potencia * diez::kPotencias[k] < 1e14) ++k;
    tabla[static_cast<std::size_t>(e - kMenorExponente)] = k;
  }
  return tabla;
}();

// What a * b has more than its rounded product, exactly (T. J. Dekker, "A floating-point technique for
// extending the available precision", 1971).
double ErrorProducto(double a, double b, double producto) noexcept {
  constexpr double kCorte = 134217729;  // 2^27 + 1: parts the 53 bits in two halves.
  const double a1 = a * kCorte - (a * kCorte - a);
  const double b1 = b * kCorte - (b * kCorte - b);
  const double a2 = a - a1;
  const double b2 = b - b1;
  return ((a1 * b1 - producto) + a1 * b2 + a2 * b1) + a2 * b2;
}

}  // namespace

bool AcarreaTexto(double resultado, double& acarreado) noexcept {
  std::array<char, kMaxFloatText> texto;
  return TryStrToFloat(std::string_view(texto.data(), FloatToChars(resultado, texto)), acarreado);
}

// The text holds n * 10^-k, n being the whole number nearest to value * 10^k, of 15 digits. The product is
// below 2^50 and rounded once: it lies within 1/16 of the true one, so n is certain while the product lies
// within 7/16 of it; nearer to a half, the product's own error decides, and a true half goes the way of the
// text. Where rounding takes the product up to 1E15 or down to 1E14, either count of decimals gives the same
// value.
bool AcarreaLargo(double resultado, double& potencia, double& acarreado) noexcept {
  const double magnitud = std::abs(resultado);
  double producto = magnitud * potencia;
  if (!(producto >= 1e14 && producto < 1e15)) {
    if (magnitud == 0) {
      acarreado = 0;
      return true;
    }
    const int exponente = static_cast<int>(std::bit_cast<std::uint64_t>(magnitud) >> 52) - 1023;
    if (!(magnitud < 1e15) || exponente < kMenorExponente) return AcarreaTexto(resultado, acarreado);
    const std::size_t k = kDecimales[static_cast<std::size_t>(exponente - kMenorExponente)];
    // Up to 2E15: then it is one decimal less.
    const bool sobra = magnitud * diez::kPotencias[k] >= 1e15;
    potencia = diez::kPotencias[k - static_cast<std::size_t>(sobra)];
    producto = magnitud * potencia;
  }
  constexpr double kSinFraccion = 4503599627370496.0;
  double n = (producto + kSinFraccion) - kSinFraccion;
  const double fraccion = producto - n;
  if (std::abs(fraccion) >= 0.4375) [[unlikely]] {
    const double error = ErrorProducto(magnitud, potencia, producto);
    const double falta = std::copysign(0.5, fraccion) - fraccion;
    if (error == falta) return AcarreaTexto(resultado, acarreado);
    if (fraccion > 0 && error > falta) n += 1;
    if (fraccion < 0 && error < falta) n -= 1;
  }
  acarreado = std::copysign(n / potencia, resultado);
  return true;
}

}  // namespace vel::formula

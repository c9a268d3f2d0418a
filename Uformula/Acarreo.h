#pragma once

#include <cmath>
#include <cstddef>

#include "framework/Pares.h"
#include "framework/PotenciasDiez.h"
#include "framework/QuinceDigitos.h"

namespace vel::formula {

/// Between two operations a value travels as text: FloatToStr of the result, converted back. AcarreaTexto
/// does just that. False, `acarreado` left alone, when the text does not convert: infinite, undefined, or so
/// near the largest double that 15 digits round beyond it.
bool AcarreaTexto(double resultado, double& acarreado) noexcept;

namespace acarreo {

/// How near to a decimal a value is that decimal, as a part of it.
inline constexpr double kCerca = 3.5e-16;

}  // namespace acarreo

/// Acarrea of the values that it leaves. `potencia` is a power of ten, the one of the caller's last value:
/// the next mostly has as many digits before the point, so that none is looked for.
bool AcarreaLargo(double resultado, double& potencia, double& acarreado) noexcept;

/// AcarreaTexto without making the text where its outcome is known: n / 10^k for a whole number n of at most
/// 15 digits is the double nearest to that decimal, since both are exact, which is what reading its text
/// gives.
///
/// Here amounts: with a = |value| below 1E9, s = a * 10^6 and n the whole number nearest to s, the text is
/// the decimal n / 10^6 when that lies nearer to the value than half a unit of its 15th digit, which is at
/// least 0.5e-15 of the value; the product errs by 1.2e-16 of it. Zero of either sign is "0" and goes the
/// long way.
inline bool Acarrea(double resultado, double& potencia, double& acarreado) noexcept {
  // Adding 2^52 leaves no bits for a fraction.
  constexpr double kSinFraccion = 4503599627370496.0;
  const double a = std::abs(resultado);
  const double s = a * 1e6;
  const double n = (s + kSinFraccion) - kSinFraccion;
  if (!(s < 1e15 && std::abs(s - n) < acarreo::kCerca * s))
    return AcarreaLargo(resultado, potencia, acarreado);
  const double leido = n / 1e6;
  // Amounts nearly always survive; a predicted branch lets the next operation start before the division ends.
  if (leido == a) [[likely]] {
    acarreado = resultado;
  } else {
    acarreado = std::copysign(leido, resultado);
  }
  return true;
}

/// Acarrea of two values, as above, with any power of ten up to 10^22 in place of 10^6: the greater, the more
/// decimals they may have, and the smaller they must be. What it gives counts where `hechos` holds.
inline pares::Par Acarrea(pares::Par resultado, double escala, pares::Mascara& hechos) noexcept {
  const pares::Par s = resultado * escala;
  const pares::Par n = pares::Entero(s);
  const pares::Par a = pares::Abs(s);
  hechos = pares::De(a < 1e15) & pares::De(pares::Abs(s - n) <= acarreo::kCerca * a);
  return n / escala;
}

/// AcarreaLargo of two values, each by its own power of ten; what `hechos` leaves out AcarreaLargo has. The
/// error of each product always decides (quince::Entero): where only some lanes need it, asking costs more.
inline pares::Par AcarreaLargo(pares::Par resultado, pares::Mascara& hechos) noexcept {
  const pares::Par a = pares::Abs(resultado);
  std::size_t k0 = 0;
  std::size_t k1 = 0;
  const bool conDigitos = quince::Decimales(a[0], k0) && quince::Decimales(a[1], k1);
  const pares::Par potencia{diez::kPotencias[k0], diez::kPotencias[k1]};
  const pares::Par s = a * potencia;
  const pares::Par n = pares::Entero(s);
  const pares::Par error = quince::ErrorProducto(a, potencia, s);
  const pares::Par arriba = 0.5 - (s - n);
  const pares::Par abajo = -0.5 - (s - n);
  const pares::Par m =
      n + pares::UnoOCero(pares::De(error > arriba)) - pares::UnoOCero(pares::De(error < abajo));
  hechos = conDigitos ? pares::De(error != arriba) & pares::De(error != abajo) : pares::Mascara{};
  return pares::ConSignoDe(m / potencia, resultado);
}

inline bool Acarrea(double resultado, double& acarreado) noexcept {
  double potencia = 1;
  return Acarrea(resultado, potencia, acarreado);
}

}  // namespace vel::formula

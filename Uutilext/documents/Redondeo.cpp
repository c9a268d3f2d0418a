#include "Uutilext/documents/Redondeo.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string_view>

#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "framework/PotenciasDiez.h"

namespace vel {
namespace {

static_assert(std::numeric_limits<long double>::digits >= 64,
              "Redondea needs extended precision: 64 mantissa bits or more");

// 10^exponente, correctly rounded while the power is exact above.
long double PotenciaExtendida(int exponente) noexcept {
  const auto absoluto = static_cast<unsigned>(std::abs(static_cast<long long>(exponente)));
  if (absoluto >= diez::kExtendidas.size()) return std::pow(10.0L, static_cast<long double>(exponente));
  return exponente >= 0 ? diez::kExtendidas[absoluto] : 1.0L / diez::kExtendidas[absoluto];
}

double PotenciaNegativa(int decimales) noexcept {
  return decimales <= diez::kMayorExacta ? diez::kInversas[static_cast<std::size_t>(decimales)]
                                         : std::pow(10.0, -decimales);
}

// g_redoTo as its header has it, on decimal texts, for decimales > 0.
double RedondeaPorTexto(double valor, int decimales) {
  std::array<char, kMaxFloatText> buf;
  std::string_view texto(buf.data(), FloatToChars(valor, buf));
  const std::size_t punto = texto.find('.');
  if (punto == std::string_view::npos) return valor;
  if (texto.size() - punto - 1 <= static_cast<std::size_t>(decimales)) return valor;
  const double p = PotenciaNegativa(decimales);
  const double w = valor < 0 ? valor / p - 0.5 : valor / p + 0.5;
  texto = {buf.data(), FloatToChars(w, buf)};
  texto = texto.substr(0, texto.find('.'));
  double entero = 0;
  if (!TryStrToFloat(texto, entero)) {
    throw EConvertError(FloatToStr(valor) + u" es demasiado grande para redondearlo a " +
                        IntToStr(decimales) + u" decimales");
  }
  return entero * p;
}

}  // namespace

double Redondea(double valor, int decimales) noexcept {
  // No double has as many whole digits; the powers of ten would overflow.
  constexpr int kTodasLasCifras = -400;
  if (decimales < kTodasLasCifras) return std::isfinite(valor) ? 0.0 : valor;
  const int s = decimales < 6 ? decimales + 1 : 7;
  long double t = static_cast<long double>(valor) / PotenciaExtendida(-s);
  for (int k = s; k >= decimales; --k) {
    t = t >= 0 ? std::floor(t + 0.5L) : -std::floor(-(t - 0.5L));
    t *= 0.1L;
  }
  return static_cast<double>(t * PotenciaExtendida(1 - decimales));
}

bool Compara(double a, double b) noexcept { return std::abs(a - b) <= 0.000001; }

double Redondea8(double valor, double incremento) noexcept {
  if (Compara(incremento, 0)) return valor;
  return std::floor(valor / incremento + 0.5 + 0.00000001) * incremento;
}

double Redondea4(double valor) noexcept {
  return std::floor(Redondea8(valor, 0.00001) * 1000000 + 0.5) / 1000000;
}

// Rounding reads and cuts decimal texts. For common amounts the same answer follows from arithmetic alone.
//
// Let a = |valor|, s = a * 10^n and m the whole number nearest to s, with a >= 1e-4 and s < 1e12; D is the
// value rounded to 15 significant digits, which is what the text holds (in fixed form, since a >= 1e-4).
// D * 10^n lies within 0.5e-14 * s of the exact product, and s within 2^-53 * s.
//
//  1. Does D have more than n decimals? It has no more exactly when D * 10^n is whole, and since all of the
//     above stays below 0.01 that whole number could only be m.
//     - |s - m| > 1e-14 * s: D * 10^n is not m, so there are more decimals.
//     - otherwise, when m / 10^n (correctly rounded, both operands exact) is the value itself: the value is
//       the double nearest to a decimal of at most 15 digits, so the text is that decimal: no more decimals.
//     - otherwise the text must be looked at.
//  2. What is left of the text of w before its point? |w| >= 0.5 and |w| < 1e12 + 1, so the text has no
//     exponent, and it is w rounded to 15 digits: its whole part is that of w unless the rounding reaches the
//     next whole number, which needs a fraction within 0.5e-14 * |w| of 1. Then the text must be looked at.
double g_redoTo(double valor, int decimales) {
  if (decimales <= 0) return valor;
  const double a = std::abs(valor);
  if (decimales > diez::kMayorExacta || !(a >= 1e-4)) return RedondeaPorTexto(valor, decimales);
  const double potencia = diez::kPotencias[static_cast<std::size_t>(decimales)];
  const double s = a * potencia;
  if (!(s < 1e12)) return RedondeaPorTexto(valor, decimales);
  // Truncation toward zero of s + 0.5: the nearest whole number; the comparison refuses one that is not.
  // NOLINTNEXTLINE(bugprone-incorrect-roundings)
  const auto m = static_cast<double>(static_cast<long long>(s + 0.5));
  if (std::abs(s - m) <= 1e-14 * s) {
    return m / potencia == a ? valor : RedondeaPorTexto(valor, decimales);
  }
  const double p = diez::kInversas[static_cast<std::size_t>(decimales)];
  const double w = a / p + 0.5;
  const auto entero = static_cast<double>(static_cast<long long>(w));
  if (1 - (w - entero) <= 1e-14 * w) return RedondeaPorTexto(valor, decimales);
  return std::copysign(entero * p, valor);
}

}  // namespace vel

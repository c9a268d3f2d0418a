#include "Uutilext/documents/Redondeo.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string_view>

#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel {
namespace {

static_assert(std::numeric_limits<long double>::digits >= 64,
              "Redondea needs extended precision: 64 mantissa bits or more");

// Exact in a long double, and 10^0 to 10^22 in a double too.
constexpr std::array<long double, 28> kPotencias = {
    1e0L,  1e1L,  1e2L,  1e3L,  1e4L,  1e5L,  1e6L,  1e7L,  1e8L,  1e9L,  1e10L, 1e11L, 1e12L, 1e13L,
    1e14L, 1e15L, 1e16L, 1e17L, 1e18L, 1e19L, 1e20L, 1e21L, 1e22L, 1e23L, 1e24L, 1e25L, 1e26L, 1e27L};

// 10^exponente, correctly rounded while the power is exact above.
long double PotenciaExtendida(int exponente) noexcept {
  const auto absoluto = static_cast<unsigned>(std::abs(static_cast<long long>(exponente)));
  if (absoluto >= kPotencias.size()) return std::pow(10.0L, static_cast<long double>(exponente));
  return exponente >= 0 ? kPotencias[absoluto] : 1.0L / kPotencias[absoluto];
}

// The doubles nearest to 10^n and 10^-n.
constexpr int kMaxDecimalesTabla = 22;
constexpr double kPositivas[kMaxDecimalesTabla + 1] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                       1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                       1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr double kNegativas[kMaxDecimalesTabla + 1] = {1e0,   1e-1,  1e-2,  1e-3,  1e-4,  1e-5,  1e-6,  1e-7,
                                                       1e-8,  1e-9,  1e-10, 1e-11, 1e-12, 1e-13, 1e-14, 1e-15,
                                                       1e-16, 1e-17, 1e-18, 1e-19, 1e-20, 1e-21, 1e-22};

double PotenciaNegativa(int decimales) noexcept {
  return decimales <= kMaxDecimalesTabla ? kNegativas[decimales] : std::pow(10.0, -decimales);
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
  if (decimales > kMaxDecimalesTabla || !(a >= 1e-4)) return RedondeaPorTexto(valor, decimales);
  const double diez = kPositivas[decimales];
  const double s = a * diez;
  if (!(s < 1e12)) return RedondeaPorTexto(valor, decimales);
  // Truncation toward zero of s + 0.5: the nearest whole number; the comparison refuses one that is not.
  // NOLINTNEXTLINE(bugprone-incorrect-roundings)
  const auto m = static_cast<double>(static_cast<long long>(s + 0.5));
  if (std::abs(s - m) <= 1e-14 * s) {
    return m / diez == a ? valor : RedondeaPorTexto(valor, decimales);
  }
  const double p = kNegativas[decimales];
  const double w = a / p + 0.5;
  const auto entero = static_cast<double>(static_cast<long long>(w));
  if (1 - (w - entero) <= 1e-14 * w) return RedondeaPorTexto(valor, decimales);
  return std::copysign(entero * p, valor);
}

}  // namespace vel

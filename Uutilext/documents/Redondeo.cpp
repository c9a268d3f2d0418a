#include "Uutilext/documents/Redondeo.h"

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <limits>
#include <string_view>

#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "framework/Pares.h"
#include "framework/PotenciasDiez.h"
#include "framework/QuinceDigitos.h"
#include "platform/PrecisionExtendida.h"

#ifdef __FAST_MATH__
#error "Amounts are exact: this library is not compiled with -ffast-math"
#endif

namespace vel {
namespace {

static_assert(std::numeric_limits<long double>::digits >= 64,
              "Redondea needs extended precision: 64 mantissa bits or more");
static_assert(FLT_EVAL_METHOD == 0,
              "doubles must be computed as doubles: on 32-bit x86 compile with -msse2 -mfpmath=sse");

// 10^exponente, correctly rounded while the power is exact above. Beyond, by products: power functions of the
// systems differ.
long double PotenciaExtendida(int exponente) noexcept {
  constexpr std::size_t kMayor = diez::kExtendidas.size() - 1;
  constexpr long long kInfinita = 5000;
  const auto absoluto =
      static_cast<std::size_t>(std::min(std::abs(static_cast<long long>(exponente)), kInfinita));
  long double potencia = diez::kExtendidas[absoluto % kMayor];
  for (std::size_t i = absoluto / kMayor; i > 0; --i) potencia *= diez::kExtendidas[kMayor];
  return exponente >= 0 ? potencia : 1.0L / potencia;
}

// g_redoTo as its header has it, on decimal texts, for decimales > 0.
double RedondeaPorTexto(double valor, int decimales) {
  std::array<char, kMaxFloatText> buf;
  std::string_view texto(buf.data(), FloatToChars(valor, buf));
  const std::size_t punto = texto.find('.');
  if (punto == std::string_view::npos) return valor;
  if (texto.size() - punto - 1 <= static_cast<std::size_t>(decimales)) return valor;
  // No text has 22 characters after its point: "-1.23456789012345E-300" has 19.
  const double p = diez::kInversas[static_cast<std::size_t>(decimales)];
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
  const PrecisionExtendida guardia;
  const int n = PrecisionExtendida::Fija(decimales);
  const int s = n < 6 ? n + 1 : 7;
  long double t = static_cast<long double>(PrecisionExtendida::Fija(valor)) / PotenciaExtendida(-s);
  for (int k = s; k >= n; --k) {
    t = t >= 0 ? std::floor(t + 0.5L) : -std::floor(-(t - 0.5L));
    t *= 0.1L;
  }
  return PrecisionExtendida::Fija(static_cast<double>(t * PotenciaExtendida(1 - n)));
}

bool Compara(double a, double b) noexcept { return std::abs(a - b) <= 0.000001; }

double Redondea8(double valor, double incremento) noexcept {
  if (Compara(incremento, 0)) return valor;
  return std::floor(valor / incremento + 0.5 + 0.00000001) * incremento;
}

double Redondea4(double valor) noexcept {
  return std::floor(Redondea8(valor, 0.00001) * 1000000 + 0.5) / 1000000;
}

namespace {

// Rounding reads and cuts decimal texts. For nearly all amounts the same answer follows from arithmetic
// alone.
//
// Let a = |valor|, p = 10^-n and s = a * 10^n, both as doubles, m the whole number nearest to s and f its
// distance. D is the value rounded to 15 significant digits, which is what the text holds. s lies within
// 1.2e-16 * s of the exact product, and D * 10^n within 0.5e-14 * s.
//
//  1. D has no more than n decimals, and the value stays:
//     - s < 1e15 and f <= 3.5e-16 * s. The value lies within 4.7e-16 of itself of m / 10^n, a decimal of at
//       most 15 digits: nearer than half a unit of the 15th digit, which is at least 0.5e-15 of it. So D is
//       m / 10^n. Below 1e-4, where the text has an exponent, m has at most n - 4 digits, and what stands
//       after the point, exponent included, is no more than n characters either. Zero is "0".
//     - s >= 1e15 and a < 1e15. None of the 15 digits stands behind the n-th decimal. (With an exponent, n is
//       at least 20, and 18 characters after the point are the most.)
//  2. D has more decimals: f > 2e-14 * s and s < 1e12. D * 10^n is not m then, and since all of the above
//     stays below 0.03 it is no other whole number. What is left of the text of w = a / p + 0.5 before its
//     point, times p, is the answer. With a >= 1e-4 that text has no exponent (0.5 <= w < 1e12 + 1); it is w
//     rounded to 15 digits: the whole part of w, unless the rounding, of at most 0.5e-14 * w, reaches the
//     next whole number.
//     - f < 0.5 - 2e-14 * (s + 1). w lies within 5e-16 * (s + 1) of s + 0.5, which is farther than that and
//       the rounding from a whole number: what is left is m, and no division is needed.
//     - Otherwise w is computed.
//  3. Else, with a >= 1e-4 and below 1e15, the digits of D and of w tell (QuinceDigitos.h): D is N * 10^-k,
//     and the value stays when N is a multiple of 10^(k - n). A quotient of two whole numbers below 1e15 is
//     farther from any whole number that it is not than rounding reaches, so that it tells this, and what is
//     left before the point of w.
//
// The text decides the rest: values below 1e-4 or from 1e15 on, and true halves of the 15th digit.
constexpr double kIgual = 3.5e-16;
constexpr double kMitad = 0.5 - 2e-14;
constexpr double kBanda = 2e-14;
constexpr double kMenorFijo = 1e-4;
constexpr double kTodosLosDigitos = 1e15;
constexpr double kMayorCortado = 1e12;
// Divided by 10^-22 it is still a double.
constexpr double kPuedeDesbordar = 1e280;

// The third way.
double RedondeaPorDigitos(double valor, int decimales) {
  const double a = std::abs(valor);
  const double p = diez::kInversas[static_cast<std::size_t>(decimales)];
  double digitos = 0;
  std::size_t k = 0;
  const auto lee = [&digitos, &k](double x) {
    return quince::Decimales(x, k) && quince::Entero(x, diez::kPotencias[k], digitos);
  };
  if (a < kMenorFijo || !lee(a)) return RedondeaPorTexto(valor, decimales);
  if (k <= static_cast<std::size_t>(decimales)) return valor;
  const double unidades = digitos / diez::kPotencias[k - static_cast<std::size_t>(decimales)];
  if (std::floor(unidades) == unidades) return valor;
  if (!lee(a / p + 0.5)) return RedondeaPorTexto(valor, decimales);
  return std::copysign(std::floor(digitos / diez::kPotencias[k]) * p, valor);
}

// The end of the second way, for a value beside a half.
double RedondeaPorMitad(double valor, int decimales) {
  const double p = diez::kInversas[static_cast<std::size_t>(decimales)];
  const double w = std::abs(valor) / p + 0.5;
  const auto entero = static_cast<double>(static_cast<long long>(w));
  if (1 - (w - entero) <= kBanda * w) return RedondeaPorDigitos(valor, decimales);
  return std::copysign(entero * p, valor);
}

// The first way and the second without its division, for two values at a time; `hechos` tells for which.
inline pares::Par Redondea(pares::Par valor, double potencia, double p, pares::Mascara& hechos) noexcept {
  const pares::Par a = pares::Abs(valor);
  const pares::Par s = a * potencia;
  const pares::Par m = pares::Entero(s);
  const pares::Par f = pares::Abs(s - m);
  const pares::Par banda = kBanda * s;
  const pares::Mascara queda = pares::De(f <= kIgual * s);
  const pares::Mascara cambia =
      pares::De(f > banda) & pares::De(f + banda < kMitad) & pares::De(a >= kMenorFijo);
  hechos = (queda | cambia) & pares::De(s < kMayorCortado);
  return pares::Elige(queda, valor, pares::ConSignoDe(m * p, valor));
}

bool HayMayores(std::span<const double> valores, double limite) noexcept {
  pares::Mascara hay{};
  std::size_t i = 0;
  for (; i + 2 <= valores.size(); i += 2) hay |= pares::De(pares::Abs(pares::Carga(&valores[i])) > limite);
  return pares::Lado(hay, 0) || pares::Lado(hay, 1) || (i < valores.size() && std::abs(valores[i]) > limite);
}

}  // namespace

double g_redoTo(double valor, int decimales) {
  if (decimales <= 0) return valor;
  const double a = std::abs(valor);
  if (decimales > diez::kMayorExacta) return RedondeaPorTexto(valor, decimales);
  const double s = a * diez::kPotencias[static_cast<std::size_t>(decimales)];
  if (!(s < kTodosLosDigitos)) return a < kTodosLosDigitos ? valor : RedondeaPorTexto(valor, decimales);
  // Truncation toward zero of s + 0.5: the nearest whole number, or farther than any limit here allows.
  // NOLINTNEXTLINE(bugprone-incorrect-roundings)
  const auto m = static_cast<double>(static_cast<long long>(s + 0.5));
  const double f = std::abs(s - m);
  if (f <= kIgual * s) return valor;
  if (!(f > kBanda * s && s < kMayorCortado && a >= kMenorFijo)) return RedondeaPorDigitos(valor, decimales);
  if (!(f + kBanda * s < kMitad)) return RedondeaPorMitad(valor, decimales);
  return std::copysign(m * diez::kInversas[static_cast<std::size_t>(decimales)], valor);
}

void g_redoTo(std::span<const double> valores, int decimales, std::span<double> salida) {
  if (valores.size() != salida.size()) {
    throw EInvalidOperation(u"La salida del redondeo no tiene tantos lugares como valores hay");
  }
  // What can overflow does so before the first value is written.
  if (decimales > diez::kMayorExacta || HayMayores(valores, kPuedeDesbordar)) {
    for (const double valor : valores) g_redoTo(valor, decimales);
  }
  if (decimales <= 0 || decimales > diez::kMayorExacta) {
    std::transform(valores.begin(), valores.end(), salida.begin(),
                   [decimales](double valor) { return g_redoTo(valor, decimales); });
    return;
  }
  const double potencia = diez::kPotencias[static_cast<std::size_t>(decimales)];
  const double p = diez::kInversas[static_cast<std::size_t>(decimales)];
  // By blocks: what takes a call stands outside of the loop, and a column may be rounded in its place.
  constexpr std::size_t kBloque = 128;
  std::array<double, kBloque> redondos;
  std::array<pares::Mascara, kBloque / 2> hechos;
  while (valores.size() > 1) {
    const std::size_t cuantos = std::min(valores.size() / 2 * 2, kBloque);
    pares::Mascara todos = ~pares::Mascara{};
    for (std::size_t i = 0; i < cuantos; i += 2) {
      pares::Mascara& h = hechos[i / 2];
      pares::Guarda(Redondea(pares::Carga(&valores[i]), potencia, p, h), &redondos[i]);
      todos &= h;
    }
    for (std::size_t i = 0; !pares::Ambos(todos) && i < cuantos; ++i) {
      if (!pares::Lado(hechos[i / 2], i % 2)) redondos[i] = g_redoTo(valores[i], decimales);
    }
    std::copy_n(redondos.begin(), cuantos, salida.begin());
    valores = valores.subspan(cuantos);
    salida = salida.subspan(cuantos);
  }
  if (!valores.empty()) salida.front() = g_redoTo(valores.front(), decimales);
}

}  // namespace vel

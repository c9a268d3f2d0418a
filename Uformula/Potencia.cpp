#include "Uformula/Potencia.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>

#include "framework/Entero128.h"

// a^y is 2^t with t = y * log2(a), computed in whole numbers alone: they have the same bits on every
// processor, whatever the state of its floating-point unit. Tables and series as in P. T. P. Tang,
// "Table-driven implementation of the logarithm function in IEEE floating-point arithmetic", 1990, and in his
// paper on the exponential function, 1989.
//
//  1. a = 2^e * m; a table has c, near 1 / m, and -log2(c). With z = m * c - 1, which is exact in 64 bits and
//     below 2^-7.7, log2(a) = e - log2(c) + log2(1 + z), the last by its series. Where e and log2(c) are
//     zero, a is near 1; z is then shifted up, so that the logarithm has all its bits.
//  2. t = n + j / 128 + u, and |u| is at most 2^-8: 2^t is 2^n * 2^(j / 128) * 2^u, of a table and a series.
//
// This is done up to twice (A. Ziv, "Fast evaluation of elementary mathematical functions with correctly
// rounded last bit", 1991), each time with the question whether its error could change the rounding:
//
//  - The short way errs by less than 6 * 2^-62: 4 where the last product and its factors are cut, less than 1
//    by the series of the logarithm, which leaves out 2^-73 of it, and less than 1 by u, cut at 2^-64. Once
//    in a hundred times that is too much.
//  - The long way errs by less than 2^-103: 2^-115 of the logarithm, which t makes 2^-105, and 2^-107 in the
//    series of 2^u. That is too much only where the power is as near as this to the middle of two doubles.
//    Those that are a middle, as 3^34 is, are rounded to even; so would be one that is not quite, if ever a
//    program meets it.
//
// A fraction is a whole number of units of 2^-126, or of 2^-62 where 64 bits are enough; other units are
// named.
namespace vel::formula {
namespace {

using exacto::Entero128;

constexpr int kFraccion = 126;
constexpr int kFraccionCorta = 62;
constexpr Entero128 kUno = Entero128{1} << kFraccion;

constexpr std::int64_t Alto(Entero128 a) noexcept { return static_cast<std::int64_t>(a >> 64); }

// The lower 64 bits but the last: in 64 bits they would look like a sign.
constexpr std::int64_t Bajo(Entero128 a) noexcept {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) >> 1);
}

// a * b / 2^64.
constexpr std::int64_t Por(std::int64_t a, std::int64_t b) noexcept { return Alto(Entero128{a} * b); }
constexpr Entero128 Por(Entero128 a, std::int64_t b) noexcept {
  // cppcheck-suppress shiftTooManyBitsSigned
  return Entero128{Alto(a)} * b + ((Entero128{Bajo(a)} * b) >> 63);
}

// The product of two fractions, if below 2.
constexpr Entero128 Multiplica(Entero128 a, Entero128 b) noexcept {
  return ((Entero128{Alto(a)} * Alto(b)) << 2) +
         ((Entero128{Bajo(a)} * Alto(b) + Entero128{Bajo(b)} * Alto(a)) >> 61);
}

// 1 / n.
constexpr auto kReciprocos = []() {
  std::array<Entero128, 80> tabla{};
  for (std::size_t n = 1; n < tabla.size(); ++n) tabla[n] = kUno / static_cast<std::int64_t>(n);
  return tabla;
}();

// ln(a / b) for a / b from 1/2 to 2: twice w + w^3 / 3 + w^5 / 5 ..., w being
// (a - b) / (a + b).
constexpr Entero128 Ln(std::int64_t a, std::int64_t b) noexcept {
  const Entero128 dividendo = Entero128{a - b} << 63;
  const Entero128 w = ((dividendo / (a + b)) << 63) + ((dividendo % (a + b)) << 63) / (a + b);
  const Entero128 cuadrado = Multiplica(w, w);
  Entero128 suma = 0;
  for (std::size_t n = kReciprocos.size(); n > 1; n -= 2)
    suma = kReciprocos[n - 1] + Multiplica(suma, cuadrado);
  return Multiplica(w, suma) << 1;
}

constexpr Entero128 kLn2 = Ln(2, 1);

// 1 / ln(2), by Newton's method.
constexpr Entero128 kLog2e = []() {
  Entero128 x = kUno + (kUno >> 1);
  for (int i = 0; i < 6; ++i) x += Multiplica(x, kUno - Multiplica(x, kLn2));
  return x;
}();

// From 1 to 2 the tables have so many rows; those of logarithms have one for 2 as well.
constexpr std::size_t kPartes = 128;
// From this one on, the square root of 2, m is halved, so that the logarithm of what is a little below a
// power of two is small as well.
constexpr std::size_t kRaizDeDos = 53;

// The 53 bits of m times `factor` are m * c in units of 2^-64; `logaritmo` is -log2(c).
struct Fila {
  std::uint64_t factor;
  Entero128 logaritmo;
};
constexpr auto kFilas = []() {
  std::array<Fila, kPartes + 1> tabla{};
  for (std::size_t i = 0; i <= kPartes; ++i) {
    const bool mitad = i >= kRaizDeDos;
    // In units of 2^-11.
    const std::uint64_t c = (mitad ? 4096 : 2048) * kPartes / (kPartes + i);
    tabla[i] = {mitad ? c : 2 * c, Multiplica(kLog2e, Ln(2048, static_cast<std::int64_t>(c)))};
  }
  return tabla;
}();

// log2(1 + z) / z = log2(e) * (1 - z / 2 + z^2 / 3 ...).
constexpr auto kSerieLogaritmo = []() {
  std::array<Entero128, 14> tabla{};
  for (std::size_t k = 0; k < tabla.size(); ++k) {
    tabla[k] = Multiplica(kLog2e, kReciprocos[k + 1]);
    if (k % 2 == 1) tabla[k] = -tabla[k];
  }
  return tabla;
}();

// 2^u = 1 + u * ln(2) + (u * ln(2))^2 / 2! ...
constexpr auto kSeriePotencia = []() {
  std::array<Entero128, 16> tabla{kUno};
  for (std::size_t k = 1; k < tabla.size(); ++k)
    tabla[k] = Multiplica(Multiplica(tabla[k - 1], kLn2), kReciprocos[k]);
  return tabla;
}();

// serie[0] + serie[1] * z + ... of so many terms, z in units of 2^-64. The first `Largos` terms have all
// bits.
template <std::size_t Largos, std::size_t Terminos, std::size_t Cuantos>
constexpr Entero128 Suma(const std::array<Entero128, Cuantos>& serie, std::int64_t z) noexcept {
  static_assert(Largos > 0 && Largos < Terminos && Terminos <= Cuantos);
  std::int64_t corta = 0;
  for (std::size_t k = Terminos; k-- > Largos;) corta = Alto(serie[k]) + Por(corta, z);
  Entero128 suma = serie[Largos - 1] + Entero128{corta} * z;
  for (std::size_t k = Largos - 1; k-- > 0;) suma = serie[k] + Por(suma, z);
  return suma;
}

// 2^(j / 128).
constexpr auto kRaices = []() {
  std::array<Entero128, kPartes> tabla{kUno};
  const Entero128 razon = Suma<15, 16>(kSeriePotencia, std::int64_t{1} << 57);
  for (std::size_t j = 1; j < tabla.size(); ++j) tabla[j] = Multiplica(tabla[j - 1], razon);
  return tabla;
}();

// A double above zero: `mantisa` * 2^(`exponente` - 52), with 2^52 <= `mantisa` < 2^53.
struct Partes {
  std::uint64_t mantisa;
  int exponente;
};
Partes Separa(double a) noexcept {
  constexpr std::uint64_t kPrimero = std::uint64_t{1} << 52;
  const auto bits = std::bit_cast<std::uint64_t>(a);
  const int exponente = static_cast<int>(bits >> 52);
  if (exponente != 0) [[likely]]
    return {(bits & (kPrimero - 1)) | kPrimero, exponente - 1023};
  const int falta = std::countl_zero(bits) - 11;
  return {bits << falta, -1022 - falta};
}

// `valor` * 2^-`fraccion`.
struct Fijo {
  Entero128 valor;
  int fraccion;
};

// log2(a), for a other than 1.
template <std::size_t Largos, std::size_t Terminos>
Fijo Logaritmo(double a) noexcept {
  auto [mantisa, e] = Separa(a);
  constexpr int kResto = 45;
  const auto i = static_cast<std::size_t>((mantisa + (std::uint64_t{1} << (kResto - 1))) >> kResto) - kPartes;
  if (i >= kRaizDeDos) ++e;
  // m * c, whose whole part, 1, has no place in 64 bits.
  const auto z = static_cast<std::int64_t>(mantisa * kFilas[i].factor);
  const Entero128 serie = Suma<Largos, Terminos>(kSerieLogaritmo, z);
  if (e != 0) {
    constexpr int kEnteros = 10;
    return {(Entero128{e} << (kFraccion - kEnteros)) + ((kFilas[i].logaritmo + Por(serie, z)) >> kEnteros),
            kFraccion - kEnteros};
  }
  if (i != 0 && i != kPartes) return {kFilas[i].logaritmo + Por(serie, z), kFraccion};
  const int ceros = std::countl_zero(static_cast<std::uint64_t>(std::abs(z))) - 1;
  return {Por(serie, z << ceros), kFraccion + ceros};
}

struct Redondeo {
  double valor;
  bool seguro;
};

// The double nearest to r * 2^(n - fraccion), where r * 2^-fraccion is from 1/2 to 2 and r errs by less than
// `error`. It is not sure when a middle of two doubles lies as near to r; that is then taken for the power.
template <class Entero>
Redondeo Redondea(Entero r, int fraccion, Entero error, int n) noexcept {
  if (r >> fraccion == 0) {
    --fraccion;
    --n;
  }
  if (n > 1023) return {std::numeric_limits<double>::infinity(), true};
  // Doubles below 2^-1022 have so many bits less.
  const int faltan = std::max(0, -1022 - n);
  if (faltan > 54) return {0, true};
  const int sobran = fraccion - 52 + faltan;
  const auto mitades = static_cast<std::uint64_t>((r + error) >> (sobran - 1));
  const bool seguro = mitades == static_cast<std::uint64_t>((r - error) >> (sobran - 1)) || mitades % 2 == 0;
  std::uint64_t mantisa = (mitades + 1) / 2;
  if (!seguro) mantisa -= mantisa % 2;
  // The first bit of a normal one adds 1 to the exponent; so does one that rounding carries, up to infinity.
  return {std::bit_cast<double>((static_cast<std::uint64_t>(std::max(n + 1022, 0)) << 52) + mantisa), seguro};
}

// a^y, for a other than 1 and y other than 0.
template <bool Exacta>
Redondeo Eleva(double a, double y) noexcept {
  auto [logaritmo, fraccion] = Exacta ? Logaritmo<7, 14>(a) : Logaritmo<2, 9>(a);
  const int ceros =
      std::countl_zero(static_cast<std::uint64_t>(Alto(logaritmo < 0 ? -logaritmo : logaritmo))) - 1;
  const auto [mantisa, e] = Separa(std::abs(y));
  const auto factor = static_cast<std::int64_t>(mantisa << 10);
  const Entero128 producto = Por(logaritmo << ceros, y < 0 ? -factor : factor);
  // In units of 2^-113; the product is of 124 to 126 bits.
  constexpr int kFraccionT = 113;
  const int sobran = fraccion + ceros - kFraccionT - e - 2;
  if (sobran < 0) return {producto > 0 ? std::numeric_limits<double>::infinity() : 0, true};
  const Entero128 t = producto >> std::min(sobran, 127);

  constexpr int kFraccionJ = kFraccionT - 7;
  const auto j = static_cast<std::int64_t>((t + (Entero128{1} << (kFraccionJ - 1))) >> kFraccionJ);
  const int n = static_cast<int>(j >> 7);
  const Entero128 raiz = kRaices[static_cast<std::size_t>(j & 127)];
  const Entero128 resto = t - (Entero128{j} << kFraccionJ);
  constexpr int kSobranU = kFraccionT - 64;
  const auto u = static_cast<std::int64_t>(resto >> kSobranU);
  if constexpr (!Exacta) {
    const std::int64_t serie = Alto(Suma<1, 7>(kSeriePotencia, u));
    const auto r = static_cast<std::int64_t>((Entero128{Alto(raiz)} * serie) >> kFraccionCorta);
    return Redondea<std::int64_t>(r, kFraccionCorta, 6, n);
  } else {
    Entero128 r = Multiplica(raiz, Suma<6, 10>(kSeriePotencia, u));
    // What u leaves, v < 2^-64: 2^v = 1 + v * ln(2).
    const auto v = static_cast<std::int64_t>(resto - (Entero128{u} << kSobranU));
    r += (Entero128{Por(Alto(r), Alto(kLn2))} * v) >> (kFraccionT + 60 - kFraccion);
    return Redondea(r, kFraccion, kUno >> 102, n);
  }
}

}  // namespace

double Potencia(double base, double exponente) noexcept {
  if (exponente == 0 || base == 1) return 1;
  if (std::isnan(base) || std::isnan(exponente)) return base + exponente;
  const double a = std::abs(base);
  double signo = 1;
  if (std::signbit(base)) {
    const bool entero = std::trunc(exponente) == exponente;
    if (!entero && a > 0 && !std::isinf(a)) return std::numeric_limits<double>::quiet_NaN();
    if (entero && std::trunc(exponente / 2) * 2 != exponente) signo = -1;
  }
  if (a == 1) return signo;
  if (a == 0 || std::isinf(a) || std::isinf(exponente))
    return (a > 1) == (exponente > 0) ? signo * std::numeric_limits<double>::infinity() : signo * 0;
  const Redondeo rapida = Eleva<false>(a, exponente);
  if (rapida.seguro) [[likely]]
    return signo * rapida.valor;
  return signo * Eleva<true>(a, exponente).valor;
}

}  // namespace vel::formula

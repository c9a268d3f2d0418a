#pragma once

// Exact decimals as whole numbers of 128 bits, for the fiscal summary.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "Ucalculocfdi/TMontoFiscal.h"
#include "framework/Entero128.h"

namespace vel::exacto {

inline constexpr std::int64_t kDiez[] = {
    1,          10,          100,           1'000,          10'000,          100'000,          1'000'000,
    10'000'000, 100'000'000, 1'000'000'000, 10'000'000'000, 100'000'000'000, 1'000'000'000'000};
inline constexpr std::int64_t kMillon = 1'000'000;

constexpr std::int64_t Diez(int exponente) { return kDiez[static_cast<std::size_t>(exponente)]; }

/// Raises EInvalidOperation: the amount does not fit in what can be printed.
[[noreturn]] void FallaTamano();

constexpr bool Cabe64(Entero128 v) { return v >= 0 && v <= std::numeric_limits<std::int64_t>::max(); }

/// Whole part of n / d for n >= 0 and d > 0; the common case avoids the long division.
constexpr Entero128 Divide(Entero128 n, Entero128 d) {
  if (Cabe64(n) && Cabe64(d)) return static_cast<std::int64_t>(n) / static_cast<std::int64_t>(d);
  return n / d;
}

/// n / d rounded half up, for n >= 0 and d > 0.
constexpr Entero128 DivideRedondea(Entero128 n, Entero128 d) { return Divide(n + d / 2, d); }

/// n / d rounded up, for n >= 0 and d > 0.
constexpr Entero128 DivideSube(Entero128 n, Entero128 d) { return n == 0 ? 0 : Divide(n - 1, d) + 1; }

constexpr int Bits(Entero128 v) {
  const auto alto = static_cast<std::uint64_t>(v >> 64);
  return alto != 0 ? 64 + static_cast<int>(std::bit_width(alto))
                   : static_cast<int>(std::bit_width(static_cast<std::uint64_t>(v)));
}

/// a x b, both >= 0; raises EInvalidOperation when it might not fit.
inline Entero128 Multiplica(Entero128 a, Entero128 b) {
  if (Bits(a) + Bits(b) > 127) FallaTamano();
  return a * b;
}

inline std::int64_t A64(Entero128 v) {
  if (!Cabe64(v)) FallaTamano();
  return static_cast<std::int64_t>(v);
}

inline TMontoFiscal Monto(Entero128 unidades, int decimales) { return {A64(unidades), decimales}; }

/// The amount in units of 10^-decimales, rounded half away from zero.
std::int64_t Unidades(const TMontoFiscal& monto, int decimales);

/// The millionths of a number, rounded to six decimals as the engine rounds it (g_redoTo) and then taken by
/// its decimal text of 15 digits: 0.1 is 100000, not what its bits say. The number is finite and below 1E13,
/// where its text has no exponent.
std::int64_t Millonesimas(double valor);

/// The number in units of 10^-decimales (0 to 6), its decimal text rounded half away from zero.
std::int64_t DeReal(double valor, int decimales);

}  // namespace vel::exacto

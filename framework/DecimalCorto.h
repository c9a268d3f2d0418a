#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <string>

namespace vel {

/// Appends the text that std::to_chars gives a number, for the numbers that amounts, rates and quantities
/// are: those of at most six decimals below a thousand million. False, with nothing appended, for all others.
///
/// Why it is the same text: with a = |value|, s = a * 10^6 and m the whole number next to s, m / 10^6 == a
/// says that a is the double nearest to the decimal m / 10^6, since both operands are exact and the quotient
/// is rounded once. That decimal has at most 15 digits, and no two decimals of at most 15 digits share a
/// double; so no shorter text reads back to a, and the shortest one is m / 10^6 without the zeros at its end.
/// std::to_chars writes it with an exponent only where that is shorter: whole numbers that end in five zeros
/// or more, and numbers below 0.001. Those are left to it.
inline bool AgregaDecimalCorto(std::string& salida, double valor) {
  constexpr double kMillon = 1e6;
  constexpr std::uint64_t kUnidad = 1'000'000;
  constexpr std::uint64_t kPrimero = 1'000;
  constexpr std::uint64_t kMuchosCeros = 100'000;
  const double a = std::abs(valor);
  // Also false for what is no number.
  if (!(a < 1e9)) return false;
  // The comparison refuses an m that is not the nearest.
  // NOLINTNEXTLINE(bugprone-incorrect-roundings)
  const auto m = static_cast<std::uint64_t>(static_cast<std::int64_t>(a * kMillon + 0.5));
  if (static_cast<double>(m) / kMillon != a || m < kPrimero) return false;
  std::uint64_t entero = m / kUnidad;
  std::uint64_t fraccion = m % kUnidad;
  if (fraccion == 0 && entero % kMuchosCeros == 0) return false;

  // Sign, nine digits, point and six digits, made from the last to the first.
  std::array<char, 17> texto;
  char* p = texto.data() + texto.size();
  if (fraccion != 0) {
    int lugares = 6;
    for (; fraccion % 10 == 0; fraccion /= 10) --lugares;
    for (; lugares > 0; --lugares, fraccion /= 10) *--p = static_cast<char>('0' + fraccion % 10);
    *--p = '.';
  }
  do {
    *--p = static_cast<char>('0' + entero % 10);
    entero /= 10;
  } while (entero != 0);
  if (valor < 0) *--p = '-';
  salida.append(p, texto.data() + texto.size());
  return true;
}

}  // namespace vel

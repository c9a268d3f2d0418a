#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vel::formula {

/// Operators in the order in which they are folded. Existing formulas rely on it: division before
/// multiplication, subtraction before addition, the two-character comparisons before everything.
enum class Operador : std::uint8_t {
  distinto,
  menorIgual,
  mayorIgual,
  entre,
  por,
  menos,
  mas,
  igual,
  mayor,
  menor
};

inline constexpr auto kOperadores =
    std::to_array<std::u16string_view>({u"<>", u"<=", u">=", u"/", u"*", u"-", u"+", u"=", u">", u"<"});
static_assert(kOperadores.size() == static_cast<std::size_t>(Operador::menor) + 1);

constexpr std::u16string_view Texto(Operador o) noexcept { return kOperadores[static_cast<std::size_t>(o)]; }

/// Bit of an operator in a set: the lowest is folded first.
constexpr std::uint32_t Bit(Operador o) noexcept { return 1u << static_cast<unsigned>(o); }

/// For each character from "*" to ">", the bit of the operator that it is alone.
inline constexpr auto kBitsDe = []() {
  std::array<std::uint16_t, U'>' - U'*' + 1> bits{};
  for (std::size_t i = 0; i < kOperadores.size(); ++i) {
    const std::u16string_view o = kOperadores[i];
    if (o.size() == 1) bits[o.front() - std::size_t{U'*'}] = static_cast<std::uint16_t>(1u << i);
  }
  return bits;
}();

/// Bit of the operator that a character alone is; 0 for any other character.
constexpr std::uint32_t BitDe(char32_t c) noexcept {
  const std::uint32_t lugar = c - U'*';
  return lugar < kBitsDe.size() ? kBitsDe[lugar] : 0;
}

constexpr bool EsOperador(char32_t c) noexcept { return BitDe(c) != 0; }

/// Applies any operator but "=", which is not evaluated.
constexpr double Aplica(Operador o, double a, double b) noexcept {
  switch (o) {
    case Operador::distinto:
      return a != b;
    case Operador::menorIgual:
      return a <= b;
    case Operador::mayorIgual:
      return a >= b;
    case Operador::entre:
      return a / b;
    case Operador::por:
      return a * b;
    case Operador::menos:
      return a - b;
    case Operador::mas:
      return a + b;
    case Operador::mayor:
      return a > b;
    case Operador::menor:
      return a < b;
    case Operador::igual:
      break;
  }
  return 0;
}

}  // namespace vel::formula

#pragma once

#include <array>
#include <cstddef>

// The powers of ten that arithmetic on amounts stands on. Each is exact, so that a product or a quotient with
// one of them is rounded once.
namespace vel::diez {

/// 10^0, 10^1 and so on as far as they go; every product on the way is exact in the type.
template <typename Numero, std::size_t Cuantas>
constexpr std::array<Numero, Cuantas> Potencias() {
  std::array<Numero, Cuantas> tabla{};
  Numero potencia = 1;
  for (Numero& lugar : tabla) {
    lugar = potencia;
    potencia *= 10;
  }
  return tabla;
}

/// A double's 53 bits hold 5^22 and no higher power of five; a long double's 64 bits hold 5^27.
inline constexpr int kMayorExacta = 22;
inline constexpr auto kPotencias = Potencias<double, kMayorExacta + 1>();
inline constexpr auto kExtendidas = Potencias<long double, 28>();

/// The doubles nearest to 10^-n: quotients of exact numbers are rounded once.
inline constexpr auto kInversas = []() {
  std::array<double, kPotencias.size()> tabla{};
  for (std::size_t n = 0; n < tabla.size(); ++n) tabla[n] = 1 / kPotencias[n];
  return tabla;
}();

static_assert(kPotencias[22] == 1e22 && kExtendidas[27] == 1e27L && kInversas[6] == 1e-6 &&
              kInversas[22] == 1e-22);

}  // namespace vel::diez

#include "Uformula/Acarreo.h"

#include <array>
#include <cstddef>
#include <string_view>

#include "framework/Numeros.h"
#include "framework/PotenciasDiez.h"
#include "framework/QuinceDigitos.h"

namespace vel::formula {

bool AcarreaTexto(double resultado, double& acarreado) noexcept {
  std::array<char, kMaxFloatText> texto;
  return TryStrToFloat(std::string_view(texto.data(), FloatToChars(resultado, texto)), acarreado);
}

// The text holds n * 10^-k of 15 digits (QuinceDigitos.h), and n / 10^k is the double nearest to that.
bool AcarreaLargo(double resultado, double& potencia, double& acarreado) noexcept {
  const double magnitud = std::abs(resultado);
  if (magnitud == 0) {
    acarreado = 0;
    return true;
  }
  const double producto = magnitud * potencia;
  if (!(producto >= 1e14 && producto < 1e15)) {
    std::size_t k = 0;
    if (!quince::Decimales(magnitud, k)) return AcarreaTexto(resultado, acarreado);
    potencia = diez::kPotencias[k];
  }
  double n = 0;
  if (!quince::Entero(magnitud, potencia, n)) return AcarreaTexto(resultado, acarreado);
  acarreado = std::copysign(n / potencia, resultado);
  return true;
}

}  // namespace vel::formula

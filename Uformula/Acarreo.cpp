#include "Uformula/Acarreo.h"

#include <string_view>

#include "framework/Numeros.h"

namespace vel::formula {

bool AcarreaTexto(double resultado, double& acarreado) noexcept {
  std::array<char, kMaxFloatText> texto;
  return TryStrToFloat(std::string_view(texto.data(), FloatToChars(resultado, texto)), acarreado);
}

}  // namespace vel::formula

#include "Uutilext/text/Listas.h"

#include <algorithm>
#include <utility>

#include "framework/Numeros.h"

namespace vel {

void DivideCadena(UnicodeString& destino, UnicodeString& origen, int limite) {
  const UnicodeString textoLimite = IntToStr(limite);
  UnicodeString junto = destino;
  std::size_t tomado = 0;
  while (junto < textoLimite && tomado < origen.size()) {
    const std::size_t coma = std::min(origen.find(u',', tomado), origen.size());
    const std::size_t largo = coma - tomado;
    if (static_cast<long long>(junto.size()) + static_cast<long long>(largo) > limite) break;
    if (!junto.empty()) junto += u',';
    junto.append(origen, tomado, largo);
    tomado = coma + 1;
  }
  origen.erase(0, tomado);
  destino = std::move(junto);
}

int CuentaVecesStr(std::u16string_view buscado, std::u16string_view texto) noexcept {
  int veces = 0;
  for (std::size_t p = Pos(buscado, texto); p != 0; p = Pos(buscado, texto)) {
    texto.remove_prefix(p - 1 + buscado.size());
    ++veces;
  }
  return veces;
}

}  // namespace vel

#pragma once

#include <algorithm>
#include <cstddef>

#include "framework/Texto.h"

namespace fuzz {

/// The part in which two texts differ: from `inicio` to `finAntes` of the first one.
struct Diferencia {
  std::size_t inicio = 0;
  std::size_t finAntes;

  Diferencia(const vel::UnicodeString& antes, const vel::UnicodeString& despues) : finAntes(antes.size()) {
    const std::size_t corto = std::min(antes.size(), despues.size());
    while (inicio < corto && antes[inicio] == despues[inicio]) ++inicio;
    for (std::size_t n = despues.size();
         finAntes > inicio && n > inicio && antes[finAntes - 1] == despues[n - 1]; --n)
      --finAntes;
  }
};

}  // namespace fuzz

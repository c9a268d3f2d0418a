#pragma once

#include <cstddef>

#include "Ucalculocfdi/TCalculoCFDI.h"

namespace vel {

/// An entry of a tax list: the lines of one rate. Each number is the one that its text in the list reads
/// back to, because the lists accumulate through their texts.
struct TCalculoCFDI::Gravado {
  double tasa;
  double base;
  double impuesto;
};

template <typename Trabajo>
void TCalculoCFDI::ConListas(const Trabajo& trabajo) {
  const auto cada = [this](void (TCalculoCFDI::*paso)(std::size_t)) {
    for (std::size_t k = 0; k < kImpuestos; ++k) (this->*paso)(k);
  };
  cada(&TCalculoCFDI::LeeLista);
  try {
    trabajo();
  } catch (...) {
    cada(&TCalculoCFDI::EscribeLista);
    throw;
  }
  cada(&TCalculoCFDI::EscribeLista);
}

}  // namespace vel

#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <new>
#include <tuple>
#include <vector>

#include "Ucalculocfdi/CamposPartida.h"
#include "Ucalculocfdi/TCalculoCFDI.h"
#include "framework/Excepciones.h"

namespace vel {

/// An entry of a tax list: the lines of one rate. Each number is the one that its text in the list reads
/// back to, because the lists accumulate through their texts.
struct TCalculoCFDI::Gravado {
  double tasa;
  double base;
  double impuesto;
};

struct TCalculoCFDI::Interno {
  /// What the lists hold, as numbers and in their order, while an operation works on them.
  std::array<std::vector<Gravado>, kImpuestos> gravados;
  /// The fields of the lines, while their structure stays.
  std::unique_ptr<CamposBuscados> campos;
};

template <typename Trabajo>
void TCalculoCFDI::ConListas(const Trabajo& trabajo) {
  for (std::size_t k = 0; k < kImpuestos; ++k) LeeLista(k);
  auto montos = std::tie(PorcDescuento, TotalDescuento, Subtotal, TotalImpuestos, TotalImpuestosRedondeado,
                         SumaDescuentos, DecimalesTotales, DecimalesPartida, ImpuestoPartida,
                         DescuentoPartida, TotalImpuesto);
  const auto antes = std::apply([](const auto&... monto) { return std::make_tuple(monto...); }, montos);
  try {
    try {
      trabajo();
    } catch (const Exception&) {
      // What was computed before a line that is wrong stays.
      EscribeListas(0, kImpuestos);
      throw;
    }
    EscribeListas(0, kImpuestos);
  } catch (const std::bad_alloc&) {
    montos = antes;
    throw;
  }
}

}  // namespace vel

#pragma once

#include <cstddef>
#include <string_view>

#include "Ucalculocfdi/Partida.h"
#include "Ucalculocfdi/TCalculoCFDI.h"
#include "Uutilext/documents/Redondeo.h"

namespace vel::cascada {

// The steps of one line, written once for documents, which read fields and add to totals as they go, and for
// lines that stand alone. A Linea gives Cantidad(), Precio(), Cambio(), Codigo(i), Tasa(i) and ConCuota(i)
// in the order in which the steps ask, so that a missing field is complained of when it is needed.

using Impuestos = TCalculoCFDI::Impuestos;
using Descuentos = TCalculoCFDI::Descuentos;

/// Taxes with one of two base codes do not apply.
constexpr bool Aplica(int codigo) noexcept { return codigo != 4 && codigo != TDatosPartida::kNoAplica; }

/// A line of values, as the steps ask for it.
struct LineaSola {
  const TDatosPartida& datos;

  double Cantidad() const { return datos.Cantidad; }
  double Precio() const { return datos.Precio; }
  double Cambio() const { return datos.TipoCambio; }
  int Codigo(std::size_t i) const { return datos.Codigo[i]; }
  double Tasa(std::size_t i) const { return datos.Tasa[i]; }
  bool ConCuota(std::size_t i) const { return datos.ImpuestoConCuota == static_cast<int>(i) + 1; }
};

/// What a line's amount is made of, each rounded when it was read.
struct Factores {
  double cantidad = 0;
  double precio = 0;
  double cambio = 1;

  double Importe(int decimales) const { return g_redoTo(cantidad * precio / cambio, decimales); }
};

template <typename Linea>
Factores LeeFactores(const Linea& linea, bool ignoraTipoCambio, int decimales) {
  Factores f;
  f.cantidad = g_redoTo(linea.Cantidad(), decimales);
  f.precio = g_redoTo(linea.Precio(), decimales);
  if (!ignoraTipoCambio) f.cambio = g_redoTo(linea.Cambio(), decimales);
  return f;
}

/// The discounts, each on the whole amount; returns their sum.
inline double Descuenta(const Descuentos& porcentaje, double importe, int decimales, Descuentos& descuento) {
  double suma = 0;
  for (std::size_t i = 0; i < descuento.size(); ++i) {
    descuento[i] = g_redoTo(porcentaje[i] / 100 * importe, decimales);
    suma += descuento[i];
  }
  return suma;
}

/// What a tax with this code is a percentage of, once the taxes before it stand.
inline double Gravable(const Impuestos& impuestos, double base, int codigo) noexcept {
  if (codigo < 0 || codigo >= TCalculoCFDI::kImpuestos) return 0;
  for (std::size_t k = 0; k < static_cast<std::size_t>(codigo); ++k) base += impuestos[k];
  return base;
}

/// Adds the percentage to tax i; a code that is none adds nothing.
inline void SumaPorcentaje(Impuestos& impuestos, double base, double tasa, int codigo,
                           std::size_t i) noexcept {
  if (codigo < 0 || codigo >= TCalculoCFDI::kImpuestos) return;
  impuestos[i] += Gravable(impuestos, base, codigo) / 100 * tasa;
}

/// A tax with a quota; `porcentaje()` adds the percentage to the tax and returns the tax rounded.
template <typename Porcentaje>
void SumaConCuota(ENUM_CUOTA modo, double cuota, double& impuesto, const Porcentaje& porcentaje) {
  switch (modo) {
    case ENUM_CUOTA::MINIMA:
      if (porcentaje() < cuota) impuesto = cuota;
      break;
    case ENUM_CUOTA::SOLA:
      impuesto = cuota;
      break;
    case ENUM_CUOTA::ADICIONAL:
      porcentaje();
      impuesto += cuota;
      break;
    default:
      break;
  }
}

inline ENUM_CUOTA ModoCuota(std::u16string_view texto) noexcept {
  return texto.size() == 1 ? static_cast<ENUM_CUOTA>(texto[0]) : ENUM_CUOTA::NINGUNA;
}

/// Calls impuesto(i, codigo, tasa, base, conCuota) for each tax that applies. `base()` gives the amount
/// less the discounts; it comes out the same for every tax, so it is asked once, and only if one applies.
template <typename Linea, typename Base, typename Impuesto>
void Recorre(const Linea& linea, int decimales, const Base& base, const Impuesto& impuesto) {
  bool conBase = false;
  double b = 0;
  for (std::size_t i = 0; i < TCalculoCFDI::kImpuestos; ++i) {
    const int codigo = linea.Codigo(i);
    if (!Aplica(codigo)) continue;
    const double tasa = g_redoTo(linea.Tasa(i), decimales);
    if (!conBase) {
      b = base();
      conBase = true;
    }
    impuesto(i, codigo, tasa, b, linea.ConCuota(i));
  }
}

}  // namespace vel::cascada

#pragma once

#include <vector>

#include "Ucalculocfdi/TResumenFiscal.h"

namespace vel::fiscal {

/// The document's figures that follow from the lines alone.
struct Totales {
  TMontoFiscal subTotal;
  TMontoFiscal descuento;
  std::vector<TTrasladoFiscal> traslados;
  std::vector<TRetencionFiscal> retenciones;
  std::vector<TLocalFiscal> locales;
};

/// Sums the lines and rounds each figure once. Raises EInvalidOperation when one is too large.
Totales Suma(const TResumenFiscal& resumen);

/// The sums of the printed entries of a list, at the currency's decimals.
TMontoFiscal SumaTraslados(const TResumenFiscal& resumen);
TMontoFiscal SumaRetenciones(const TResumenFiscal& resumen);
TMontoFiscal SumaLocales(const TResumenFiscal& resumen, bool retenidos);
/// The total that the printed figures give; may be negative.
TMontoFiscal TotalDe(const TResumenFiscal& resumen);

/// Checks every rule; `esperado` is Suma(resumen).
std::vector<TMotivoFiscal> Revisa(const TResumenFiscal& resumen, const Totales& esperado);

/// Raises EInvalidOperation when the decimals of currency and lines are out of range.
void ExigeDecimales(int moneda, int linea);

}  // namespace vel::fiscal

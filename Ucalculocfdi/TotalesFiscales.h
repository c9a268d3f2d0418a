#pragma once

#include <cstddef>
#include <vector>

#include "Ucalculocfdi/TResumenFiscal.h"

namespace vel::fiscal {

/// What the lines alone give: the document's figures and the rules that the lines do not meet.
struct Repaso {
  std::size_t partidas = 0;
  TMontoFiscal subTotal;
  TMontoFiscal descuento;
  std::vector<TTrasladoFiscal> traslados;
  std::vector<TRetencionFiscal> retenciones;
  std::vector<TLocalFiscal> locales;
  std::vector<TMotivoFiscal> motivos;
};

/// Sums the lines, rounds each figure once, and checks each line. Raises EInvalidOperation for a figure that
/// is negative, has other decimals than it must or is too large.
Repaso Repasa(const TResumenFiscal& resumen);

/// The sums of the printed entries of a list, at the currency's decimals.
TMontoFiscal SumaTraslados(const TResumenFiscal& resumen);
TMontoFiscal SumaRetenciones(const TResumenFiscal& resumen);
TMontoFiscal SumaLocales(const TResumenFiscal& resumen, bool retenidos);
/// The total that the printed figures give; may be negative.
TMontoFiscal TotalDe(const TResumenFiscal& resumen);

/// Appends the rules that a line and its taxes do not meet.
void RevisaPartida(const TPartidaFiscal& partida, std::vector<TMotivoFiscal>& motivos);
/// The rules that the document's figures do not meet, and then those of its lines.
std::vector<TMotivoFiscal> Revisa(const TResumenFiscal& resumen, Repaso repaso);

/// Raises EInvalidOperation when the decimals of currency and lines are out of range.
void ExigeDecimales(int moneda, int linea);

}  // namespace vel::fiscal

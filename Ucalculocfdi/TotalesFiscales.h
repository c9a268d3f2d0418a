#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "Ucalculocfdi/TResumenFiscal.h"
#include "framework/TDateTime.h"

namespace vel::fiscal {

struct Comprobacion;

/// The rules in force on a day, by what they look at.
struct Vigentes {
  std::vector<const Comprobacion*> documento;
  std::vector<const Comprobacion*> partida;
  std::vector<const Comprobacion*> impuesto;
};

/// Those of the newest edition without a date. Raises EConvertError for a date that the calendar lacks.
Vigentes ReglasVigentes(const std::optional<TDateTime>& fecha);

/// What the lines alone give: the document's figures and the rules that the lines do not meet.
struct Repaso {
  std::size_t partidas = 0;
  TMontoFiscal subTotal;
  TMontoFiscal descuento;
  std::vector<TTrasladoFiscal> traslados;
  std::vector<TRetencionFiscal> retenciones;
  std::vector<TLocalFiscal> locales;
  Vigentes reglas;
  std::vector<TMotivoFiscal> motivos;
};

/// Sums the lines, rounds each figure once, and checks each line. Raises EInvalidOperation for a figure that
/// is negative, has other decimals than it must or is too large, EConvertError as ReglasVigentes.
Repaso Repasa(const TResumenFiscal& resumen);

/// The sums of the printed entries of a list, at the currency's decimals.
TMontoFiscal SumaTraslados(const TResumenFiscal& resumen);
TMontoFiscal SumaRetenciones(const TResumenFiscal& resumen);
TMontoFiscal SumaLocales(const TResumenFiscal& resumen, bool retenidos);
/// The total that the printed figures give; may be negative.
TMontoFiscal TotalDe(const TResumenFiscal& resumen);

/// Appends the rules that a line and its taxes do not meet.
void RevisaPartida(const Vigentes& reglas, const TPartidaFiscal& partida,
                   std::vector<TMotivoFiscal>& motivos);
/// The rules that the document's figures do not meet, and then those of its lines.
std::vector<TMotivoFiscal> Revisa(const TResumenFiscal& resumen, Repaso repaso);

/// Raises EInvalidOperation when the decimals of currency and lines are out of range.
void ExigeDecimales(int moneda, int linea);

}  // namespace vel::fiscal

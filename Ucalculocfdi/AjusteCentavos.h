#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "Ucalculocfdi/TMontoFiscal.h"
#include "Ucalculocfdi/TResumenFiscal.h"
#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// By how much a line's tax was moved.
struct TMovimientoImpuesto {
  /// 1-based number of the line's record, and number of the tax (1 to 8).
  std::size_t Renglon = 0;
  /// Number of the engine's tax, 1 to 8.
  int Numero = 0;
  /// In units of the last decimal that lines are printed with.
  std::int64_t Unidades = 0;
};

/// What AjustaCentavos did. Both amounts are in units of the currency's last decimal (cents).
struct TAjusteCentavos {
  /// The total asked for less the printed one, before and after.
  std::int64_t Pedidos = 0;
  /// The total asked for less the printed one, after.
  std::int64_t PorColocar = 0;
  /// In the order of the lines.
  std::vector<TMovimientoImpuesto> Movimientos;
  /// For the user, in Spanish: why cents are left. Empty when none is.
  UnicodeString Mensaje;
};

/// Moves the printed taxes of a summary's lines, a unit of their last decimal at a time, until the printed
/// total is `total`: the sum of prices that include taxes, line by line (TotalPedido of ObtenPrecioInverso).
///
/// Only taxes at a rate are moved, transferred and withheld; quotas are the law's amounts, and local taxes
/// have no published limits. Each stays within LimitesImpuesto (Inferior to Superior), and so do those that
/// are computed on it, whose printed bases follow. Of the taxes that bring the total a cent nearer, the one
/// that rounding has taken the most from goes first. Where lines are printed with more decimals than the
/// currency has, a printed sum turns only if the units of its lines carry it past a half: the limits leave
/// each about one unit, so that few cents find a place. Print such documents with the currency's decimals.
///
/// Afterwards the summary is totalled anew (Totaliza). Raises EInvalidOperation for a negative total and as
/// Totaliza and LimitesImpuesto do; the summary is then as it was.
UTILVEL90_EXPORT TAjusteCentavos AjustaCentavos(TResumenFiscal& resumen, const TMontoFiscal& total);

}  // namespace vel

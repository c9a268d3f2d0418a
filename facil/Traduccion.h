#pragma once

#include <span>
#include <vector>

#include "Ucalculocfdi/TResumenFiscal.h"
#include "facil/Partida.h"

namespace vel::facil {

/// What the lines of one document are to the engine and to its fiscal summary.
struct Traduccion {
  std::vector<TDatosPartida> Lineas;
  TAsignacionFiscal Impuestos = AsignacionUsual();
  /// Of the lines that are exempt or give the units of a quota.
  std::vector<TNotaPartida> Notas;
};

/// Raises as CreaPartidas.
Traduccion Traduce(std::span<const Partida> partidas, ENUM_MODULO modulo);
/// The data set of lines that were translated.
TClientDataSet CreaConjunto(std::span<const Partida> partidas, const Traduccion& traduccion,
                            ENUM_MODULO modulo);

}  // namespace vel::facil

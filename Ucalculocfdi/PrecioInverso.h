#pragma once

#include <cstdint>

#include "Ucalculocfdi/Partida.h"
#include "Ucalculocfdi/TMontoFiscal.h"
#include "utilvel90_export.h"

namespace vel {

/// What a price with taxes says of the line's discounts.
enum class ENUM_PRECIO : std::int32_t {
  /// A list price: the discounts still come off, from its net price. A quota stays whole.
  PRECIO_LISTA = 0,
  /// What is paid: the discounts have already been taken off it.
  PRECIO_FINAL = 1
};

/// A net unit price and the line that it gives.
struct TPrecioInverso {
  /// At most six decimals.
  double PrecioNeto = 0;
  /// Amount, discounts and taxes of the line at that price, as documents compute them.
  TImpuestosPartida Partida;
  /// What the line should come to: price by quantity by exchange rate, to the cent (half away from zero); of
  /// a list price, what the discounts leave of it.
  TMontoFiscal TotalPedido;
  /// What it comes to: TotalImpuestos of a document of this line alone, to the bit.
  double Total = 0;
  /// TotalPedido less Total in cents: 0, except where no net price of six decimals reaches it. What doubles
  /// lose in the engine's totals of 10^8 and more is in it too.
  std::int64_t Residuo = 0;
};

/// The net unit price for a unit price that includes the line's taxes. `partida` gives everything else: its
/// own Precio is not read. In purchases the net price is cost and price both. `precio` is in the currency of
/// the line's prices, so that the total is divided by the exchange rate as they are.
///
/// The net price is the one of six decimals nearest to the exact answer among those whose total is price by
/// quantity to the cent. Where the nearest of all misses, its neighbours are tried as far as the total can
/// come: where none reaches it, the one that comes closest is returned, and Residuo says by how many cents.
/// A single cent is common there (subtotal and taxes, each rounded, pass a half cent in the same step of the
/// price); from some ten thousand units on, a step of the price itself is worth more than a cent.
///
/// How the total grows with the price comes from the line's own taxes on a base of one; the quota, and the
/// taxes on it, come off first.
///
///     116.00 with 16 %: 100     120.00 with 8 % and 16 % on both: 95.785441, total 120.00
///
/// Raises EInvalidOperation, naming what is wrong, for a number that is not finite; a negative price or
/// quota; a quantity or exchange rate that is not above zero; a rate beyond 1000 % of a tax that applies;
/// discounts below zero or that leave nothing; discounts on a line without taxes, which documents do not
/// compute (a rate of 0 % is a tax); a quota beyond the price; withholdings that leave less than a
/// hundredth of the price; and sizes beyond exact cents: a total above 10^12, a net price from 10^9 on.
UTILVEL90_EXPORT TPrecioInverso ObtenPrecioInverso(double precio, const TDatosPartida& partida,
                                                   ENUM_PRECIO tipo = ENUM_PRECIO::PRECIO_FINAL);
/// The same for the line in the data set's current record; raises also as LeePartida.
UTILVEL90_EXPORT TPrecioInverso ObtenPrecioInverso(double precio, const TClientDataSet& partidas,
                                                   ENUM_MODULO modulo,
                                                   ENUM_PRECIO tipo = ENUM_PRECIO::PRECIO_FINAL,
                                                   bool ignoraTipoCambio = false);

}  // namespace vel

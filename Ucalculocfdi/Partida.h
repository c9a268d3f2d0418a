#pragma once

#include <array>

#include "Ucalculocfdi/TCalculoCFDI.h"
#include "framework/TClientDataSet.h"
#include "utilvel90_export.h"

namespace vel {

/// How an excise quota meets the percentage of its tax: the larger of both, the quota alone, or both. The
/// value is the letter that lines hold in "APL_MAN_IEPS"; with any other the tax is zero.
enum class ENUM_CUOTA : char16_t { NINGUNA = u'\0', MINIMA = u'M', SOLA = u'C', ADICIONAL = u'A' };

/// One line of a document as values. Rates and discounts are percentages (16 is 16 %); arrays are 0-based.
struct TDatosPartida {
  /// Base code of a tax that does not apply to the line; 4 is another one.
  static constexpr int kNoAplica = 6;

  /// Units sold or bought.
  double Cantidad = 1;
  /// Net unit price: what the line is taxed on (the price of a sale, the cost of a purchase).
  double Precio = 0;
  /// Amounts are divided by it.
  double TipoCambio = 1;
  /// Percentages, each on the whole amount.
  TCalculoCFDI::Descuentos PorcDescuento{};
  /// Percentages of the eight taxes.
  TCalculoCFDI::Impuestos Tasa{};
  /// Base of each tax: 0 the amount, 1 to 7 the taxes 1 to n of the line too; see AplicaImpuesto.
  std::array<int, TCalculoCFDI::kImpuestos> Codigo{kNoAplica, kNoAplica, kNoAplica, kNoAplica,
                                                   kNoAplica, kNoAplica, kNoAplica, kNoAplica};
  /// Number (1 to 8) of the tax that has a quota; 0 when none has.
  int ImpuestoConCuota = 0;
  /// How quota and rate meet.
  ENUM_CUOTA ModoCuota = ENUM_CUOTA::NINGUNA;
  /// The quota of the whole line, not of one unit; it is not divided by the exchange rate.
  double Cuota = 0;
};

/// What one line gives: the same bits that TCalculoCFDI has for it.
struct TImpuestosPartida {
  /// Quantity by price by exchange rate, rounded.
  double Importe = 0;
  /// The three discounts, rounded.
  TCalculoCFDI::Descuentos Descuento{};
  /// The amount less its discounts: the base that the tax lists take.
  double Base = 0;
  /// Which taxes apply; the arrays below hold zero for the others.
  std::array<bool, TCalculoCFDI::kImpuestos> Aplica{};
  /// What each tax is a percentage of: the base and the taxes that its code adds, not rounded.
  TCalculoCFDI::Impuestos BaseGravable{};
  /// The taxes as later ones build on them, not rounded (ImpuestoPartida).
  TCalculoCFDI::Impuestos Impuesto{};
  /// The taxes rounded, as they enter a document (TotalImpuesto).
  TCalculoCFDI::Impuestos ImpuestoRedondeado{};
};

/// The line in the data set's current record, by the fields that TCalculoCFDI documents; with
/// `ignoraTipoCambio` the exchange rate is 1 and its field is not read. Of the taxes, only the fields of
/// those that apply are read. Raises as TCalculoCFDI does for a missing field or a text that is no number.
UTILVEL90_EXPORT TDatosPartida LeePartida(const TClientDataSet& partidas, ENUM_MODULO modulo,
                                          bool ignoraTipoCambio = false);

/// Amount, discounts, bases and taxes of one line, without a document. Every rounding is to `decimales`.
/// Whether the line counts in its document, or is hidden there, is not asked. Discounts are computed for a
/// line without taxes too: a document leaves there those of an earlier line.
///
///     CANT 2, PREC 50, DESC1 10, IMPU1 16, IMP1APLA 0: Importe 100, Descuento 10, Base 90, Impuesto 14.4
UTILVEL90_EXPORT TImpuestosPartida CalcularImpuestosPartida(const TDatosPartida& partida, int decimales = 6);
/// The same for the line in the data set's current record; raises as LeePartida.
UTILVEL90_EXPORT TImpuestosPartida CalcularImpuestosPartida(const TClientDataSet& partidas,
                                                            ENUM_MODULO modulo, bool ignoraTipoCambio = false,
                                                            int decimales = 6);

}  // namespace vel

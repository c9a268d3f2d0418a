#pragma once

#include <optional>
#include <span>
#include <vector>

#include "Ucalculocfdi/Partida.h"
#include "Uutilext/documents/TiposDocto.h"
#include "facil/Texto.h"
#include "framework/TClientDataSet.h"
#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel::facil {

/// An excise tax by quota. The line's quota is amount by units, to six decimals, in the document's currency:
/// no exchange rate divides it.
struct CuotaIeps {
  /// Amount for one unit, six decimals.
  double PorUnidad = 0;
  /// Units that the quota is for (litres, pieces); the line's quantity unless given.
  std::optional<double> Unidades = {};
  /// How it meets the rate: unless given, alone without a rate and beside it (ADICIONAL) with one. MINIMA
  /// needs a rate and SOLA takes none.
  ENUM_CUOTA Modo = ENUM_CUOTA::NINGUNA;
};

/// A local tax, on the amount less discounts: of lodging, say, or withheld on fees. Its name identifies it.
/// Threads: const members may be called by all.
struct UTILVEL90_EXPORT ImpuestoLocal {
  /// Name, percentage, and whether it is withheld.
  ImpuestoLocal(const Texto& nombre, double tasa, bool retenido = false);

  /// Its name, which the invoice prints: "ISH".
  UnicodeString Nombre;
  /// Percentage, positive when it is withheld too.
  double Tasa;
  /// Withheld; otherwise transferred.
  bool Retenido;
};

/// A line of a document in words: name what it has, the rest has its default. Rates and discounts are
/// percentages (16 is 16 %), withholdings too, which are given positive. A tax that is not given does not
/// apply to the line; a transferred tax of 0 % does.
///
/// C++ wants the members in the order in which they stand below (Iva before Ieps). Where a compiler says only
/// that no function takes a list of lines, write the line as Partida{.Precio = 50, ...}: it then names the
/// member that is misspelled or has a value of another type.
///
///     const std::vector<Partida> partidas{
///         {.Cantidad = 2, .Precio = 4599.90, .Descuentos = {10}, .Iva = 16},
///         {.Cantidad = 30, .Precio = 48.50, .Iva = 16, .Ieps = 8},
///         {.Cantidad = 24, .Precio = 11.50, .Iva = 16, .Cuota = CuotaIeps{1.63, 14.4}},
///         {.Precio = 1234.56, .Iva = 16, .RetencionIsr = 10, .RetencionIva = 10.6667},
///         {.Precio = 1500, .Iva = 16, .Locales = {{"ISH", 3}}}};
///
/// Numbers and base codes of the engine follow from the names. The numbers are those of AsignacionUsual (1
/// IEPS, 2 ISR withheld, 3 IVA withheld, 4 IVA); local taxes take 5 to 8, one for each name and direction in
/// the order in which the document's lines first have them. IVA, transferred and withheld, is on the amount
/// less discounts and the line's IEPS (code 1 where there is one, else 0), every other tax on the amount less
/// discounts (code 0). Withholdings stand in the data set at negative rates, which the engine takes off.
struct Partida {
  /// Units sold or bought.
  double Cantidad = 1;
  /// Net unit price; in purchases the unit cost.
  double Precio = 0;
  /// Amounts are divided by it.
  double TipoCambio = 1;
  /// Each on the whole amount, together at most 100 %; purchases have the first alone.
  TCalculoCFDI::Descuentos Descuentos = {};
  /// Percentage of value-added tax; 0 is a rate, none given is no tax.
  std::optional<double> Iva = {};
  /// Exempt of IVA, which is not the same as 0 %; Iva is then not given.
  bool IvaExento = false;
  /// Percentage of excise tax.
  std::optional<double> Ieps = {};
  /// Excise tax by quota.
  std::optional<CuotaIeps> Cuota = {};
  /// Percentage of income tax that the buyer withholds, positive.
  std::optional<double> RetencionIsr = {};
  /// Percentage of value-added tax that the buyer withholds, positive.
  std::optional<double> RetencionIva = {};
  /// Local taxes of the line, by name.
  std::vector<ImpuestoLocal> Locales = {};
  /// Part of a kit, whose own line has the price: it neither counts nor is taxed.
  bool ComponenteDeKit = false;
  /// A hidden line counts in the subtotal; the engine gives it neither taxes nor discounts, and here it has
  /// none.
  bool Visible = true;
};

/// The data set of these lines that TCalculoCFDI takes (SetPartidas), one record for each and in their order,
/// with the fields of the module. A line without taxes has one of 0 % that prints nothing (the withheld ISR),
/// because the engine discounts lines that a tax applies to, and gives others the discounts of the line
/// before; hidden lines and components repeat those all the same.
///
/// Raises EInvalidOperation ("Partida 3: Cantidad ...", 1-based line and member) for what is impossible: a
/// number that is not finite, negative or above 9 x 10^12, an exchange rate that is not above zero, a rate
/// above 1000 %, discounts above 100 %, a quota without units or whose mode and rate contradict each other,
/// IVA both exempt and at a rate, a local tax without name or twice in a line, more than four local taxes in
/// the document, a hidden line with taxes or discounts, a second discount in purchases.
UTILVEL90_EXPORT TClientDataSet CreaPartidas(std::span<const Partida> partidas,
                                             ENUM_MODULO modulo = ENUM_MODULO::MODULO_VENTAS);

}  // namespace vel::facil

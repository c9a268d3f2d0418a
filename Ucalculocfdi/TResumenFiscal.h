#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Ucalculocfdi/TCalculoCFDI.h"
#include "Ucalculocfdi/TMontoFiscal.h"
#include "framework/TClientDataSet.h"
#include "framework/TDateTime.h"
#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// What an electronic invoice of version 4.0 prints, beside what TCalculoCFDI totals. The engine sums first
/// and rounds its totals; an invoice prints parts, and its total must be the sum of the printed parts. Every
/// figure here is an exact decimal (whole numbers, halves away from zero), and all of them add up.
///
/// Sources of rules and figures: the tax authority's invoice standard (Anexo 20, version 4.0), its filling
/// guide and its validation matrix; see ReglasFiscales.h.

/// The taxes of the standard by their catalogue keys 001, 002 and 003; a local tax goes by its name.
enum class ENUM_IMPUESTO_FISCAL : std::int32_t { NINGUNO = 0, ISR = 1, IVA = 2, IEPS = 3, LOCAL = 4 };

/// How a tax follows from its base: a rate, a quota for each unit, or exempt.
enum class ENUM_FACTOR_FISCAL : std::int32_t { TASA = 0, CUOTA = 1, EXENTO = 2 };

/// Catalogue key of the tax ("002"); empty for a local one and for none.
UTILVEL90_EXPORT UnicodeString DameClaveImpuesto(ENUM_IMPUESTO_FISCAL impuesto);
/// "Tasa", "Cuota" or "Exento".
UTILVEL90_EXPORT UnicodeString DameTipoFactor(ENUM_FACTOR_FISCAL factor);

/// What one of the engine's eight taxes is.
struct TImpuestoAsignado {
  /// The tax of the standard; NINGUNO for a number that is not used.
  ENUM_IMPUESTO_FISCAL Impuesto = ENUM_IMPUESTO_FISCAL::NINGUNO;
  /// Withheld; otherwise transferred. A negative rate makes a line's tax withheld whatever this says.
  bool Retenido = false;
  /// Name of a local tax; empty for the others.
  UnicodeString Nombre = {};
  friend bool operator==(const TImpuestoAsignado&, const TImpuestoAsignado&) = default;
};

/// What each of the eight taxes is, by 0-based number.
using TAsignacionFiscal = std::array<TImpuestoAsignado, TCalculoCFDI::kImpuestos>;

/// The suite's usual assignment: 1 IEPS, 2 ISR withheld, 3 IVA withheld, 4 IVA; 5 to 8 none.
UTILVEL90_EXPORT TAsignacionFiscal AsignacionUsual();

/// What the engine's fields do not say of one line.
struct TNotaPartida {
  /// 1-based number of the record in TCalculoCFDI::Partidas.
  std::size_t Renglon = 0;
  /// Taxes (0-based) of which the line is exempt, which is not the same as a rate of 0 %. Also where the
  /// line's base code says that the tax does not apply; its base is then the amount less discounts.
  std::array<bool, TCalculoCFDI::kImpuestos> Exento = {};
  /// Units that the line's quota (MTO_CUOTA) is for; the line's quantity unless given.
  std::optional<double> Unidades = {};
};

/// What a summary needs beside the engine.
struct TDatosFiscales {
  /// What the engine's eight taxes are.
  TAsignacionFiscal Impuestos = AsignacionUsual();
  /// Decimals of the currency, 0 to 6: 2 for MXN.
  int DecimalesMoneda = 2;
  /// Decimals of the lines' amounts, 2 to 6 and not below the currency's. At 6 the printed total comes
  /// closest to the engine's.
  int DecimalesLinea = 6;
  /// In any order, at most one for each line.
  std::vector<TNotaPartida> Notas = {};
  /// Of the document: it is checked by the rules in force that day; by the newest edition unless given.
  std::optional<TDateTime> Fecha = {};
};

/// A tax of a line.
struct TImpuestoImpreso {
  /// Number of the engine's tax, 1 to 8. Two taxes of a line may share it: rate and quota (mode "A").
  int Numero = 0;
  /// The tax of the standard.
  ENUM_IMPUESTO_FISCAL Impuesto = ENUM_IMPUESTO_FISCAL::NINGUNO;
  /// Withheld; otherwise transferred.
  bool Retenido = false;
  /// How it follows from its base.
  ENUM_FACTOR_FISCAL Factor = ENUM_FACTOR_FISCAL::TASA;
  /// Amount less discount plus the printed taxes that the base code adds; the units of a quota.
  TMontoFiscal Base;
  /// Fraction of six decimals: 0.160000; of a quota, the amount for each unit. Zero when exempt.
  TMontoFiscal Tasa;
  /// Base by rate; zero when exempt.
  TMontoFiscal Importe;
  /// Base code, which is not printed: Base has the printed taxes of the line that come before this one and
  /// have a Numero up to the code. 0 where the base is the amount less discount, or units.
  int CodigoBase = 0;
  /// At a negative rate: taken off the bases of the taxes after it, to which other taxes are added.
  bool TasaNegativa = false;
  friend bool operator==(const TImpuestoImpreso&, const TImpuestoImpreso&) = default;
};

/// A line that counts. A hidden one has no taxes.
struct TPartidaFiscal {
  /// 1-based number of its record.
  std::size_t Renglon = 0;
  /// Quantity, and unit price in the document's currency (divided by the exchange rate), of six decimals.
  TMontoFiscal Cantidad;
  /// Unit price in the document's currency, of six decimals.
  TMontoFiscal ValorUnitario;
  /// Quantity by unit price.
  TMontoFiscal Importe;
  /// All its discounts together.
  TMontoFiscal Descuento;
  /// Its printed taxes.
  std::vector<TImpuestoImpreso> Impuestos;
  friend bool operator==(const TPartidaFiscal&, const TPartidaFiscal&) = default;
};

/// The transferred taxes of one tax, factor and rate.
struct TTrasladoFiscal {
  /// The tax of the standard.
  ENUM_IMPUESTO_FISCAL Impuesto = ENUM_IMPUESTO_FISCAL::NINGUNO;
  /// How it follows from its base.
  ENUM_FACTOR_FISCAL Factor = ENUM_FACTOR_FISCAL::TASA;
  /// Fraction of six decimals, or amount for each unit; zero when exempt.
  TMontoFiscal Tasa;
  /// Sum of the lines' bases.
  TMontoFiscal Base;
  /// Sum of the lines' taxes.
  TMontoFiscal Importe;
  friend bool operator==(const TTrasladoFiscal&, const TTrasladoFiscal&) = default;
};

/// The withheld taxes of one tax.
struct TRetencionFiscal {
  /// The tax of the standard.
  ENUM_IMPUESTO_FISCAL Impuesto = ENUM_IMPUESTO_FISCAL::NINGUNO;
  /// Sum of the lines' taxes.
  TMontoFiscal Importe;
  friend bool operator==(const TRetencionFiscal&, const TRetencionFiscal&) = default;
};

/// The local taxes of one name, direction and rate.
struct TLocalFiscal {
  /// The name that the assignment gives it.
  UnicodeString Nombre;
  /// Withheld; otherwise transferred.
  bool Retenido = false;
  /// Fraction of six decimals.
  TMontoFiscal Tasa;
  /// Sum of the lines' taxes.
  TMontoFiscal Importe;
  friend bool operator==(const TLocalFiscal&, const TLocalFiscal&) = default;
};

/// A rule that the printed figures do not meet, whatever cents are chosen.
struct TMotivoFiscal {
  /// Code of the rule, see ReglasFiscales.
  UnicodeString Codigo;
  /// 1-based number of the line's record; 0 for the document.
  std::size_t Renglon = 0;
  /// Number of the tax, 1 to 8; 0 for none.
  int Impuesto = 0;
  /// For the user, in Spanish.
  UnicodeString Mensaje;
};

/// Between what a certifier accepts an amount. Public sources differ on the decimals that a limit is cut to:
/// those of the amount itself, or those of the currency. The first lie within the second; both are given and
/// the first are met.
struct TLimitesFiscales {
  /// The least amount, cut to the decimals of the amount itself.
  TMontoFiscal Inferior;
  /// The largest amount, raised to the decimals of the amount itself.
  TMontoFiscal Superior;
  /// The least amount, cut to the currency's decimals.
  TMontoFiscal InferiorMoneda;
  /// The largest amount, raised to the currency's decimals.
  TMontoFiscal SuperiorMoneda;
};

/// The printed figures of a document: a value, whose members a program reads as they are.
///
/// By line, at DecimalesLinea decimals: amount = quantity x price / exchange rate; discount = the sum of its
/// percentages of the printed amount; each tax = its printed base x its printed rate. By document, at
/// DecimalesMoneda: every figure is the sum of its lines rounded once, and
///
///     Total = SubTotal - Descuento + TotalImpuestosTrasladados - TotalImpuestosRetenidos
///             + TotalLocalesTrasladados - TotalLocalesRetenidos
///
/// to the last digit. No figure is negative.
/// Threads: const members may be called by all.
class UTILVEL90_EXPORT TResumenFiscal {
 public:
  /// An empty document.
  TResumenFiscal() = default;

  /// The summary of the engine's lines (in purchases with the price "COST", on which they are taxed).
  /// `calculo` is left as it was: no member changes and the current line stays (one under edit is posted).
  /// Call its CalculaTotales first if Diferencia is wanted. Linear in the lines.
  ///
  /// Lines and fields are those of TCalculoCFDI, rounded to six decimals as it rounds them. Lines that do not
  /// count are left out, and every line has its own discounts, which the engine's total is not always made
  /// of. A transferred tax of 0 % is printed; a withholding or a local tax of 0 % is not, nor that of a tax
  /// without assignment. Quota mode "A" prints two taxes, "M" the larger, "C" the quota, any other none.
  ///
  /// A quota's base is its units and its rate quota / units, rounded to six decimals; where the quota does
  /// not lie within the limits of these two, the nearest amount that does is printed.
  ///
  /// Raises EInvalidOperation, naming line and field, for what the standard cannot print: a number that is
  /// not finite or too large (amounts and bases reach 9 x 10^12), a negative quantity, price, base, quota or
  /// total, an exchange rate that is not above zero, discounts that come to less than 0 or more than 100 %, a
  /// rate beyond 1000 %, a quota without units; for an assignment that contradicts itself or a line (a local
  /// tax without a name, ISR transferred, exempt but withheld or with a rate, a rate for a tax without
  /// assignment, a quota of a local tax, whose complement knows rates only); and for decimals out of range.
  /// Raises EConvertError for a date as Totaliza does. Errors of the data set come through.
  explicit TResumenFiscal(TCalculoCFDI& calculo, const TDatosFiscales& datos = {});

  /// Computes the document's figures and Motivos anew from Partidas, for a program that moved line figures.
  /// Diferencia moves with the total. Raises EInvalidOperation when a figure of a line is negative or has not
  /// its decimals, when one is too large, or when the total is negative, and EConvertError for a Fecha that
  /// the calendar lacks (years 1 to 9999); nothing has changed then.
  void Totaliza();

  /// The rules in force on Fecha that the figures do not meet, as they stand now. Raises EInvalidOperation
  /// for line figures and EConvertError for the date as Totaliza does.
  std::vector<TMotivoFiscal> Revisa() const;

  /// Limits of a line's amount for its quantity and price, and of a tax for its base and rate (zero when
  /// exempt), by the newest edition of the rules.
  ///
  ///     3.000000 units at 3.33:       9.97 to 10.01
  ///     a tax of 0.160000 on 10.00:   1.59 to 1.61
  TLimitesFiscales LimitesImporte(const TPartidaFiscal& partida) const;
  TLimitesFiscales LimitesImpuesto(const TImpuestoImpreso& impuesto) const;
  /// Catalogue key of a line's tax, or the name of a local one.
  UnicodeString DameNombre(const TImpuestoImpreso& impuesto) const;

  /// One record for each line, by the names of the standard in capitals (RENGLON, CANTIDAD, VALORUNITARIO,
  /// IMPORTE, DESCUENTO), with its taxes nested in IMPUESTOS (NUMERO, TIPO "Traslado" or "Retencion",
  /// IMPUESTO key or name, TIPOFACTOR, TASAOCUOTA, BASE, IMPORTE). Amounts are texts, so that a data packet
  /// keeps every digit; AsFloat reads them as numbers. Rate and tax are null when exempt.
  TClientDataSet DamePartidas() const;
  /// One record for each printed figure of the document, in the order of the members: CONCEPTO (the member's
  /// name; "Traslado", "Retencion", "LocalTraslado" and "LocalRetencion" for the entries of the lists),
  /// IMPUESTO, TIPOFACTOR, TASAOCUOTA, BASE and IMPORTE as above, null where they say nothing.
  TClientDataSet DameTotales() const;
  /// Everything as JSON (RFC 8259) in UTF-8 on one line: the members' names, amounts as texts, Diferencia as
  /// an amount too.
  std::string DameJson() const;

  /// As in TDatosFiscales.
  TAsignacionFiscal Asignacion = AsignacionUsual();
  /// Decimals of the currency and of the document's figures.
  int DecimalesMoneda = 2;
  /// Decimals of the lines' amounts.
  int DecimalesLinea = 6;
  /// As in TDatosFiscales.
  std::optional<TDateTime> Fecha;
  /// The lines that count, in their order.
  std::vector<TPartidaFiscal> Partidas;

  /// Sum of the lines' amounts.
  TMontoFiscal SubTotal;
  /// Sum of the lines' discounts.
  TMontoFiscal Descuento;
  /// In the order in which the lines first have them.
  std::vector<TTrasladoFiscal> Traslados;
  /// Withheld taxes, by tax.
  std::vector<TRetencionFiscal> Retenciones;
  /// Local taxes, by name, direction and rate.
  std::vector<TLocalFiscal> Locales;
  /// Sum of Traslados.
  TMontoFiscal TotalImpuestosTrasladados;
  /// Sum of Retenciones.
  TMontoFiscal TotalImpuestosRetenidos;
  /// Sum of the transferred ones of Locales.
  TMontoFiscal TotalLocalesTrasladados;
  /// Sum of the withheld ones of Locales.
  TMontoFiscal TotalLocalesRetenidos;
  /// What is to be paid: the printed parts, added up.
  TMontoFiscal Total;

  /// Total less the engine's, in units of the currency's last decimal (cents). Without a value when the
  /// engine has not computed its totals, or they are not finite or too large to hold cents.
  std::optional<std::int64_t> Diferencia;

  /// Empty when a certifier finds nothing wrong with the arithmetic.
  std::vector<TMotivoFiscal> Motivos;

 private:
  struct Lectura;
};

}  // namespace vel

#pragma once

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "Ucalculocfdi/TResumenFiscal.h"
#include "facil/Momento.h"
#include "facil/Partida.h"
#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel::facil {

/// How the data set of a document's lines is to be taken.
struct OpcionesDocumento {
  /// Sales or purchases: which fields a line has.
  ENUM_MODULO Modulo = ENUM_MODULO::MODULO_VENTAS;
  /// Takes every exchange rate as 1; "TIP_CAM" may then be missing.
  bool IgnoraTipoCambio = false;
  /// Which taxes the eight numbers are.
  TAsignacionFiscal Impuestos = AsignacionUsual();
  /// What the fields do not say: exemptions, and units of quotas.
  std::vector<TNotaPartida> Notas = {};
};

/// How the invoice is printed, see TDatosFiscales.
struct OpcionesResumen {
  /// Decimals of the currency, 0 to 6.
  int DecimalesMoneda = 2;
  /// Decimals of the lines' amounts, 2 to 6.
  int DecimalesLinea = 6;
  /// Day of the document, whose rules are checked; without it, those of the newest edition.
  std::optional<Momento> Fecha = {};
};

/// A line and its own figures, also of one that does not count or is hidden.
struct PartidaCalculada {
  /// 1-based number of its record.
  std::size_t Renglon = 0;
  /// Whether the line enters the document's totals.
  bool Cuenta = true;
  /// Whether it is shown; a hidden line has neither taxes nor discounts in the document.
  bool Visible = true;
  /// What was read of it.
  TDatosPartida Datos;
  /// What it comes to by itself.
  TImpuestosPartida Montos;
};

/// The lines of one tax at one rate.
struct ImpuestoPorTasa {
  /// Number of the engine's tax, 1 to 8.
  int Numero = 0;
  /// The tax of the standard that the number is.
  ENUM_IMPUESTO_FISCAL Impuesto = ENUM_IMPUESTO_FISCAL::NINGUNO;
  /// "IEPS", "ISR", "IVA", or the name of a local tax; empty for a number without assignment.
  UnicodeString Nombre;
  /// Withheld; Tasa and Importe are positive all the same.
  bool Retenido = false;
  /// In percent. A quota stands in the row of the rate that it goes with; one alone in a row of 0.
  double Tasa = 0;
  /// What the tax is a percentage of: amounts less discounts, and the taxes that the base code adds. Base,
  /// Neto and Importe are sums of lines of six decimals; FormateaMonto shows them to the cent.
  double Base = 0;
  /// Amounts less discounts, as the engine's tax lists have them.
  double Neto = 0;
  /// The tax, positive when it is withheld too.
  double Importe = 0;
};

/// A document computed by TCalculoCFDI, from lines in words or from a data set. The figures are the engine's,
/// to the bit; what the electronic invoice prints, whose parts add up, is Resumen.
///
///     const Documento factura({{.Cantidad = 2, .Precio = 4599.90, .Descuentos = {10}, .Iva = 16},
///                              {.Precio = 1234.56, .Iva = 16, .RetencionIsr = 10}});
///     factura.Total();                              // 10,913.22
///     MontoEnLetra(factura.Total());
///     for (const ImpuestoPorTasa& i : factura.PorTasa()) ...
///
/// One line too stands in a list: Documento({{.Precio = 50}}). Partida.h tells how its members are named.
///
/// Where the engine's figures are not those of the lines, because it repeats discounts or writes a quota over
/// earlier lines (see TCalculoCFDI), Avisos tells; the summary has the lines' figures.
/// Threads: one at a time, since its engine's current record moves.
class UTILVEL90_EXPORT Documento {
 public:
  /// Raises as CreaPartidas.
  explicit Documento(std::span<const Partida> partidas, ENUM_MODULO modulo = ENUM_MODULO::MODULO_VENTAS);
  explicit Documento(std::initializer_list<Partida> partidas, ENUM_MODULO modulo = ENUM_MODULO::MODULO_VENTAS)
      : Documento(std::span<const Partida>(partidas.begin(), partidas.size()), modulo) {}
  /// Of the lines in a data set, which is copied. Raises EInvalidOperation, naming at once all the fields
  /// that the module lacks:
  ///
  ///     all            CVE_DOC, CANT, PREC, TIP_CAM, TIPO_PROD, TIPO_ELEM, MAN_IEPS
  ///     sales          DESC1, DESC2, DESC3
  ///     others         COST, DESCU
  ///     a tax n        IMPUn and IMPnAPLA, both or none: a rate without its base code would be no tax at all
  ///     a quota        APL_MAN_IMP, APL_MAN_IEPS and MTO_CUOTA when a line holds "S" in MAN_IEPS
  ///
  /// An IMPUn that holds zeros alone needs no IMPnAPLA. Raises it too for a total that is no number, naming
  /// the line that an exchange rate of zero divides; EConvertError, naming the line, for a text that is no
  /// number.
  explicit Documento(const TClientDataSet& partidas, OpcionesDocumento opciones = {});

  /// Quantity by price, divided by the exchange rate, of the lines that count; to two decimals.
  double Subtotal() const;
  /// Six decimals a line, as the engine sums them.
  double Descuentos() const;
  /// Transferred less withheld, to two decimals (TotalImpuestosRedondeado).
  double Impuestos() const;
  /// To two decimals each, so that together they may miss Impuestos by a cent. A tax number counts as
  /// withheld when its assignment says so or the engine took it off; a withholding that a data set gives at a
  /// positive rate, which the engine adds, makes ImpuestosRetenidos negative.
  double ImpuestosTrasladados() const;
  double ImpuestosRetenidos() const;
  /// Subtotal less discounts plus taxes, to two decimals (TCalculoCFDI::TotalImpuestos).
  double Total() const;

  /// The lines in their order.
  std::vector<PartidaCalculada> Partidas() const;
  /// By tax number, then in the order in which the lines first have the rate. What says nothing is left out:
  /// withholdings, local taxes and numbers without assignment at 0 %, and exempt lines.
  std::vector<ImpuestoPorTasa> PorTasa() const;
  /// What the invoice prints; raises as TResumenFiscal.
  TResumenFiscal Resumen(const OpcionesResumen& opciones = {}) const;
  /// For the user, in Spanish: discounts or taxes of the engine that are not the sum of the lines', and rates
  /// of a data set that do not apply because their base code is none (0 to 7). Empty for most documents.
  std::vector<UnicodeString> Avisos() const;

  /// Which taxes the eight numbers are.
  const TAsignacionFiscal& Asignacion() const noexcept { return asignacion_; }
  /// For what has no word here.
  const TCalculoCFDI& Motor() const noexcept { return *motor_; }

 private:
  double SumaImpuestos(bool retenidos) const;
  bool BastanListas() const;
  std::vector<ImpuestoPorTasa> DeListas() const;
  std::vector<ImpuestoPorTasa> DePartidas() const;

  // On the heap: it is neither copied nor moved.
  std::unique_ptr<TCalculoCFDI> motor_;
  TAsignacionFiscal asignacion_;
  std::vector<TNotaPartida> notas_;
  /// Of a document in words.
  std::vector<TDatosPartida> lineas_;
};

}  // namespace vel::facil

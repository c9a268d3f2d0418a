#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string_view>

#include "Uutilext/documents/TiposDocto.h"
#include "framework/TClientDataSet.h"
#include "framework/TStringList.h"
#include "utilvel90_export.h"

namespace vel {

struct TDatosPartida;
namespace cascada {
struct Factores;
}

/// Calculation process. Any value is legal; only PROC_POR_DOCUMENTO changes the calculation: the lines of
/// several documents, told apart by "CVE_DOC", are totalled together.
enum class ENUM_PROC_FACTCOMP : std::int32_t { PROC_NORMAL = 0, PROC_POR_DOCUMENTO = 9 };

class TResumenFiscal;

/// Discounts, taxes and totals of one sales or purchase document, as electronic invoices need them. Build an
/// object, hand it the header and the lines, call CalculaTotales and read the members.
///
/// Amounts are doubles in the document's currency; rates and discounts are percentages (16 is 16 %). Arrays
/// are 0-based: element 0 belongs to tax or discount 1. Line amounts are rounded to DecimalesPartida decimals
/// and document totals to DecimalesTotales, by g_redoTo.
///
/// The fields of a line:
///
///     CANT                  quantity
///     PREC, COST            unit price, and unit cost, on which purchases are taxed
///     TIP_CAM               exchange rate, by which amounts are divided
///     DESC1 to DESC3        discounts of a sale in percent
///     DESCU                 discount of a purchase in percent
///     IMPU1 to IMPU8        rates of the taxes in percent
///     IMP1APLA to IMP8APLA  base code of each tax: 0 the amount less discounts, 1 to 7 the taxes 1 to n too;
///                           4 and 6: the tax does not apply, nor does it when the field is missing, whatever
///                           its rate
///     MAN_IEPS              "S" when one tax is an excise quota: APL_MAN_IMP is its number (1 to 8),
///                           APL_MAN_IEPS its mode (see AplicaImpuAdicIEPS), MTO_CUOTA the quota
///     CVE_DOC               key of the document
///     TIPO_PROD, TIPO_ELEM  kinds of product and element: "P" or "S" with "K", and "G" with "N", do not
///                           count
///     MUESTRA_PAR           "N" or empty on a line that is taxed
///
/// The engine does not know which taxes its eight numbers are. The suite's usual meaning is 1 IEPS, 2 ISR
/// withheld, 3 IVA withheld and 4 IVA (AsignacionUsual); 5 to 8 are free, for local taxes say. IVA that falls
/// on the IEPS too has code 1. It adds all of them: a withholding is a tax at a negative rate (-10), which
/// enters no list.
///
/// A line that no tax applies to, is hidden or does not count has no discounts of its own: it adds those of
/// the line before once more (AcumulaDescuentosPar). facil/Documento.h builds lines that avoid what can be
/// avoided, and tells of the rest.
///
/// A field that is missing raises EDatabaseError naming it when it is first read ("IMP1APLA" to "IMP8APLA"
/// and "MUESTRA_PAR" are optional); a text that is no number raises EConvertError. Totals are then partial;
/// when memory runs out, totals and lists are as they were, and the lines may stand on another one. A null
/// field reads as 0 or the empty text; a zero exchange rate or quantity gives infinity or NaN.
/// Threads: one at a time.
class UTILVEL90_EXPORT TCalculoCFDI {
 public:
  /// How many taxes a line has.
  static constexpr int kImpuestos = 8;
  /// How many discounts a line of a sale has.
  static constexpr int kDescuentos = 3;
  /// A number for each tax.
  using Impuestos = std::array<double, kImpuestos>;
  /// A number for each discount.
  using Descuentos = std::array<double, kDescuentos>;

  /// Without header and lines; amounts zero, two decimals for totals and six for lines.
  TCalculoCFDI(ENUM_MODULO modulo, ENUM_PROC_FACTCOMP proceso, TIPO_DOCTO tipoDocto);
  TCalculoCFDI(const TCalculoCFDI&) = delete;
  TCalculoCFDI& operator=(const TCalculoCFDI&) = delete;
  ~TCalculoCFDI();

  /// Zeroes amounts, totals and percentages, and sets the decimals to 2 and 6. Data sets, lists and switches
  /// stay.
  void InicializaValores() noexcept;

  /// Replaces the header by a copy of the data set given.
  void SetCabecera(const TClientDataSet& cabecera);
  /// Appends copies of the records given to the lines; a second call adds to the first.
  void SetPartidas(const TClientDataSet& partidas);

  /// Computes every total from zero. The tax lists are not emptied: a second calculation on the same object
  /// adds to them, and with them to the totals of taxes that have more than one rate.
  void CalculaTotales();

  /// Computes discounts, by the PorcDescuento that stand, and taxes of the current line; the taxes enter
  /// TotalImpuesto and the lists.
  void CalculaImpDescPar();
  /// Computes the three discounts, each on the whole amount, and returns their sum.
  double CalculaDescuentosPar(double importe);
  /// Adds the line's discounts to the document's.
  void AcumulaDescuentosPar() noexcept;

  /// Adds tax `indice` (0 to 7) of the line at `tasa` percent on the base that `codigo` gives: the amount and
  /// the line's taxes 1 to `codigo` (0 to 7; any other code adds nothing). Adds the rounded line tax to the
  /// document's and returns it. An index out of range raises EInvalidOperation.
  double AplicaImpuesto(double base, double tasa, int codigo, int indice);

  /// AplicaImpuesto for an excise tax with a quota ("MTO_CUOTA" of the current line): mode "M" takes the
  /// larger of tax and quota, "C" the quota alone, "A" both; any other mode adds nothing. The document's
  /// total of that tax becomes the line's own, whatever earlier lines had added: existing documents are
  /// computed so. Returns the line tax, not rounded.
  double AplicaImpuAdicIEPS(std::u16string_view modo, double base, double tasa, int codigo, int indice);

  /// Adds a line to the list of tax `numero` (1 to 8), under its rate: base and tax. Rates that are not above
  /// zero and other numbers are ignored.
  void LlenaListImpuestos(double base, double tasa, double impuesto, int numero);

  /// Points `lista` at the list of tax `numero` (1 to 8), still owned by this object; any other number leaves
  /// it alone. An entry's text is the rate and its object a TStringList of two texts: taxable base and tax of
  /// the lines at that rate. The list stays the same one, and what it holds counts: entries that the caller
  /// removes are gone from later totals. Later operations change and add entries, and remove none.
  void DameListImpuestos(TStringList*& lista, int numero);

  /// Totals by 0-based index; 0 out of range.
  double GetTotalImpuesto(int indice) const noexcept;
  double GetTotalDescuento(int indice) const noexcept;

  /// Sales or purchases: which fields a line has.
  ENUM_MODULO Modulo;
  /// Whether the lines of several documents are totalled together.
  ENUM_PROC_FACTCOMP Proceso;
  /// Type and header are kept for the caller: no total depends on them.
  TIPO_DOCTO TipoDocto;
  /// The header, as SetCabecera left it.
  TClientDataSet Cabecera;
  /// The lines; the current record is the one being computed.
  TClientDataSet Partidas;
  /// Takes every exchange rate as 1.
  bool IgnoraTipoCambio = false;
  /// Which taxes enter the subtotal when SubtotalSimple is off.
  std::array<bool, kImpuestos> IncluyeImpuesto;
  /// Percentages of the discounts that CalculaDescuentosPar takes.
  Descuentos PorcDescuento;
  /// Discounts of the document, one by one.
  Descuentos TotalDescuento;
  /// Off: the price enters a line's amount once for each tax, eight times in all, with the included taxes.
  bool SubtotalSimple = true;
  /// Amounts of the lines that count, rounded to DecimalesTotales.
  double Subtotal;
  /// Sum of the taxes while calculating; then the document total: taxes plus subtotal less discounts.
  double TotalImpuestos;
  /// Sum of the taxes, rounded to DecimalesTotales: what most callers mean by total taxes.
  double TotalImpuestosRedondeado;
  /// All discounts of the document.
  double SumaDescuentos;
  /// Decimals that totals are rounded to.
  int DecimalesTotales;
  /// Decimals that amounts of lines are rounded to.
  int DecimalesPartida;
  /// Taxes of the current line, not rounded.
  Impuestos ImpuestoPartida;
  /// Discounts of the current line.
  Descuentos DescuentoPartida;
  /// Taxes of the document, one by one.
  Impuestos TotalImpuesto;
  /// See DameListImpuestos.
  std::array<TStringList, kImpuestos> ListaImpuesto;

 private:
  // These read the lines by the same fields.
  friend class TResumenFiscal;
  friend UTILVEL90_EXPORT TDatosPartida LeePartida(const TClientDataSet& partidas, ENUM_MODULO modulo,
                                                   bool ignoraTipoCambio);
  struct CamposPartida;
  struct CamposBuscados;
  struct Gravado;
  struct Interno;

  const CamposPartida& Campos();
  double RedondeaPartida(double valor) const;
  double RedondeaTotal(double valor) const;
  void RecorrePartidas();
  void ImpuestosDePartida(const CamposPartida& campos, const cascada::Factores* leidos);
  double ImporteConImpuestos(double cantidad, double precio, double cambio) const;
  void CierraTotales();
  // A calculation works on the lists as numbers: reads them at its start and writes them at its end.
  template <typename Trabajo>
  void ConListas(const Trabajo& trabajo);
  void LeeLista(std::size_t impuesto);
  void EscribeListas(std::size_t primera, std::size_t fin);
  void Grava(double base, double tasa, double impuesto, std::size_t numero);

  std::unique_ptr<Interno> interno_;
  // Programs built with 9.0 give the object room for eight lists here, and no more.
  [[maybe_unused]] std::array<void*, 3 * kImpuestos - 1> sinUso_{};
};

}  // namespace vel

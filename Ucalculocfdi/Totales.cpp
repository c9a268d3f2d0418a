// Totals of a document and its tax lists.

#include "Ucalculocfdi/CamposPartida.h"
#include "Ucalculocfdi/Listas.h"
#include "Ucalculocfdi/TCalculoCFDI.h"
#include "Uutilext/documents/Redondeo.h"

namespace vel {

TCalculoCFDI::TCalculoCFDI(ENUM_MODULO modulo, ENUM_PROC_FACTCOMP proceso, TIPO_DOCTO tipoDocto)
    : Modulo(modulo), Proceso(proceso), TipoDocto(tipoDocto), interno_(std::make_unique<Interno>()) {
  InicializaValores();
  IncluyeImpuesto.fill(true);
}

TCalculoCFDI::~TCalculoCFDI() = default;

void TCalculoCFDI::InicializaValores() noexcept {
  PorcDescuento.fill(0);
  TotalDescuento.fill(0);
  Subtotal = 0;
  TotalImpuestos = 0;
  TotalImpuestosRedondeado = 0;
  SumaDescuentos = 0;
  DecimalesTotales = 2;
  DecimalesPartida = 6;
  ImpuestoPartida.fill(0);
  DescuentoPartida.fill(0);
  TotalImpuesto.fill(0);
}

void TCalculoCFDI::SetCabecera(const TClientDataSet& cabecera) { Cabecera.AssignData(cabecera); }

void TCalculoCFDI::SetPartidas(const TClientDataSet& partidas) { Partidas.AppendData(partidas); }

double TCalculoCFDI::RedondeaTotal(double valor) const { return g_redoTo(valor, DecimalesTotales); }

void TCalculoCFDI::CalculaTotales() {
  ConListas([this] {
    RecorrePartidas();
    CierraTotales();
  });
}

bool TCalculoCFDI::CamposPartida::SeCuenta() const {
  if (tipoProducto.Es(u"P") || tipoProducto.Es(u"S")) return !tipoElemento.Es(u"K");
  return !(tipoProducto.Es(u"G") && tipoElemento.Es(u"N"));
}

bool TCalculoCFDI::CamposPartida::SeMuestra() const {
  return !muestra.Existe() || muestra.Es(u"N") || muestra.Es(u"");
}

void TCalculoCFDI::RecorrePartidas() {
  InicializaValores();
  const CamposPartida& campos = Campos();
  Partidas.First();
  UnicodeString documento = Partidas.IsEmpty() ? UnicodeString() : (*campos.documento).AsString();
  while (!Partidas.Eof()) {
    double importe = 0;
    if (Modulo == ENUM_MODULO::MODULO_VENTAS) {
      for (std::size_t i = 0; i < kDescuentos; ++i) PorcDescuento[i] = campos.descuento[i].Real();
    } else {
      PorcDescuento = {campos.descuentoCompra.Real(), 0, 0};
    }
    const cascada::Factores f{RedondeaPartida(campos.cantidad.Real()), RedondeaPartida(campos.precio.Real()),
                              IgnoraTipoCambio ? 1.0 : RedondeaPartida(campos.cambio.Real())};
    if (campos.SeCuenta()) {
      if (campos.SeMuestra()) ImpuestosDePartida(campos, &f);
      importe = SubtotalSimple ? f.cantidad * f.precio / f.cambio
                               : ImporteConImpuestos(f.cantidad, f.precio, f.cambio);
    }
    Partidas.Next();
    Subtotal += importe;
    // After the last line the last record is read again, so the last document never closes here.
    if (Proceso == ENUM_PROC_FACTCOMP::PROC_POR_DOCUMENTO && !campos.documento.Es(documento)) {
      documento = (*campos.documento).AsString();
      Subtotal = RedondeaTotal(Subtotal);
      CalculaDescuentosPar(Subtotal);
    }
    // Also for lines whose discounts were not computed: they add the last ones again.
    AcumulaDescuentosPar();
  }
}

double TCalculoCFDI::ImporteConImpuestos(double cantidad, double precio, double cambio) const {
  double importe = 0;
  for (std::size_t i = 0; i < kImpuestos; ++i) {
    double p = precio;
    if (IncluyeImpuesto[i]) p += RedondeaPartida(ImpuestoPartida[i] / cantidad / cambio);
    importe += cantidad * p / cambio;
  }
  return importe;
}

void TCalculoCFDI::CierraTotales() {
  const double s = Subtotal;
  for (const double descuento : TotalDescuento) SumaDescuentos += descuento;
  for (std::size_t k = 0; k < kImpuestos; ++k) {
    const std::vector<Gravado>& gravados = interno_->gravados[k];
    if (gravados.size() > 1) {
      TotalImpuesto[k] = 0;
      for (const Gravado& g : gravados) TotalImpuesto[k] += RedondeaTotal(g.impuesto);
    }
    TotalImpuestos += TotalImpuesto[k];
  }
  TotalImpuestosRedondeado = RedondeaTotal(TotalImpuestos);
  Subtotal = RedondeaTotal(Subtotal);
  TotalImpuestos = RedondeaTotal(TotalImpuestos) + RedondeaTotal(s - SumaDescuentos);
}

void TCalculoCFDI::LlenaListImpuestos(double base, double tasa, double impuesto, int numero) {
  if (!(tasa > 0) || numero < 1 || numero > kImpuestos) return;
  const auto k = static_cast<std::size_t>(numero - 1);
  LeeLista(k);
  Grava(base, tasa, impuesto, k);
  EscribeListas(k, k + 1);
}

void TCalculoCFDI::DameListImpuestos(TStringList*& lista, int numero) {
  if (numero >= 1 && numero <= kImpuestos) lista = &ListaImpuesto[static_cast<std::size_t>(numero - 1)];
}

double TCalculoCFDI::GetTotalImpuesto(int indice) const noexcept {
  return indice >= 0 && indice < kImpuestos ? TotalImpuesto[static_cast<std::size_t>(indice)] : 0;
}

double TCalculoCFDI::GetTotalDescuento(int indice) const noexcept {
  return indice >= 0 && indice < kDescuentos ? TotalDescuento[static_cast<std::size_t>(indice)] : 0;
}

}  // namespace vel

// Discounts and taxes of one line.

#include "Ucalculocfdi/CamposPartida.h"
#include "Ucalculocfdi/Listas.h"
#include "Ucalculocfdi/TCalculoCFDI.h"
#include "Uutilext/documents/Redondeo.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel {
namespace {

void ExigeIndice(int indice) {
  if (indice >= 0 && indice < TCalculoCFDI::kImpuestos) return;
  throw EInvalidOperation(u"El impuesto " + IntToStr(indice) + u" no existe: los índices van de 0 a 7");
}

}  // namespace

TCalculoCFDI::CamposPartida::CamposPartida(const TClientDataSet& p, ENUM_MODULO modulo)
    : cantidad(p, u"CANT"),
      precio(p, u"PREC"),
      precioPartida(p, modulo == ENUM_MODULO::MODULO_VENTAS ? u"PREC" : u"COST"),
      cambio(p, u"TIP_CAM"),
      tasa{{{p, u"IMPU1"},
            {p, u"IMPU2"},
            {p, u"IMPU3"},
            {p, u"IMPU4"},
            {p, u"IMPU5"},
            {p, u"IMPU6"},
            {p, u"IMPU7"},
            {p, u"IMPU8"}}},
      aplica{{{p, u"IMP1APLA"},
              {p, u"IMP2APLA"},
              {p, u"IMP3APLA"},
              {p, u"IMP4APLA"},
              {p, u"IMP5APLA"},
              {p, u"IMP6APLA"},
              {p, u"IMP7APLA"},
              {p, u"IMP8APLA"}}},
      manejaIeps(p, u"MAN_IEPS"),
      impuestoConCuota(p, u"APL_MAN_IMP"),
      modoCuota(p, u"APL_MAN_IEPS"),
      cuota(p, u"MTO_CUOTA"),
      documento(p, u"CVE_DOC"),
      tipoProducto(p, u"TIPO_PROD"),
      tipoElemento(p, u"TIPO_ELEM"),
      muestra(p, u"MUESTRA_PAR"),
      descuento{{{p, u"DESC1"}, {p, u"DESC2"}, {p, u"DESC3"}}},
      descuentoCompra(p, u"DESCU") {}

bool TCalculoCFDI::CamposPartida::Campo::Es(std::u16string_view texto) const {
  const TField& campo = **this;
  switch (campo.DataType()) {
    case TFieldType::ftString:
    case TFieldType::ftWideString:
      return campo.TextView() == texto;
    default:
      return campo.AsString() == texto;
  }
}

int TCalculoCFDI::CamposPartida::Codigo(std::size_t impuesto) const {
  return aplica[impuesto].Existe() ? (*aplica[impuesto]).AsInteger() : kNoAplicaOmision;
}

bool TCalculoCFDI::CamposPartida::ConCuota(std::size_t impuesto) const {
  return manejaIeps.Es(u"S") && (*impuestoConCuota).AsInteger() == static_cast<int>(impuesto) + 1;
}

double TCalculoCFDI::RedondeaPartida(double valor) const { return g_redoTo(valor, DecimalesPartida); }

void TCalculoCFDI::CalculaImpDescPar() {
  ConListas([this] { ImpuestosDePartida(CamposPartida(Partidas, Modulo)); });
}

void TCalculoCFDI::ImpuestosDePartida(const CamposPartida& campos) {
  ImpuestoPartida.fill(0);
  // Amount, discounts and base come out the same for every tax of the line: the first one computes them.
  bool conBase = false;
  double base = 0;
  for (std::size_t i = 0; i < kImpuestos; ++i) {
    const int codigo = campos.Codigo(i);
    if (!CamposPartida::Aplica(codigo)) continue;
    const double tasa = RedondeaPartida(campos.tasa[i].Real());
    if (!conBase) {
      const double cantidad = RedondeaPartida(campos.cantidad.Real());
      const double precio = RedondeaPartida(campos.precioPartida.Real());
      const double cambio = IgnoraTipoCambio ? 1.0 : RedondeaPartida(campos.cambio.Real());
      const double importe = RedondeaPartida(cantidad * precio / cambio);
      base = importe - CalculaDescuentosPar(importe);
      conBase = true;
    }
    const int indice = static_cast<int>(i);
    const bool conCuota = campos.ConCuota(i);
    const double impuesto =
        conCuota ? AplicaImpuAdicIEPS((*campos.modoCuota).AsString(), base, tasa, codigo, indice)
                 : AplicaImpuesto(base, tasa, codigo, indice);
    Grava(base, tasa, impuesto, i);
  }
}

double TCalculoCFDI::CalculaDescuentosPar(double importe) {
  double suma = 0;
  for (std::size_t i = 0; i < kDescuentos; ++i) {
    DescuentoPartida[i] = RedondeaPartida(PorcDescuento[i] / 100 * importe);
    suma += DescuentoPartida[i];
  }
  return suma;
}

void TCalculoCFDI::AcumulaDescuentosPar() noexcept {
  for (std::size_t i = 0; i < kDescuentos; ++i) TotalDescuento[i] += DescuentoPartida[i];
}

double TCalculoCFDI::AplicaImpuesto(double base, double tasa, int codigo, int indice) {
  ExigeIndice(indice);
  const auto i = static_cast<std::size_t>(indice);
  if (codigo >= 0 && codigo < kImpuestos) {
    double gravable = base;
    for (std::size_t k = 0; k < static_cast<std::size_t>(codigo); ++k) gravable += ImpuestoPartida[k];
    ImpuestoPartida[i] += gravable / 100 * tasa;
  }
  const double impuesto = RedondeaPartida(ImpuestoPartida[i]);
  TotalImpuesto[i] += impuesto;
  return impuesto;
}

double TCalculoCFDI::AplicaImpuAdicIEPS(std::u16string_view modo, double base, double tasa, int codigo,
                                        int indice) {
  ExigeIndice(indice);
  const auto i = static_cast<std::size_t>(indice);
  const double cuota = Partidas.FieldByName(u"MTO_CUOTA").AsFloat();
  if (modo == u"M") {
    const double impuesto = AplicaImpuesto(base, tasa, codigo, indice);
    if (impuesto < cuota) {
      TotalImpuesto[i] -= impuesto;
      ImpuestoPartida[i] = cuota;
    }
  } else if (modo == u"C") {
    ImpuestoPartida[i] = cuota;
  } else if (modo == u"A") {
    AplicaImpuesto(base, tasa, codigo, indice);
    ImpuestoPartida[i] += cuota;
  }
  TotalImpuesto[i] = RedondeaPartida(ImpuestoPartida[i]);
  return ImpuestoPartida[i];
}

}  // namespace vel

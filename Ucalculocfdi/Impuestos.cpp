// Discounts and taxes of one line.

#include "Ucalculocfdi/CamposPartida.h"
#include "Ucalculocfdi/Cascada.h"
#include "Ucalculocfdi/Listas.h"
#include "Ucalculocfdi/TCalculoCFDI.h"
#include "Uutilext/documents/Redondeo.h"
#include "framework/Columnas.h"
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

// Small documents cost more in looking up their fields than in computing them.
const TCalculoCFDI::CamposPartida& TCalculoCFDI::Campos() {
  const auto& estructura = conjunto::Estado::De(Partidas).estructura;
  std::unique_ptr<CamposBuscados>& campos = interno_->campos;
  if (campos == nullptr || campos->estructura != estructura || campos->modulo != Modulo) {
    campos = std::make_unique<CamposBuscados>(Partidas, Modulo, estructura);
  }
  return campos->campos;
}

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
  return aplica[impuesto].Existe() ? (*aplica[impuesto]).AsInteger() : TDatosPartida::kNoAplica;
}

bool TCalculoCFDI::CamposPartida::ConCuota(std::size_t impuesto) const {
  return manejaIeps.Es(u"S") && (*impuestoConCuota).AsInteger() == static_cast<int>(impuesto) + 1;
}

double TCalculoCFDI::RedondeaPartida(double valor) const { return g_redoTo(valor, DecimalesPartida); }

void TCalculoCFDI::CalculaImpDescPar() {
  ConListas([this] { ImpuestosDePartida(Campos(), nullptr); });
}

// `leidos` are the line's factors when the caller has read them: those of its sale. A purchase is taxed on
// its cost, which is read when a tax asks for it.
void TCalculoCFDI::ImpuestosDePartida(const CamposPartida& campos, const cascada::Factores* leidos) {
  ImpuestoPartida.fill(0);
  const auto base = [&] {
    cascada::Factores f =
        leidos != nullptr ? *leidos : cascada::LeeFactores(campos, IgnoraTipoCambio, DecimalesPartida);
    if (leidos != nullptr && Modulo != ENUM_MODULO::MODULO_VENTAS)
      f.precio = RedondeaPartida(campos.Precio());
    const double importe = f.Importe(DecimalesPartida);
    return importe - CalculaDescuentosPar(importe);
  };
  cascada::Recorre(campos, DecimalesPartida, base,
                   [&](std::size_t i, int codigo, double tasa, double gravado, bool conCuota) {
                     const int indice = static_cast<int>(i);
                     const double impuesto = conCuota ? AplicaImpuAdicIEPS((*campos.modoCuota).AsString(),
                                                                           gravado, tasa, codigo, indice)
                                                      : AplicaImpuesto(gravado, tasa, codigo, indice);
                     Grava(gravado, tasa, impuesto, i);
                   });
}

double TCalculoCFDI::CalculaDescuentosPar(double importe) {
  return cascada::Descuenta(PorcDescuento, importe, DecimalesPartida, DescuentoPartida);
}

void TCalculoCFDI::AcumulaDescuentosPar() noexcept {
  for (std::size_t i = 0; i < kDescuentos; ++i) TotalDescuento[i] += DescuentoPartida[i];
}

double TCalculoCFDI::AplicaImpuesto(double base, double tasa, int codigo, int indice) {
  ExigeIndice(indice);
  const auto i = static_cast<std::size_t>(indice);
  cascada::SumaPorcentaje(ImpuestoPartida, base, tasa, codigo, i);
  const double impuesto = RedondeaPartida(ImpuestoPartida[i]);
  TotalImpuesto[i] += impuesto;
  return impuesto;
}

double TCalculoCFDI::AplicaImpuAdicIEPS(std::u16string_view modo, double base, double tasa, int codigo,
                                        int indice) {
  ExigeIndice(indice);
  const auto i = static_cast<std::size_t>(indice);
  const double cuota = Partidas.FieldByName(u"MTO_CUOTA").AsFloat();
  cascada::SumaConCuota(cascada::ModoCuota(modo), cuota, ImpuestoPartida[i],
                        [&] { return AplicaImpuesto(base, tasa, codigo, indice); });
  // Not added: what earlier lines and the percentage above left there goes.
  TotalImpuesto[i] = RedondeaPartida(ImpuestoPartida[i]);
  return ImpuestoPartida[i];
}

}  // namespace vel

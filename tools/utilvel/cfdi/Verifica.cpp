#include "tools/utilvel/cfdi/Verifica.h"

#include <algorithm>

#include "tools/utilvel/cfdi/CertificadoFactura.h"
#include "tools/utilvel/cfdi/Cotejo.h"
#include "tools/utilvel/cfdi/TotalMotor.h"

namespace utilvel::cfdi {
namespace {

using vel::ENUM_FACTOR_FISCAL;

constexpr NombresResumen kNombres33 = {nullptr, "Importe"};
constexpr NombresResumen kNombres40 = {"Base", "Importe", u"CFDI40215", u"CFDI40221", u"CFDI40211"};

Lugar En(const char* parte, std::size_t numero = 0) {
  Lugar lugar;
  lugar.partes[0] = {parte, numero};
  return lugar;
}

/// Checks the lines and returns the sums of their taxes.
SumasImpuestos CotejaConceptos(Cotejo& cotejo, const Comprobante& c) {
  SumasImpuestos sumas;
  for (std::size_t i = 0; i < c.conceptos.size(); ++i) {
    const Concepto& concepto = c.conceptos[i];
    Lugar lugar = En("Concepto", i + 1);
    cotejo.Importe(lugar, concepto);
    std::array<std::size_t, 2> cuenta = {};
    for (const Impuesto& impuesto : concepto.impuestos) {
      lugar.partes[1] = {impuesto.retenido ? "retención" : "traslado", ++cuenta[impuesto.retenido ? 1 : 0]};
      lugar.impuesto = &impuesto;
      cotejo.ImporteImpuesto(lugar, "Importe", impuesto, impuesto.retenido ? u"CFDI40186" : u"CFDI40180");
      // Version 3.3 prints no exempt taxes of the document.
      if (c.version == Version::V33 && impuesto.factor == ENUM_FACTOR_FISCAL::EXENTO) continue;
      sumas[Clave(impuesto)].Agrega(impuesto);
    }
  }
  return sumas;
}

void CotejaImpuestos(Cotejo& cotejo, const Comprobante& c, SumasImpuestos& sumas) {
  const Lugar lugar = En("Impuestos");
  CotejaResumen(cotejo, lugar, c.impuestos.impuestos, sumas,
                c.version == Version::V40 ? kNombres40 : kNombres33, false);
  Suma trasladados;
  Suma retenidos;
  for (const Impuesto& impuesto : c.impuestos.impuestos)
    if (impuesto.importe) (impuesto.retenido ? retenidos : trasladados).Agrega(*impuesto.importe);
  const int decimales = cotejo.DecimalesMoneda();
  cotejo.Exacto(lugar, "TotalImpuestosTrasladados", c.impuestos.totalTrasladados,
                trasladados.Redondeada(decimales), u"CFDI40205");
  cotejo.Exacto(lugar, "TotalImpuestosRetenidos", c.impuestos.totalRetenidos, retenidos.Redondeada(decimales),
                u"CFDI40203");
}

void CotejaLocales(Cotejo& cotejo, const ImpuestosLocales& locales) {
  const auto coteja = [&cotejo](const char* cifra, const TMontoFiscal& impreso,
                                const std::vector<TMontoFiscal>& partes) {
    Suma suma;
    for (const TMontoFiscal& parte : partes) suma.Agrega(parte);
    cotejo.Exacto(En("Impuestos locales"), cifra, impreso, suma.Redondeada(cotejo.DecimalesMoneda()),
                  u"IMPLOCAL");
  };
  coteja("TotaldeTraslados", locales.totalTrasladados, locales.trasladados);
  coteja("TotaldeRetenciones", locales.totalRetenidos, locales.retenidos);
}

void CotejaTotales(Cotejo& cotejo, const Comprobante& c) {
  const Lugar lugar = En("Comprobante");
  const int decimales = cotejo.DecimalesMoneda();
  Suma subTotal;
  Suma descuento;
  // Goods that are moved and payments that are received are no income: their subtotal is zero.
  const bool suma = c.tipo != 'T' && c.tipo != 'P';
  for (const Concepto& concepto : c.conceptos) {
    if (suma) subTotal.Agrega(concepto.importe);
    if (concepto.descuento) descuento.Agrega(*concepto.descuento);
  }
  cotejo.Exacto(lugar, "SubTotal", c.subTotal, subTotal.Redondeada(decimales), u"CFDI40108");
  cotejo.Exacto(lugar, "Descuento", c.descuento, descuento.Redondeada(decimales), u"CFDI40111");
  Suma total;
  total.Agrega(c.subTotal);
  if (c.descuento) total.Quita(*c.descuento);
  if (c.impuestos.totalTrasladados) total.Agrega(*c.impuestos.totalTrasladados);
  if (c.impuestos.totalRetenidos) total.Quita(*c.impuestos.totalRetenidos);
  if (c.locales) {
    total.Agrega(c.locales->totalTrasladados);
    total.Quita(c.locales->totalRetenidos);
  }
  cotejo.Exacto(lugar, "Total", c.total, total.Redondeada(decimales), u"CFDI40119");
}

utilvel::cfdi::Estado EstadoDe(const Informe& informe) {
  using enum EstadoCertificado;
  const EstadoCertificado certificado = informe.certificado.estado;
  const bool todasEnLimites = std::all_of(informe.diferencias.begin(), informe.diferencias.end(),
                                          [](const Diferencia& d) { return d.enLimites; });
  if (!todasEnLimites || (certificado != Correcto && certificado != Falta)) return Estado::ConDiferencias;
  return informe.diferencias.empty() ? Estado::Correcta : Estado::EnLimites;
}

}  // namespace

struct Verificador::Estado {
  Certificados certificados;
  TotalMotor motor;
};

Verificador::Verificador() : estado_(std::make_unique<Estado>()) {}

Verificador::~Verificador() = default;

Informe Verificador::Verifica(std::string_view bytes) {
  Informe informe;
  informe.comprobante = LeeComprobante(bytes);
  const Comprobante& c = informe.comprobante;
  Cotejo cotejo(c.version, c.fecha, DecimalesMoneda(c.moneda));
  SumasImpuestos sumas = CotejaConceptos(cotejo, c);
  CotejaImpuestos(cotejo, c, sumas);
  if (c.locales) CotejaLocales(cotejo, *c.locales);
  CotejaTotales(cotejo, c);
  for (const Pagos& pagos : c.pagos) CotejaPagos(cotejo, pagos);
  informe.diferencias = std::move(cotejo).Diferencias();
  informe.certificado = estado_->certificados.Revisa(c);
  informe.totalMotor = estado_->motor.Calcula(c);
  informe.estado = EstadoDe(informe);
  return informe;
}

}  // namespace utilvel::cfdi

// The complement of payments: what was paid of each document, and its taxes.

#include "tools/utilvel/cfdi/Cotejo.h"

namespace utilvel::cfdi {
namespace {

using vel::ENUM_IMPUESTO_FISCAL;

constexpr TMontoFiscal kUno{1, 0};
// The totals of version 2.0 are in MXN.
constexpr int kDecimalesTotales = 2;

/// What the payments' printed taxes, or their amounts, add up to in MXN.
TMontoFiscal SumaTotal(const Pagos& pagos, const TotalPagos& total) {
  Suma suma(2 * kDecimales);
  for (const Pago& pago : pagos.pagos) {
    const Entero128 cambio = Unidades(pago.tipoCambio.value_or(kUno), kDecimales);
    const auto agrega = [&](const TMontoFiscal& monto) {
      suma.Agrega(Multiplica(Unidades(monto, kDecimales), cambio));
    };
    if (total.impuesto == ENUM_IMPUESTO_FISCAL::NINGUNO) {
      agrega(pago.monto);
      continue;
    }
    const ClaveImpuesto clave{total.impuesto, total.retenido, total.factor, total.tasa};
    for (const Impuesto& impuesto : pago.impuestos.impuestos) {
      const std::optional<TMontoFiscal>& monto = total.base ? impuesto.base : impuesto.importe;
      if (monto && Clave(impuesto) == clave) agrega(*monto);
    }
  }
  return suma.Redondeada(kDecimalesTotales);
}

void CotejaSaldo(Cotejo& cotejo, const Lugar& lugar, const DocumentoPagado& documento) {
  if (!documento.saldoAnterior || !documento.pagado || !documento.saldoInsoluto) return;
  cotejo.Exacto(lugar, "ImpSaldoInsoluto", documento.saldoInsoluto,
                Resta(*documento.saldoAnterior, *documento.pagado));
}

/// The payment may be more than what it pays of the documents, not less.
void CotejaMonto(Cotejo& cotejo, const Lugar& lugar, const Pago& pago) {
  SumaConMargen pagado;
  for (const DocumentoPagado& documento : pago.documentos)
    if (documento.pagado) pagado.Agrega(*documento.pagado, documento.equivalencia.value_or(kUno));
  const int decimales = cotejo.DecimalesMoneda();
  if (Compara(pago.monto, pagado.Redondeada(decimales)) < 0)
    cotejo.ConMargen(lugar, "Monto", pago.monto, pagado, decimales);
}

void CotejaPago(Cotejo& cotejo, std::size_t numero, const Pago& pago, bool dos) {
  Lugar lugar;
  lugar.partes[0] = {"Pago", numero};
  const int delPago = cotejo.DecimalesMoneda();
  CotejaMonto(cotejo, lugar, pago);
  SumasImpuestos sumas;
  for (std::size_t i = 0; i < pago.documentos.size(); ++i) {
    const DocumentoPagado& documento = pago.documentos[i];
    const TMontoFiscal equivalencia = documento.equivalencia.value_or(kUno);
    Lugar aqui = lugar;
    aqui.partes[1] = {"documento", i + 1};
    // What is printed of a document is in its own currency.
    if (!documento.moneda.empty()) cotejo.PonDecimales(DecimalesMoneda(documento.moneda));
    CotejaSaldo(cotejo, aqui, documento);
    std::array<std::size_t, 2> cuenta = {};
    for (const Impuesto& impuesto : documento.impuestos) {
      aqui.partes[2] = {impuesto.retenido ? "retención" : "traslado", ++cuenta[impuesto.retenido ? 1 : 0]};
      aqui.impuesto = &impuesto;
      cotejo.ImporteImpuesto(aqui, "ImporteDR", impuesto, {});
      sumas[Clave(impuesto)].Agrega(impuesto, equivalencia);
    }
    cotejo.PonDecimales(delPago);
  }
  if (dos) {
    CotejaResumen(cotejo, lugar, pago.impuestos.impuestos, sumas, {"BaseP", "ImporteP"}, true);
    return;
  }
  Suma trasladados;
  Suma retenidos;
  for (const Impuesto& impuesto : pago.impuestos.impuestos)
    if (impuesto.importe) (impuesto.retenido ? retenidos : trasladados).Agrega(*impuesto.importe);
  const int decimales = cotejo.DecimalesMoneda();
  cotejo.Exacto(lugar, "TotalImpuestosTrasladados", pago.impuestos.totalTrasladados,
                trasladados.Redondeada(decimales));
  cotejo.Exacto(lugar, "TotalImpuestosRetenidos", pago.impuestos.totalRetenidos,
                retenidos.Redondeada(decimales));
}

}  // namespace

void CotejaPagos(Cotejo& cotejo, const Pagos& pagos) {
  const int delDocumento = cotejo.DecimalesMoneda();
  for (std::size_t i = 0; i < pagos.pagos.size(); ++i) {
    cotejo.PonDecimales(DecimalesMoneda(pagos.pagos[i].moneda));
    CotejaPago(cotejo, i + 1, pagos.pagos[i], pagos.dos);
  }
  cotejo.PonDecimales(delDocumento);
  if (!pagos.dos) return;
  Lugar lugar;
  lugar.partes[0] = {"Pagos, totales", 0};
  for (std::size_t i = 0; i < pagos.totales.size(); ++i) {
    cotejo.Exacto(lugar, kTotalesPagos[i].atributo.data(), pagos.totales[i],
                  SumaTotal(pagos, kTotalesPagos[i]));
  }
}

}  // namespace utilvel::cfdi

// One line without a document.

#include "Ucalculocfdi/Partida.h"

#include "Ucalculocfdi/CamposPartida.h"
#include "Ucalculocfdi/Cascada.h"

namespace vel {

TDatosPartida LeePartida(const TClientDataSet& partidas, ENUM_MODULO modulo, bool ignoraTipoCambio) {
  const TCalculoCFDI::CamposPartida campos(partidas, modulo);
  TDatosPartida datos;
  for (std::size_t i = 0; i < datos.Codigo.size(); ++i) {
    datos.Codigo[i] = campos.Codigo(i);
    if (!cascada::Aplica(datos.Codigo[i])) continue;
    datos.Tasa[i] = campos.Tasa(i);
    if (!campos.ConCuota(i)) continue;
    datos.ImpuestoConCuota = static_cast<int>(i) + 1;
    datos.ModoCuota = cascada::ModoCuota((*campos.modoCuota).AsString());
    datos.Cuota = campos.cuota.Real();
  }
  datos.Cantidad = campos.Cantidad();
  datos.Precio = campos.Precio();
  datos.TipoCambio = ignoraTipoCambio ? 1.0 : campos.Cambio();
  if (modulo == ENUM_MODULO::MODULO_VENTAS) {
    for (std::size_t i = 0; i < datos.PorcDescuento.size(); ++i) {
      datos.PorcDescuento[i] = campos.descuento[i].Real();
    }
  } else {
    datos.PorcDescuento[0] = campos.descuentoCompra.Real();
  }
  return datos;
}

TImpuestosPartida CalcularImpuestosPartida(const TDatosPartida& partida, int decimales) {
  const cascada::LineaSola linea{partida};
  TImpuestosPartida r;
  r.Importe = cascada::LeeFactores(linea, false, decimales).Importe(decimales);
  r.Base = r.Importe - cascada::Descuenta(partida.PorcDescuento, r.Importe, decimales, r.Descuento);
  cascada::Recorre(
      linea, decimales, [&r] { return r.Base; },
      [&](std::size_t i, int codigo, double tasa, double base, bool conCuota) {
        r.Aplica[i] = true;
        r.BaseGravable[i] = cascada::Gravable(r.Impuesto, base, codigo);
        const auto porcentaje = [&] {
          cascada::SumaPorcentaje(r.Impuesto, base, tasa, codigo, i);
          return g_redoTo(r.Impuesto[i], decimales);
        };
        if (conCuota) {
          cascada::SumaConCuota(partida.ModoCuota, partida.Cuota, r.Impuesto[i], porcentaje);
          r.ImpuestoRedondeado[i] = g_redoTo(r.Impuesto[i], decimales);
        } else {
          // Added to zero, as a document's total is, which takes the sign off a negative zero.
          r.ImpuestoRedondeado[i] += porcentaje();
        }
      });
  return r;
}

TImpuestosPartida CalcularImpuestosPartida(const TClientDataSet& partidas, ENUM_MODULO modulo,
                                           bool ignoraTipoCambio, int decimales) {
  return CalcularImpuestosPartida(LeePartida(partidas, modulo, ignoraTipoCambio), decimales);
}

}  // namespace vel

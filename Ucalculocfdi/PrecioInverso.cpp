#include "Ucalculocfdi/PrecioInverso.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <numeric>
#include <optional>

#include "Ucalculocfdi/Cascada.h"
#include "Ucalculocfdi/Enteros128.h"
#include "Uutilext/documents/Redondeo.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel {
namespace {

using exacto::Entero128;

constexpr int kDecimales = 6;
constexpr double kMaxTasa = 1000;
// The sizes up to which doubles hold the cents of a total and the millionths of a price.
constexpr double kMaxTotal = 1e12;
constexpr double kMaxNumero = 1e9;

void Exige(bool cumple, const UnicodeString& falta) {
  if (!cumple) throw EInvalidOperation(falta);
}

// Raises unless the number, at six decimals, is above zero (or is zero, with `cero`) and not absurdly large.
void ExigeMonto(double valor, const UnicodeString& nombre, double maximo, bool cero) {
  Exige(std::isfinite(valor), nombre + u" no es un número finito");
  Exige(valor >= 0, nombre + u" no puede ser menor que cero");
  Exige(valor <= maximo, nombre + u" es demasiado grande");
  Exige(cero || exacto::Millonesimas(valor) > 0, nombre + u" debe ser mayor que cero");
}

void Valida(double precio, const TDatosPartida& p, ENUM_PRECIO tipo) {
  ExigeMonto(precio, u"El precio con impuestos", kMaxTotal, true);
  ExigeMonto(p.Cantidad, u"La cantidad", kMaxNumero, false);
  ExigeMonto(p.TipoCambio, u"El tipo de cambio", kMaxNumero, false);
  bool conImpuestos = false;
  for (std::size_t i = 0; i < p.Tasa.size(); ++i) {
    if (!cascada::Aplica(p.Codigo[i])) continue;
    conImpuestos = true;
    const UnicodeString nombre = u"La tasa del impuesto " + IntToStr(static_cast<int>(i) + 1);
    Exige(std::isfinite(p.Tasa[i]), nombre + u" no es un número finito");
    Exige(std::abs(p.Tasa[i]) <= kMaxTasa, nombre + u" pasa de 1000 %");
  }
  Exige(p.ImpuestoConCuota >= 0 && p.ImpuestoConCuota <= TCalculoCFDI::kImpuestos,
        u"El impuesto con cuota debe ir de 1 a 8");
  if (p.ImpuestoConCuota != 0) ExigeMonto(p.Cuota, u"La cuota", kMaxTotal, true);
  double descuentos = 0;
  for (std::size_t i = 0; i < p.PorcDescuento.size(); ++i) {
    ExigeMonto(p.PorcDescuento[i], u"El descuento " + IntToStr(static_cast<int>(i) + 1), 100, true);
    descuentos += p.PorcDescuento[i];
  }
  Exige(descuentos < 100 || (descuentos <= 100 && tipo == ENUM_PRECIO::PRECIO_LISTA),
        u"Los descuentos dejan la partida sin importe");
  Exige(conImpuestos || descuentos == 0,
        u"La partida lleva descuentos y ningún impuesto: sin impuestos no se calculan");
}

// The taxes that a base brings, unrounded.
struct Carga {
  double total;
  TCalculoCFDI::Impuestos impuesto{};
};

Carga CargaDe(const TDatosPartida& partida, double base) {
  Carga carga{.total = base};
  cascada::Recorre(
      cascada::LineaSola{partida}, kDecimales, [base] { return base; },
      [&](std::size_t i, int codigo, double tasa, double b, bool conCuota) {
        const auto porcentaje = [&] {
          cascada::SumaPorcentaje(carga.impuesto, b, tasa, codigo, i);
          return carga.impuesto[i];
        };
        if (conCuota) {
          cascada::SumaConCuota(partida.ModoCuota, partida.Cuota, carga.impuesto[i], porcentaje);
        } else {
          porcentaje();
        }
      });
  carga.total = std::accumulate(carga.impuesto.begin(), carga.impuesto.end(), base);
  return carga;
}

// How the total follows from the base of a line: a straight line, whose start are the quota and the taxes on
// it; where the larger of percentage and quota holds, two that meet.
class TotalPorBase {
 public:
  explicit TotalPorBase(const TDatosPartida& partida) : cuota_(partida.Cuota) {
    TDatosPartida p = partida;
    if (p.ImpuestoConCuota != 0 && p.ModoCuota == ENUM_CUOTA::MINIMA) {
      p.ModoCuota = ENUM_CUOTA::SOLA;
      conCuota_ = Tramo(p);
      p.ImpuestoConCuota = 0;
      porcentaje_ = CargaDe(p, 1).impuesto[static_cast<std::size_t>(partida.ImpuestoConCuota - 1)];
    }
    recta_ = Tramo(p);
    // With less left of a price, thousands of steps of its parts lie within the cents of one total.
    constexpr double kMenosQueda = 0.01;
    Exige(PendienteMenor() >= kMenosQueda, u"Las retenciones se llevan el precio: no hay precio neto");
  }

  double Total(double base) const {
    const Recta& r = GanaCuota(base) ? *conCuota_ : recta_;
    return r.inicio + r.pendiente * base;
  }
  double Base(double total) const {
    const double base = (total - recta_.inicio) / recta_.pendiente;
    return GanaCuota(base) ? (total - conCuota_->inicio) / conCuota_->pendiente : base;
  }
  double PendienteMenor() const {
    return conCuota_ ? std::min(conCuota_->pendiente, recta_.pendiente) : recta_.pendiente;
  }
  bool SinCuota() const { return !conCuota_ && recta_.inicio == 0; }

 private:
  struct Recta {
    double inicio;
    double pendiente;
  };
  static Recta Tramo(TDatosPartida partida) {
    const double inicio = CargaDe(partida, 0).total;
    partida.Cuota = 0;
    return {inicio, CargaDe(partida, 1).total};
  }
  bool GanaCuota(double base) const { return conCuota_ && porcentaje_ * base < cuota_; }

  double cuota_;
  // The tax of the quota on a base of one.
  double porcentaje_ = 0;
  Recta recta_{};
  std::optional<Recta> conCuota_;
};

// A document of one line: CalculaTotales on it.
struct Documento {
  TImpuestosPartida partida;
  double total;
  // Both parts of the total, which are rounded apart, in cents.
  std::int64_t centavosNetos;
  std::int64_t centavosImpuestos;

  std::int64_t Centavos() const { return centavosNetos + centavosImpuestos; }
};

std::int64_t ACentavos(double monto) { return std::llround(monto * 100); }

Documento DocumentoDe(const TDatosPartida& datos) {
  const TImpuestosPartida partida = CalcularImpuestosPartida(datos, kDecimales);
  const double subtotal = g_redoTo(datos.Cantidad, kDecimales) * g_redoTo(datos.Precio, kDecimales) /
                          g_redoTo(datos.TipoCambio, kDecimales);
  const auto suma = [](const auto& montos) { return std::accumulate(montos.begin(), montos.end(), 0.0); };
  const double impuestos = g_redoTo(suma(partida.ImpuestoRedondeado), 2);
  const double neto = g_redoTo(subtotal - suma(partida.Descuento), 2);
  return {partida, impuestos + neto, ACentavos(neto), ACentavos(impuestos)};
}

// Net prices in millionths, tried until the line's total is the one asked for.
class Busqueda {
 public:
  // `paso` is what a millionth of the price adds to the base of the line.
  Busqueda(const TDatosPartida& partida, std::int64_t pedido, double paso, double pendiente)
      : datos_(partida), pedido_(pedido) {
    // Rounding at six decimals makes the amounts waver by some millionths where they pass a half cent.
    constexpr double kVaiven = 8e-6;
    const double vaiven = std::ceil(kVaiven / paso);
    zancada_ = static_cast<std::int64_t>(std::clamp(vaiven / kPasosSeguidos, 1.0, kMaxPrecio));
    seguidos_ = static_cast<int>(std::clamp(vaiven + 2, 3.0, kPasosSeguidos));
    // Both parts are within half a cent, and so is what was asked for: no total comes from farther away.
    constexpr double kAlcance = 0.0151;
    alcance_ = static_cast<std::int64_t>(std::min(kAlcance / (paso * pendiente) + vaiven + 3, kMaxPrecio));
  }

  std::int64_t Encuentra(double exacto) {
    cercano_ = std::llround(std::min(exacto, kMaxPrecio));
    Considera(cercano_, En(cercano_));
    if (residuo_ == 0) return mejor_;
    const std::optional<std::int64_t> abajo = Camina(-1);
    const std::optional<std::int64_t> arriba = Camina(1);
    if (abajo && arriba) {
      const auto distancia = [exacto](std::int64_t precio) {
        return std::abs(static_cast<double>(precio) - exacto);
      };
      return distancia(*abajo) <= distancia(*arriba) ? *abajo : *arriba;
    }
    return abajo ? *abajo : arriba.value_or(mejor_);
  }

  Documento En(std::int64_t precio) {
    datos_.Precio = static_cast<double>(precio) / 1e6;
    return DocumentoDe(datos_);
  }

  static constexpr double kMaxPrecio = kMaxNumero * 1e6;

 private:
  static constexpr double kPasosSeguidos = 64;

  // The first price on that side that reaches the total. Subtotal less discounts and taxes are steps: each
  // step is looked for, by strides that double while nothing changes and then by halves.
  std::optional<std::int64_t> Camina(int sentido) {
    const auto fin =
        std::clamp(cercano_ + sentido * alcance_, std::int64_t{0}, static_cast<std::int64_t>(kMaxPrecio));
    std::int64_t x = cercano_;
    Documento aqui = En(x);
    std::int64_t zancada = zancada_;
    int iguales = 0;
    const auto igual = [&aqui](const Documento& d) {
      return d.centavosNetos == aqui.centavosNetos && d.centavosImpuestos == aqui.centavosImpuestos;
    };
    while (x != fin) {
      std::int64_t y = sentido > 0 ? std::min(x + zancada, fin) : std::max(x - zancada, fin);
      Documento ahi = En(y);
      if (igual(ahi)) {
        x = y;
        if (++iguales > seguidos_) zancada *= 2;
        continue;
      }
      while (std::abs(y - x) > 1) {
        const std::int64_t medio = x + (y - x) / 2;
        const Documento d = En(medio);
        if (igual(d)) {
          x = medio;
        } else {
          y = medio;
          ahi = d;
        }
      }
      Considera(y, ahi);
      if (ahi.Centavos() == pedido_) return y;
      x = y;
      aqui = ahi;
      zancada = zancada_;
      iguales = 0;
    }
    return std::nullopt;
  }

  void Considera(std::int64_t precio, const Documento& documento) {
    const std::int64_t residuo = std::abs(pedido_ - documento.Centavos());
    if (residuo > residuo_) return;
    if (residuo == residuo_ && std::abs(precio - cercano_) >= std::abs(mejor_ - cercano_)) return;
    residuo_ = residuo;
    mejor_ = precio;
  }

  TDatosPartida datos_;
  std::int64_t pedido_;
  std::int64_t zancada_;
  int seguidos_;
  std::int64_t alcance_;
  std::int64_t cercano_ = 0;
  std::int64_t mejor_ = 0;
  std::int64_t residuo_ = std::numeric_limits<std::int64_t>::max();
};

// What is left of an amount after the discounts, as a fraction.
double Queda(const TDatosPartida& p) {
  return 1 - std::accumulate(p.PorcDescuento.begin(), p.PorcDescuento.end(), 0.0) / 100;
}

// Price by quantity by exchange rate, less the discounts of a list price, in cents: on whole numbers, so that
// a half cent goes up, unless there is a quota, which no discount touches. `base` is the undiscounted one.
std::int64_t CentavosPedidos(double precio, const TDatosPartida& p, ENUM_PRECIO tipo,
                             const TotalPorBase& porBase, double base) {
  constexpr Entero128 kEntero = 100'000'000;  // 100 % in millionths
  Entero128 queda = kEntero;
  if (tipo == ENUM_PRECIO::PRECIO_LISTA) {
    for (const double descuento : p.PorcDescuento) queda -= exacto::Millonesimas(descuento);
  }
  if (queda != kEntero && !porBase.SinCuota()) return ACentavos(porBase.Total(base * Queda(p)));
  const Entero128 monto =
      exacto::Multiplica(Entero128{exacto::Millonesimas(precio)}, exacto::Millonesimas(p.Cantidad));
  const Entero128 divisor = Entero128{exacto::Millonesimas(p.TipoCambio)} * (exacto::kMillon / 100);
  return exacto::A64(exacto::DivideRedondea(exacto::Multiplica(monto, queda), divisor * kEntero));
}

}  // namespace

TPrecioInverso ObtenPrecioInverso(double precio, const TDatosPartida& partida, ENUM_PRECIO tipo) {
  Valida(precio, partida, tipo);
  const double cantidad = g_redoTo(partida.Cantidad, kDecimales);
  const double cambio = g_redoTo(partida.TipoCambio, kDecimales);
  const double total = g_redoTo(precio, kDecimales) * cantidad / cambio;
  Exige(total <= kMaxTotal, u"El precio por la cantidad es demasiado grande");

  const TotalPorBase porBase(partida);
  const double base = porBase.Base(total);
  Exige(base >= 0, u"La cuota es mayor que el precio con impuestos: no hay precio neto");
  const double queda = Queda(partida);
  const double importe = tipo == ENUM_PRECIO::PRECIO_LISTA ? base : base / queda;
  const double exacto = importe * cambio / cantidad * 1e6;
  Exige(exacto < Busqueda::kMaxPrecio, u"El precio neto es demasiado grande");

  const std::int64_t pedido = CentavosPedidos(precio, partida, tipo, porBase, base);
  Busqueda busqueda(partida, pedido, 1e-6 * cantidad / cambio * queda, porBase.PendienteMenor());
  const std::int64_t neto = busqueda.Encuentra(exacto);
  const Documento documento = busqueda.En(neto);
  return {.PrecioNeto = static_cast<double>(neto) / 1e6,
          .Partida = documento.partida,
          .TotalPedido = {pedido, 2},
          .Total = documento.total,
          .Residuo = pedido - documento.Centavos()};
}

TPrecioInverso ObtenPrecioInverso(double precio, const TClientDataSet& partidas, ENUM_MODULO modulo,
                                  ENUM_PRECIO tipo, bool ignoraTipoCambio) {
  return ObtenPrecioInverso(precio, LeePartida(partidas, modulo, ignoraTipoCambio), tipo);
}

}  // namespace vel

// What certifiers check: the limits, and the rules as a table.

#include "Ucalculocfdi/ReglasFiscales.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <tuple>
#include <vector>

#include "Ucalculocfdi/Enteros128.h"
#include "Ucalculocfdi/TotalesFiscales.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "framework/TDateTime.h"

namespace vel {
namespace {

using exacto::Diez;
using exacto::Divide;
using exacto::DivideSube;
using exacto::Entero128;
using exacto::Monto;
using exacto::Multiplica;

/// 10^exponente for 0 to 24.
Entero128 Potencia(int exponente) {
  return exponente <= 12 ? Entero128{Diez(exponente)} : Entero128{Diez(12)} * Diez(exponente - 12);
}

void ExigeMonto(const TMontoFiscal& monto) {
  if (monto.Unidades >= 0 && monto.Decimales >= 0 && monto.Decimales <= 6) return;
  throw EInvalidOperation(u"El monto " + IntToStr(monto.Unidades) + u" con " + IntToStr(monto.Decimales) +
                          u" decimales no es de los que se imprimen");
}

/// A limit before it is cut: numerador / (divisor x 10^escala).
struct Limite {
  Entero128 numerador;
  int divisor;
  int escala;
  TMontoFiscal Trunca(int decimales) const {
    return Monto(Divide(Arriba(decimales), Abajo(decimales)), decimales);
  }
  TMontoFiscal Sube(int decimales) const {
    return Monto(DivideSube(Arriba(decimales), Abajo(decimales)), decimales);
  }

 private:
  // Whole quantities at whole prices have fewer decimals than the amount.
  Entero128 Arriba(int decimales) const {
    return decimales > escala ? Multiplica(numerador, Potencia(decimales - escala)) : numerador;
  }
  Entero128 Abajo(int decimales) const {
    return decimales > escala ? Entero128{divisor} : divisor * Potencia(escala - decimales);
  }
};

// (base - 10^-b / 2) x rate
Limite InferiorImpuesto(const TImpuestoImpreso& i) {
  const Entero128 doble = std::max<Entero128>(2 * Entero128{i.Base.Unidades} - 1, 0);
  return {Multiplica(doble, i.Tasa.Unidades), 2, i.Base.Decimales + i.Tasa.Decimales};
}

// (base + 10^-b / 2 - 10^-holgura) x rate. What that takes off is rounded down, because the limit is rounded
// up.
Limite SuperiorImpuesto(const TImpuestoImpreso& i, int holgura) {
  const Entero128 doble = Multiplica(2 * Entero128{i.Base.Unidades} + 1, i.Tasa.Unidades);
  const Entero128 menos = Divide(2 * Entero128{i.Tasa.Unidades}, Potencia(holgura - i.Base.Decimales));
  return {doble - menos, 2, i.Base.Decimales + i.Tasa.Decimales};
}

// (quantity - 10^-q / 2) x (price - 10^-p / 2)
Limite InferiorImporte(const TPartidaFiscal& p) {
  const auto doble = [](const TMontoFiscal& m) {
    return std::max<Entero128>(2 * Entero128{m.Unidades} - 1, 0);
  };
  return {Multiplica(doble(p.Cantidad), doble(p.ValorUnitario)), 4,
          p.Cantidad.Decimales + p.ValorUnitario.Decimales};
}

// (quantity + 10^-q / 2 - 10^-holgura) x (price + 10^-p / 2 - 10^-holgura)
Limite SuperiorImporte(const TPartidaFiscal& p, int holgura) {
  const auto orilla = [holgura](const TMontoFiscal& m) {
    const Entero128 unidad = Potencia(holgura - m.Decimales);
    return m.Unidades * unidad + unidad / 2 - 1;
  };
  return {Multiplica(orilla(p.Cantidad), orilla(p.ValorUnitario)), 1, 2 * holgura};
}

bool Entre(const TMontoFiscal& importe, const Limite& inferior, const Limite& superior) {
  return inferior.Trunca(importe.Decimales).Unidades <= importe.Unidades &&
         importe.Unidades <= superior.Sube(importe.Decimales).Unidades;
}

TLimitesFiscales Corta(const Limite& inferior, const Limite& superior, int importe, int moneda) {
  return {inferior.Trunca(importe), superior.Sube(importe), inferior.Trunca(moneda), superior.Sube(moneda)};
}

/// The printed document and what its lines add up to.
struct Documento {
  const TResumenFiscal& r;
  const fiscal::Repaso& esperado;
  bool Cabe(const TMontoFiscal& m) const { return m.Decimales <= r.DecimalesMoneda; }
  template <typename Entrada>
  bool Caben(const std::vector<Entrada>& lista, TMontoFiscal Entrada::*monto) const {
    return std::all_of(lista.begin(), lista.end(), [&](const Entrada& e) { return Cabe(e.*monto); });
  }
};

}  // namespace

/// A rule with its check, by what it looks at: the document, each line or each tax of a line that is not
/// local. True when it holds.
struct fiscal::Comprobacion {
  TReglaFiscal regla;
  /// Of a rule of limits: the upper one takes 10^-holgura off its half unit, so that the half itself is out.
  /// 7 to 12.
  int holgura = 0;
  bool (*documento)(const Documento&) = nullptr;
  bool (*partida)(const TPartidaFiscal&, int holgura) = nullptr;
  bool (*impuesto)(const TImpuestoImpreso&, int holgura) = nullptr;
};

namespace {

bool Exento(const TImpuestoImpreso& i) { return i.Factor == ENUM_FACTOR_FISCAL::EXENTO; }
bool EnLimites(const TImpuestoImpreso& i, int holgura) {
  return Exento(i) || Entre(i.Importe, InferiorImpuesto(i), SuperiorImpuesto(i, holgura));
}

template <typename Entrada, typename Campo>
bool Iguales(const std::vector<Entrada>& a, const std::vector<Entrada>& b, Campo campo) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [campo](const Entrada& x, const Entrada& y) { return campo(x) == campo(y); });
}

constexpr std::u16string_view kMatriz = u"Anexo 20, versión 4.0, matriz de validaciones";
constexpr std::u16string_view kEsquema = u"Anexo 20, versión 4.0, esquema cfdv40.xsd";
constexpr std::u16string_view kLocales = u"Complemento de impuestos locales, versión 1.0";
constexpr std::u16string_view kVigencia = u"2022-01-01";

// In the order of the codes. Every one of the matrix is as a public list of it has it; of those of the
// document's decimals CFDI40204 stands in that list alone. The matrix gives two codes to the sum of the bases
// of a transferred tax: CFDI40215 for those of its rate, which is checked here, and CFDI40216 for all of
// them, whose case public pages do not tell apart. The message of CFDI40111 is about kinds of document that
// print no discounts; its case has the sum.
constexpr fiscal::Comprobacion kTabla[] = {
    {.regla = {u"CFDV40", u"el comprobante tiene al menos un concepto", kEsquema, kVigencia},
     .documento = [](const Documento& d) { return d.esperado.partidas > 0; }},
    {.regla = {u"CFDV40", u"la cantidad es mayor que cero", kEsquema, kVigencia},
     .partida = [](const TPartidaFiscal& p, int) { return p.Cantidad.Unidades > 0; }},
    {.regla = {u"CFDI40107", u"el subtotal no tiene más decimales que la moneda", kMatriz, kVigencia},
     .documento = [](const Documento& d) { return d.Cabe(d.r.SubTotal); }},
    {.regla = {u"CFDI40108", u"el subtotal es el redondeo de la suma de los importes", kMatriz, kVigencia},
     .documento = [](const Documento& d) { return d.r.SubTotal == d.esperado.subTotal; }},
    {.regla = {u"CFDI40110", u"el descuento no pasa del subtotal", kMatriz, kVigencia},
     .documento = [](const Documento& d) { return d.r.Descuento.Unidades <= d.r.SubTotal.Unidades; }},
    {.regla = {u"CFDI40111", u"el descuento es el redondeo de la suma de los de los conceptos", kMatriz,
               kVigencia},
     .documento = [](const Documento& d) { return d.r.Descuento == d.esperado.descuento; }},
    {.regla = {u"CFDI40112", u"el descuento no tiene más decimales que la moneda", kMatriz, kVigencia},
     .documento = [](const Documento& d) { return d.Cabe(d.r.Descuento); }},
    {.regla = {u"CFDI40119", u"el total es subtotal - descuento + trasladados - retenidos, con los locales",
               kMatriz, kVigencia},
     .documento =
         [](const Documento& d) { return d.r.Total.Unidades >= 0 && d.r.Total == fiscal::TotalDe(d.r); }},
    {.regla = {u"CFDI40166", u"el valor unitario es mayor que cero", kMatriz, kVigencia},
     .partida = [](const TPartidaFiscal& p, int) { return p.ValorUnitario.Unidades > 0; }},
    {.regla = {u"CFDI40167", u"el importe está entre los límites de cantidad por valor unitario", kMatriz,
               kVigencia},
     .holgura = 12,
     .partida =
         [](const TPartidaFiscal& p, int holgura) {
           return Entre(p.Importe, InferiorImporte(p), SuperiorImporte(p, holgura));
         }},
    {.regla = {u"CFDI40168", u"el descuento no tiene más decimales que el importe", kMatriz, kVigencia},
     .partida = [](const TPartidaFiscal& p, int) { return p.Descuento.Decimales <= p.Importe.Decimales; }},
    {.regla = {u"CFDI40169", u"el descuento no pasa del importe", kMatriz, kVigencia},
     .partida = [](const TPartidaFiscal& p, int) { return p.Descuento.Unidades <= p.Importe.Unidades; }},
    {.regla = {u"CFDI40174", u"la base de un traslado es mayor que cero", kMatriz, kVigencia},
     .impuesto = [](const TImpuestoImpreso& i, int) { return i.Retenido || i.Base.Unidades > 0; }},
    {.regla = {u"CFDI40177", u"un traslado exento no tiene tasa ni importe", kMatriz, kVigencia},
     .impuesto =
         [](const TImpuestoImpreso& i, int) {
           return i.Retenido || !Exento(i) || (i.Tasa.Unidades == 0 && i.Importe.Unidades == 0);
         }},
    {.regla = {u"CFDI40180", u"el importe de un traslado está entre los límites de base por tasa o cuota",
               kMatriz, kVigencia},
     .holgura = 12,
     .impuesto = [](const TImpuestoImpreso& i, int holgura) { return i.Retenido || EnLimites(i, holgura); }},
    {.regla = {u"CFDI40181", u"la base de una retención es mayor que cero", kMatriz, kVigencia},
     .impuesto = [](const TImpuestoImpreso& i, int) { return !i.Retenido || i.Base.Unidades > 0; }},
    {.regla = {u"CFDI40184", u"una retención no está exenta", kMatriz, kVigencia},
     .impuesto = [](const TImpuestoImpreso& i, int) { return !i.Retenido || !Exento(i); }},
    {.regla = {u"CFDI40186", u"el importe de una retención está entre los límites de base por tasa o cuota",
               kMatriz, kVigencia},
     .holgura = 12,
     .impuesto = [](const TImpuestoImpreso& i, int holgura) { return !i.Retenido || EnLimites(i, holgura); }},
    {.regla = {u"CFDI40202", u"el total de retenidos no tiene más decimales que la moneda", kMatriz,
               kVigencia},
     .documento = [](const Documento& d) { return d.Cabe(d.r.TotalImpuestosRetenidos); }},
    {.regla = {u"CFDI40203", u"el total de retenidos es la suma de las retenciones", kMatriz, kVigencia},
     .documento =
         [](const Documento& d) { return d.r.TotalImpuestosRetenidos == fiscal::SumaRetenciones(d.r); }},
    {.regla = {u"CFDI40204", u"el total de trasladados no tiene más decimales que la moneda", kMatriz,
               kVigencia},
     .documento = [](const Documento& d) { return d.Cabe(d.r.TotalImpuestosTrasladados); }},
    {.regla = {u"CFDI40205", u"el total de trasladados es la suma de los traslados", kMatriz, kVigencia},
     .documento =
         [](const Documento& d) { return d.r.TotalImpuestosTrasladados == fiscal::SumaTraslados(d.r); }},
    {.regla = {u"CFDI40208", u"hay una sola retención por impuesto", kMatriz, kVigencia},
     .documento =
         [](const Documento& d) {
           return Iguales(d.r.Retenciones, d.esperado.retenciones, [](const auto& t) { return t.Impuesto; });
         }},
    {.regla = {u"CFDI40210", u"ninguna retención tiene más decimales que la moneda", kMatriz, kVigencia},
     .documento = [](const Documento& d) { return d.Caben(d.r.Retenciones, &TRetencionFiscal::Importe); }},
    {.regla = {u"CFDI40211", u"cada retención es el redondeo de la suma de las de los conceptos", kMatriz,
               kVigencia},
     .documento = [](const Documento& d) { return d.r.Retenciones == d.esperado.retenciones; }},
    {.regla = {u"CFDI40214", u"la base de ningún traslado tiene más decimales que la moneda", kMatriz,
               kVigencia},
     .documento = [](const Documento& d) { return d.Caben(d.r.Traslados, &TTrasladoFiscal::Base); }},
    {.regla = {u"CFDI40215", u"la base de cada traslado es el redondeo de la suma de las de los conceptos",
               kMatriz, kVigencia},
     .documento =
         [](const Documento& d) {
           return Iguales(d.r.Traslados, d.esperado.traslados, [](const auto& t) { return t.Base; });
         }},
    {.regla = {u"CFDI40218", u"hay un solo traslado por impuesto, factor y tasa", kMatriz, kVigencia},
     .documento =
         [](const Documento& d) {
           return Iguales(d.r.Traslados, d.esperado.traslados,
                          [](const auto& t) { return std::tuple(t.Impuesto, t.Factor, t.Tasa.Unidades); });
         }},
    {.regla = {u"CFDI40220", u"el importe de ningún traslado tiene más decimales que la moneda", kMatriz,
               kVigencia},
     .documento = [](const Documento& d) { return d.Caben(d.r.Traslados, &TTrasladoFiscal::Importe); }},
    {.regla = {u"CFDI40221", u"el importe de cada traslado es el redondeo de la suma de los de los conceptos",
               kMatriz, kVigencia},
     .documento =
         [](const Documento& d) {
           return Iguales(d.r.Traslados, d.esperado.traslados, [](const auto& t) { return t.Importe; });
         }},
    {.regla = {u"IMPLOCAL", u"los impuestos locales y sus totales son la suma de los de las partidas",
               kLocales, u"2010-12-31"},
     .documento =
         [](const Documento& d) {
           return d.r.Locales == d.esperado.locales &&
                  d.r.TotalLocalesTrasladados == fiscal::SumaLocales(d.r, false) &&
                  d.r.TotalLocalesRetenidos == fiscal::SumaLocales(d.r, true);
         }},
};

constexpr auto kReglas = []() {
  std::array<TReglaFiscal, std::size(kTabla)> reglas;
  for (std::size_t i = 0; i < reglas.size(); ++i) reglas[i] = kTabla[i].regla;
  return reglas;
}();

static_assert(std::all_of(std::begin(kTabla), std::end(kTabla), [](const fiscal::Comprobacion& c) {
  return c.regla.Desde.size() == 10 && (c.regla.Hasta.empty() || c.regla.Rige(c.regla.Hasta)) &&
         (c.holgura == 0 || (c.holgura >= 7 && c.holgura <= 12));
}));

/// That of the newest edition, by which amounts are put within their limits.
constexpr int Holgura(std::u16string_view codigo) {
  return std::find_if(
             std::begin(kTabla), std::end(kTabla),
             [codigo](const fiscal::Comprobacion& c) { return c.regla.Codigo == codigo && c.regla.Rige({}); })
      ->holgura;
}
constexpr int kHolguraImporte = Holgura(u"CFDI40167");
constexpr int kHolguraTraslado = Holgura(u"CFDI40180");
constexpr int kHolguraRetencion = Holgura(u"CFDI40186");

TMotivoFiscal Motivo(const TReglaFiscal& regla, std::size_t renglon, int impuesto) {
  UnicodeString lugar;
  if (renglon != 0) lugar = u"Partida " + IntToStr(static_cast<std::int64_t>(renglon));
  if (impuesto != 0) lugar += u", impuesto " + IntToStr(impuesto);
  if (!lugar.empty()) lugar += u": ";
  return {UnicodeString(regla.Codigo), renglon, impuesto,
          lugar + u"no se cumple que " + UnicodeString(regla.Regla)};
}

}  // namespace

std::span<const TReglaFiscal> ReglasFiscales() noexcept { return kReglas; }

fiscal::Vigentes fiscal::ReglasVigentes(const std::optional<TDateTime>& fecha) {
  const UnicodeString dia = fecha ? DateTimeToISO(*fecha, TFieldType::ftDate) : UnicodeString();
  Vigentes vigentes;
  for (const Comprobacion& c : kTabla) {
    if (!c.regla.Rige(dia)) continue;
    if (c.documento != nullptr) vigentes.documento.push_back(&c);
    if (c.partida != nullptr) vigentes.partida.push_back(&c);
    if (c.impuesto != nullptr) vigentes.impuesto.push_back(&c);
  }
  return vigentes;
}

void fiscal::RevisaPartida(const Vigentes& reglas, const TPartidaFiscal& partida,
                           std::vector<TMotivoFiscal>& motivos) {
  for (const Comprobacion* c : reglas.partida) {
    if (!c->partida(partida, c->holgura)) motivos.push_back(Motivo(c->regla, partida.Renglon, 0));
  }
  for (const TImpuestoImpreso& impuesto : partida.Impuestos) {
    if (impuesto.Impuesto == ENUM_IMPUESTO_FISCAL::LOCAL) continue;
    for (const Comprobacion* c : reglas.impuesto) {
      if (!c->impuesto(impuesto, c->holgura))
        motivos.push_back(Motivo(c->regla, partida.Renglon, impuesto.Numero));
    }
  }
}

std::vector<TMotivoFiscal> fiscal::Revisa(const TResumenFiscal& resumen, Repaso repaso) {
  std::vector<TMotivoFiscal> motivos;
  const Documento documento{resumen, repaso};
  for (const Comprobacion* c : repaso.reglas.documento) {
    if (!c->documento(documento)) motivos.push_back(Motivo(c->regla, 0, 0));
  }
  motivos.insert(motivos.end(), std::make_move_iterator(repaso.motivos.begin()),
                 std::make_move_iterator(repaso.motivos.end()));
  return motivos;
}

TLimitesFiscales TResumenFiscal::LimitesImporte(const TPartidaFiscal& partida) const {
  for (const TMontoFiscal* m : {&partida.Cantidad, &partida.ValorUnitario, &partida.Importe}) ExigeMonto(*m);
  return Corta(InferiorImporte(partida), SuperiorImporte(partida, kHolguraImporte), partida.Importe.Decimales,
               DecimalesMoneda);
}

TLimitesFiscales TResumenFiscal::LimitesImpuesto(const TImpuestoImpreso& impuesto) const {
  for (const TMontoFiscal* m : {&impuesto.Base, &impuesto.Tasa, &impuesto.Importe}) ExigeMonto(*m);
  const int holgura = impuesto.Retenido ? kHolguraRetencion : kHolguraTraslado;
  return Corta(InferiorImpuesto(impuesto), SuperiorImpuesto(impuesto, holgura), impuesto.Importe.Decimales,
               DecimalesMoneda);
}

}  // namespace vel

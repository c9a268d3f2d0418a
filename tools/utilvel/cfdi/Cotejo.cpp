#include "tools/utilvel/cfdi/Cotejo.h"

#include <algorithm>

#include "Ucalculocfdi/ReglasFiscales.h"
#include "framework/Texto.h"

namespace utilvel::cfdi {
namespace {

using vel::ENUM_FACTOR_FISCAL;

std::string TextoLugar(const Lugar& lugar) {
  std::string texto;
  for (const Lugar::Parte& parte : lugar.partes) {
    if (parte.nombre == nullptr) break;
    if (!texto.empty()) texto += ", ";
    texto += parte.nombre;
    if (parte.numero > 0) texto += ' ' + std::to_string(parte.numero);
  }
  if (lugar.impuesto != nullptr) texto += " (" + Nombre(*lugar.impuesto) + ')';
  return texto;
}

TMontoFiscal Tasa(const Impuesto& impuesto) {
  if (!impuesto.tasa) return {0, kDecimales};
  return Redondea(Unidades(*impuesto.tasa, kDecimales), kDecimales, kDecimales);
}

}  // namespace

Cotejo::Cotejo(Version version, const std::string& fecha, int decimalesMoneda)
    : conReglas_(version == Version::V40) {
  const std::string dia = fecha.substr(0, 10);
  dia_.assign(dia.begin(), dia.end());
  resumen_.DecimalesMoneda = decimalesMoneda;
}

std::string Cotejo::Vigente(std::u16string_view regla) const {
  if (!conReglas_ || regla.empty()) return {};
  const auto reglas = vel::ReglasFiscales();
  const bool rige = std::any_of(reglas.begin(), reglas.end(), [&](const vel::TReglaFiscal& r) {
    return r.Codigo == regla && r.Rige(dia_);
  });
  return rige ? vel::UTF8Encode(regla) : std::string();
}

void Cotejo::Exacto(const Lugar& lugar, const char* cifra, const std::optional<TMontoFiscal>& impreso,
                    const TMontoFiscal& calculado, std::u16string_view regla) {
  const TMontoFiscal valor = impreso.value_or(TMontoFiscal{0, calculado.Decimales});
  if (Compara(valor, calculado) == 0) return;
  diferencias_.push_back({.lugar = TextoLugar(lugar),
                          .cifra = cifra,
                          .impreso = impreso,
                          .calculado = calculado,
                          .diferencia = Resta(valor, calculado),
                          .limites = {},
                          .enLimites = false,
                          .regla = Vigente(regla)});
}

void Cotejo::ConMargen(const Lugar& lugar, const char* cifra, const std::optional<TMontoFiscal>& impreso,
                       const SumaConMargen& suma, int decimales, std::u16string_view regla) {
  const TMontoFiscal calculado = suma.Redondeada(decimales);
  if (!suma.ConMargen() || !impreso) {
    Exacto(lugar, cifra, impreso, calculado, regla);
  } else if (Compara(*impreso, calculado) != 0) {
    ConLimites(lugar, cifra, *impreso, calculado, {suma.Inferior(decimales), suma.Superior(decimales)},
               regla);
  }
}

void Cotejo::ConLimites(const Lugar& lugar, const char* cifra, const TMontoFiscal& impreso,
                        const TMontoFiscal& calculado, const Diferencia::Limites& limites,
                        std::u16string_view regla) {
  diferencias_.push_back(
      {.lugar = TextoLugar(lugar),
       .cifra = cifra,
       .impreso = impreso,
       .calculado = calculado,
       .diferencia = Resta(impreso, calculado),
       .limites = limites,
       .enLimites = Compara(limites.inferior, impreso) <= 0 && Compara(impreso, limites.superior) <= 0,
       .regla = Vigente(regla)});
}

void Cotejo::Importe(const Lugar& lugar, const Concepto& concepto) {
  const TMontoFiscal& a = concepto.cantidad;
  const TMontoFiscal& b = concepto.valorUnitario;
  const int decimales = std::max(concepto.importe.Decimales, DecimalesMoneda());
  const TMontoFiscal calculado =
      Redondea(Multiplica(Unidades(a, kDecimales), Unidades(b, kDecimales)), 2 * kDecimales, decimales);
  if (Compara(calculado, concepto.importe) == 0) return;
  const vel::TLimitesFiscales limites = resumen_.LimitesImporte({1, a, b, concepto.importe, {}, {}});
  ConLimites(lugar, "Importe", concepto.importe, calculado, {limites.InferiorMoneda, limites.SuperiorMoneda},
             u"CFDI40167");
}

void Cotejo::ImporteImpuesto(const Lugar& lugar, const char* cifra, const Impuesto& impuesto,
                             std::u16string_view regla) {
  if (impuesto.factor == ENUM_FACTOR_FISCAL::EXENTO || !impuesto.base || !impuesto.importe) {
    if (!regla.empty()) regla = impuesto.retenido ? u"CFDI40184" : u"CFDI40177";
    Exacto(lugar, cifra, impuesto.importe, {0, DecimalesMoneda()}, regla);
    return;
  }
  const TMontoFiscal tasa = Tasa(impuesto);
  const int decimales = std::max(impuesto.importe->Decimales, DecimalesMoneda());
  const TMontoFiscal calculado =
      Redondea(Multiplica(Unidades(*impuesto.base, kDecimales), tasa.Unidades), 2 * kDecimales, decimales);
  if (Compara(calculado, *impuesto.importe) == 0) return;
  const vel::TLimitesFiscales limites = resumen_.LimitesImpuesto({.Impuesto = impuesto.impuesto,
                                                                  .Retenido = impuesto.retenido,
                                                                  .Factor = impuesto.factor,
                                                                  .Base = *impuesto.base,
                                                                  .Tasa = tasa,
                                                                  .Importe = *impuesto.importe});
  ConLimites(lugar, cifra, *impuesto.importe, calculado, {limites.InferiorMoneda, limites.SuperiorMoneda},
             regla);
}

void SumaImpuesto::Agrega(const Impuesto& impuesto, const TMontoFiscal& equivalencia) {
  uno = &impuesto;
  if (impuesto.base) base.Agrega(*impuesto.base, equivalencia);
  if (impuesto.importe && impuesto.factor != ENUM_FACTOR_FISCAL::EXENTO)
    importe.Agrega(*impuesto.importe, equivalencia);
}

ClaveImpuesto Clave(const Impuesto& impuesto) {
  if (impuesto.retenido) return {impuesto.impuesto, true, ENUM_FACTOR_FISCAL::TASA, 0};
  return {impuesto.impuesto, false, impuesto.factor, Tasa(impuesto).Unidades};
}

void CotejaResumen(Cotejo& cotejo, const Lugar& lugar, const std::vector<Impuesto>& impresos,
                   SumasImpuestos& sumas, const NombresResumen& nombres, bool masDecimales) {
  const auto coteja = [&](Lugar aqui, const Impuesto& impuesto, const std::optional<TMontoFiscal>& base,
                          const std::optional<TMontoFiscal>& importe, const SumaImpuesto& suma) {
    const auto decimales = [&](const std::optional<TMontoFiscal>& monto) {
      return masDecimales && monto ? std::max(monto->Decimales, cotejo.DecimalesMoneda())
                                   : cotejo.DecimalesMoneda();
    };
    aqui.impuesto = &impuesto;
    if (nombres.base != nullptr && !impuesto.retenido)
      cotejo.ConMargen(aqui, nombres.base, base, suma.base, decimales(base), nombres.reglaBase);
    cotejo.ConMargen(aqui, nombres.importe, importe, suma.importe, decimales(importe),
                     impuesto.retenido ? nombres.reglaRetencion : nombres.reglaTraslado);
  };
  const auto parte =
      static_cast<std::size_t>(std::find_if(lugar.partes.begin(), lugar.partes.end(),
                                            [](const auto& p) { return p.nombre == nullptr; }) -
                               lugar.partes.begin());
  std::array<std::size_t, 2> numero = {};
  for (const Impuesto& impreso : impresos) {
    Lugar aqui = lugar;
    aqui.partes.at(parte) = {impreso.retenido ? "retención" : "traslado", ++numero[impreso.retenido ? 1 : 0]};
    const auto suma = sumas.find(Clave(impreso));
    // One that no line has, or that is printed twice, follows from nothing.
    const bool hay = suma != sumas.end() && !suma->second.cotejada;
    coteja(aqui, impreso, impreso.base, impreso.importe, hay ? suma->second : SumaImpuesto());
    if (hay) suma->second.cotejada = true;
  }
  for (const auto& [clave, suma] : sumas) {
    if (suma.cotejada) continue;
    Lugar aqui = lugar;
    aqui.partes.at(parte) = {suma.uno->retenido ? "retención" : "traslado", 0};
    Impuesto impuesto = *suma.uno;
    if (impuesto.retenido) impuesto.tasa.reset();
    const std::optional<TMontoFiscal> nada;
    coteja(aqui, impuesto, nada, nada, suma);
  }
}

}  // namespace utilvel::cfdi

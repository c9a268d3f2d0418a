#include "tools/utilvel/cfdi/TotalMotor.h"

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "Ucalculocfdi/TCalculoCFDI.h"
#include "framework/Numeros.h"

namespace utilvel::cfdi {
namespace {

using vel::ENUM_FACTOR_FISCAL;
using vel::ENUM_IMPUESTO_FISCAL;
using vel::TField;
using vel::TFieldType;

// Base codes of the engine: the amount; the amount and the first tax; no tax.
constexpr int kSobreImporte = 0;
constexpr int kSobreIeps = 1;
constexpr int kSinImpuesto = 4;
// The suite's usual places, and one for withheld excise.
constexpr std::size_t kIeps = 0;
constexpr std::size_t kLugares = 5;

std::size_t LugarDe(const Impuesto& impuesto) {
  if (impuesto.impuesto == ENUM_IMPUESTO_FISCAL::ISR) return 1;
  if (impuesto.impuesto == ENUM_IMPUESTO_FISCAL::IVA) return impuesto.retenido ? 2 : 3;
  return impuesto.retenido ? 4 : kIeps;
}

/// The nearest double: the quotient of two that are exact, while they are.
double Real(const TMontoFiscal& monto) {
  constexpr std::array kDiez = {1.0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6};
  if (monto.Unidades >= std::int64_t{1} << 53 || monto.Decimales > kDecimales) return monto.Real();
  return static_cast<double>(monto.Unidades) / kDiez.at(static_cast<std::size_t>(monto.Decimales));
}

/// A line in the engine's fields.
struct Renglon {
  std::array<const Impuesto*, kLugares> impuestos = {};
  std::array<int, kLugares> codigos = {};
  bool cuota = false;
};

bool Expresa(const Concepto& concepto, Renglon& renglon) {
  Suma neto;
  neto.Agrega(concepto.importe);
  if (concepto.descuento) neto.Quita(*concepto.descuento);
  if (concepto.descuento && concepto.descuento->Unidades != 0 && concepto.importe.Unidades == 0) return false;
  Suma conIeps = neto;
  renglon.codigos.fill(kSinImpuesto);
  for (const Impuesto& impuesto : concepto.impuestos) {
    const std::size_t lugar = LugarDe(impuesto);
    if (renglon.impuestos.at(lugar) != nullptr) return false;
    renglon.impuestos.at(lugar) = &impuesto;
    if (lugar == kIeps && impuesto.importe) conIeps.Agrega(*impuesto.importe);
  }
  for (std::size_t i = 0; i < kLugares; ++i) {
    const Impuesto* const impuesto = renglon.impuestos[i];
    if (impuesto == nullptr || impuesto->factor == ENUM_FACTOR_FISCAL::EXENTO) continue;
    if (impuesto->factor == ENUM_FACTOR_FISCAL::CUOTA) {
      if (i != kIeps) return false;
      renglon.cuota = true;
      renglon.codigos[i] = kSobreImporte;
      continue;
    }
    // Compared as they are printed, with up to six decimals.
    if (Compara(*impuesto->base, neto.Redondeada(kDecimales)) == 0) {
      renglon.codigos[i] = kSobreImporte;
    } else if (i != kIeps && Compara(*impuesto->base, conIeps.Redondeada(kDecimales)) == 0) {
      renglon.codigos[i] = kSobreIeps;
    } else {
      return false;
    }
  }
  return true;
}

}  // namespace

struct TotalMotor::Motor {
  Motor()
      : calculo(vel::ENUM_MODULO::MODULO_VENTAS, vel::ENUM_PROC_FACTCOMP::PROC_NORMAL, vel::TIPO_DOCTO{}) {
    std::vector<vel::TFieldDef> campos;
    const auto agrega = [&campos](std::u16string nombre, TFieldType tipo, int largo = 0) {
      campos.push_back({.Name = std::move(nombre), .DataType = tipo, .Size = largo});
    };
    for (const char16_t* nombre : {u"CANT", u"PREC", u"TIP_CAM", u"DESC1", u"DESC2", u"DESC3", u"MTO_CUOTA"})
      agrega(nombre, TFieldType::ftFloat);
    // The engine leaves out taxes that have no field for their base code.
    for (std::size_t i = 1; i <= kLugares; ++i) {
      const std::u16string numero = vel::IntToStr(static_cast<std::int64_t>(i));
      agrega(u"IMPU" + numero, TFieldType::ftFloat);
      agrega(u"IMP" + numero + u"APLA", TFieldType::ftInteger);
    }
    agrega(u"APL_MAN_IMP", TFieldType::ftInteger);
    for (const char16_t* nombre : {u"MAN_IEPS", u"APL_MAN_IEPS", u"CVE_DOC", u"TIPO_PROD", u"TIPO_ELEM"})
      agrega(nombre, TFieldType::ftString, 10);
    vel::TClientDataSet& partidas = calculo.Partidas;
    partidas.CreateDataSet(std::move(campos));
    cantidad = &partidas.FieldByName(u"CANT");
    precio = &partidas.FieldByName(u"PREC");
    cambio = &partidas.FieldByName(u"TIP_CAM");
    descuento = &partidas.FieldByName(u"DESC1");
    cuota = &partidas.FieldByName(u"MTO_CUOTA");
    conCuota = &partidas.FieldByName(u"MAN_IEPS");
    impuestoCuota = &partidas.FieldByName(u"APL_MAN_IMP");
    modoCuota = &partidas.FieldByName(u"APL_MAN_IEPS");
    for (std::size_t i = 0; i < kLugares; ++i) {
      const std::u16string numero = vel::IntToStr(static_cast<std::int64_t>(i) + 1);
      tasas[i] = &partidas.FieldByName(u"IMPU" + numero);
      codigos[i] = &partidas.FieldByName(u"IMP" + numero + u"APLA");
    }
  }

  void Agrega(const Concepto& concepto, const Renglon& renglon) {
    calculo.Partidas.Append();
    cantidad->SetAsFloat(Real(concepto.cantidad));
    precio->SetAsFloat(Real(concepto.valorUnitario));
    cambio->SetAsFloat(1);
    if (concepto.descuento && concepto.descuento->Unidades != 0)
      descuento->SetAsFloat(Real(*concepto.descuento) / Real(concepto.importe) * 100);
    for (std::size_t i = 0; i < kLugares; ++i) {
      const int codigo = renglon.codigos[i];
      codigos[i]->SetAsInteger(codigo);
      if (codigo == kSinImpuesto || renglon.impuestos[i]->factor != ENUM_FACTOR_FISCAL::TASA) continue;
      const Impuesto& impuesto = *renglon.impuestos[i];
      // A percentage; a negative one is withheld.
      const double tasa = Real(*impuesto.tasa) * 100;
      tasas[i]->SetAsFloat(impuesto.retenido ? -tasa : tasa);
    }
    if (renglon.cuota) {
      conCuota->SetAsString(u"S");
      impuestoCuota->SetAsInteger(static_cast<std::int32_t>(kIeps) + 1);
      modoCuota->SetAsString(u"C");
      cuota->SetAsFloat(Real(*renglon.impuestos[kIeps]->importe));
    }
    calculo.Partidas.Post();
  }

  vel::TCalculoCFDI calculo;
  TField* cantidad;
  TField* precio;
  TField* cambio;
  TField* descuento;
  TField* cuota;
  TField* conCuota;
  TField* impuestoCuota;
  TField* modoCuota;
  std::array<TField*, kLugares> tasas;
  std::array<TField*, kLugares> codigos;
};

TotalMotor::TotalMotor() : motor_(std::make_unique<Motor>()) {}

TotalMotor::~TotalMotor() = default;

std::optional<TMontoFiscal> TotalMotor::Calcula(const Comprobante& comprobante) {
  if (comprobante.tipo != 'I' && comprobante.tipo != 'E') return {};
  vel::TCalculoCFDI& calculo = motor_->calculo;
  calculo.Partidas.EmptyDataSet();
  for (vel::TStringList& lista : calculo.ListaImpuesto) lista.Clear();
  std::size_t conIeps = 0;
  bool conCuota = false;
  for (const Concepto& concepto : comprobante.conceptos) {
    Renglon renglon;
    if (!Expresa(concepto, renglon)) return {};
    if (renglon.impuestos[kIeps] != nullptr) ++conIeps;
    conCuota = conCuota || renglon.cuota;
    if (conCuota && conIeps > 1) return {};
    motor_->Agrega(concepto, renglon);
  }
  calculo.CalculaTotales();
  // The total's decimal text is what the engine stands for; from 10^13 on it has no cents.
  const std::string texto = vel::UTF8Encode(vel::FloatToStr(calculo.TotalImpuestos));
  const Lectura lectura = LeeMonto(texto, kDecimales);
  if (lectura.falla != nullptr) return {};
  const int decimales = DecimalesMoneda(comprobante.moneda);
  Suma total;
  total.Agrega(lectura.monto);
  if (comprobante.locales) {
    total.Agrega(comprobante.locales->totalTrasladados);
    total.Quita(comprobante.locales->totalRetenidos);
  }
  return total.Redondeada(decimales);
}

}  // namespace utilvel::cfdi

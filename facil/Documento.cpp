#include "facil/Documento.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <utility>

#include "Uutilext/documents/Redondeo.h"
#include "facil/Montos.h"
#include "facil/Traduccion.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel::facil {

namespace {

constexpr std::size_t kImpuestos = TCalculoCFDI::kImpuestos;
constexpr int kDecimalesTotales = 2;
constexpr int kDecimalesPartida = 6;

UnicodeString Numero(std::size_t n) { return IntToStr(static_cast<std::int64_t>(n)); }
UnicodeString CampoTasa(std::size_t i) { return u"IMPU" + Numero(i + 1); }
UnicodeString CampoCodigo(std::size_t i) { return u"IMP" + Numero(i + 1) + u"APLA"; }

UnicodeString EnPartida(std::size_t renglon, const UnicodeString& mensaje) {
  return u"Partida " + Numero(renglon) + u": " + mensaje;
}

std::unique_ptr<TCalculoCFDI> CreaMotor(ENUM_MODULO modulo) {
  const bool ventas = modulo == ENUM_MODULO::MODULO_VENTAS;
  return std::make_unique<TCalculoCFDI>(modulo, ENUM_PROC_FACTCOMP::PROC_NORMAL,
                                        ventas ? TIPO_DOCTO::TD_FACTURA : TIPO_DOCTO::TD_COMPRA);
}

bool Es(const TField& campo, std::u16string_view texto) {
  const TFieldType tipo = campo.DataType();
  const bool enLetras = tipo == TFieldType::ftString || tipo == TFieldType::ftWideString;
  return enLetras ? campo.TextView() == texto : campo.AsString() == texto;
}

/// What a data set must have before the engine is asked, so that it is told at once.
class Revision {
 public:
  Revision(TClientDataSet& partidas, const OpcionesDocumento& opciones)
      : partidas_(partidas), opciones_(opciones) {}

  void Exige() {
    const bool ventas = opciones_.Modulo == ENUM_MODULO::MODULO_VENTAS;
    for (const char16_t* campo : {u"CVE_DOC", u"CANT", u"PREC", u"TIPO_PROD", u"TIPO_ELEM", u"MAN_IEPS"})
      ExigeCampo(campo);
    if (!opciones_.IgnoraTipoCambio) ExigeCampo(u"TIP_CAM");
    if (ventas) {
      for (const char16_t* campo : {u"DESC1", u"DESC2", u"DESC3"}) ExigeCampo(campo);
    } else {
      for (const char16_t* campo : {u"COST", u"DESCU"}) ExigeCampo(campo);
    }
    for (std::size_t i = 0; i < kImpuestos; ++i) {
      tasa_[i] = partidas_.FindField(CampoTasa(i));
      codigo_[i] = partidas_.FindField(CampoCodigo(i));
      if (codigo_[i] != nullptr) ExigeCampo(CampoTasa(i));
    }
    RevisaRegistros();
    if (conCuota_) {
      for (const char16_t* campo : {u"APL_MAN_IMP", u"APL_MAN_IEPS", u"MTO_CUOTA"}) ExigeCampo(campo);
    }
    if (faltan_.empty()) return;
    throw EInvalidOperation(u"A las partidas de " + UnicodeString(ventas ? u"ventas" : u"compras") +
                            u" les faltan campos: " + faltan_);
  }

 private:
  void Falta(const UnicodeString& que) { faltan_ += (faltan_.empty() ? u"" : u", ") + que; }

  void ExigeCampo(const UnicodeString& campo) {
    if (partidas_.FindField(campo) == nullptr) Falta(campo);
  }

  void RevisaRegistros() {
    const TField* const manejo = partidas_.FindField(u"MAN_IEPS");
    std::array<bool, kImpuestos> dicho{};
    for (partidas_.First(); !partidas_.Eof(); partidas_.Next()) {
      conCuota_ = conCuota_ || (manejo != nullptr && Es(*manejo, u"S"));
      for (std::size_t i = 0; i < kImpuestos; ++i) {
        if (tasa_[i] == nullptr || dicho[i]) continue;
        if (codigo_[i] != nullptr) {
          RevisaCodigo(i);
        } else if (tasa_[i]->AsFloat() != 0) {
          dicho[i] = true;
          Falta(CampoCodigo(i) + u" (el código de base de " + CampoTasa(i) +
                u", que tiene tasa en la partida " + Numero(partidas_.RecNo()) + u")");
        }
      }
    }
  }

  void RevisaCodigo(std::size_t i) const {
    const int codigo = codigo_[i]->AsInteger();
    if ((codigo >= 0 && codigo < TCalculoCFDI::kImpuestos) || tasa_[i]->AsFloat() == 0) return;
    throw EInvalidOperation(EnPartida(partidas_.RecNo(), CampoCodigo(i) + u" es " + IntToStr(codigo) +
                                                             u", que no es un código de base (0 a 7), y " +
                                                             CampoTasa(i) + u" tiene tasa"));
  }

  TClientDataSet& partidas_;
  const OpcionesDocumento& opciones_;
  UnicodeString faltan_;
  std::array<const TField*, kImpuestos> tasa_{};
  std::array<const TField*, kImpuestos> codigo_{};
  bool conCuota_ = false;
};

/// Names the line that makes the total no number.
void ExigeFinito(TCalculoCFDI& motor) {
  if (std::isfinite(motor.TotalImpuestos)) return;
  TClientDataSet& partidas = motor.Partidas;
  for (partidas.First(); !partidas.Eof(); partidas.Next()) {
    const TDatosPartida d = LeePartida(partidas, motor.Modulo, motor.IgnoraTipoCambio);
    if (std::isfinite(CalcularImpuestosPartida(d).Importe)) continue;
    throw EInvalidOperation(EnPartida(
        partidas.RecNo(), u"el importe no es un número finito; TIP_CAM es " + FloatToStr(d.TipoCambio)));
  }
  throw EInvalidOperation(u"El total del documento no es un número finito");
}

bool EsRetenido(const TImpuestoAsignado& asignado, double signo) { return asignado.Retenido || signo < 0; }

UnicodeString NombreDe(const TImpuestoAsignado& asignado) {
  using enum ENUM_IMPUESTO_FISCAL;
  switch (asignado.Impuesto) {
    case ISR:
      return u"ISR";
    case IVA:
      return u"IVA";
    case IEPS:
      return u"IEPS";
    default:
      return asignado.Nombre;
  }
}

// As the engine's lists accumulate: every sum is what its text reads back to.
void Acumula(double& suma, double valor) { suma = RoundToText(suma + valor); }

}  // namespace

Documento::Documento(std::span<const Partida> partidas, ENUM_MODULO modulo) : motor_(CreaMotor(modulo)) {
  Traduccion traduccion = Traduce(partidas, modulo);
  motor_->Partidas = CreaConjunto(partidas, traduccion, modulo);
  asignacion_ = std::move(traduccion.Impuestos);
  notas_ = std::move(traduccion.Notas);
  motor_->CalculaTotales();
}

Documento::Documento(const TClientDataSet& partidas, const OpcionesDocumento& opciones)
    : motor_(CreaMotor(opciones.Modulo)), asignacion_(opciones.Impuestos), notas_(opciones.Notas) {
  motor_->IgnoraTipoCambio = opciones.IgnoraTipoCambio;
  motor_->SetPartidas(partidas);
  try {
    Revision(motor_->Partidas, opciones).Exige();
    motor_->CalculaTotales();
  } catch (const EConvertError& e) {
    // Both stop at the line that they read.
    if (motor_->Partidas.Eof()) throw;
    throw EConvertError(EnPartida(motor_->Partidas.RecNo(), e.Message()));
  }
  ExigeFinito(*motor_);
}

double Documento::Subtotal() const { return motor_->Subtotal; }

double Documento::Descuentos() const { return motor_->SumaDescuentos; }

double Documento::Impuestos() const { return motor_->TotalImpuestosRedondeado; }

double Documento::ImpuestosTrasladados() const { return SumaImpuestos(false); }

double Documento::ImpuestosRetenidos() const { return 0 - SumaImpuestos(true); }

double Documento::Total() const { return motor_->TotalImpuestos; }

double Documento::SumaImpuestos(bool retenidos) const {
  double suma = 0;
  for (std::size_t i = 0; i < kImpuestos; ++i) {
    const double total = motor_->TotalImpuesto[i];
    if (EsRetenido(asignacion_[i], total) == retenidos) suma += total;
  }
  return g_redoTo(suma, kDecimalesTotales);
}

std::vector<PartidaCalculada> Documento::Partidas() const {
  TClientDataSet& registros = motor_->Partidas;
  std::vector<PartidaCalculada> calculadas;
  calculadas.reserve(registros.RecordCount());
  const TField& producto = registros.FieldByName(u"TIPO_PROD");
  const TField& elemento = registros.FieldByName(u"TIPO_ELEM");
  const TField* const muestra = registros.FindField(u"MUESTRA_PAR");
  for (registros.First(); !registros.Eof(); registros.Next()) {
    PartidaCalculada& p = calculadas.emplace_back();
    p.Renglon = registros.RecNo();
    p.Cuenta = !((Es(producto, u"P") || Es(producto, u"S")) && Es(elemento, u"K")) &&
               !(Es(producto, u"G") && Es(elemento, u"N"));
    p.Visible = muestra == nullptr || Es(*muestra, u"N") || Es(*muestra, u"");
    p.Datos = LeePartida(registros, motor_->Modulo, motor_->IgnoraTipoCambio);
    p.Montos = CalcularImpuestosPartida(p.Datos);
  }
  return calculadas;
}

std::vector<ImpuestoPorTasa> Documento::PorTasa() const {
  const std::vector<PartidaCalculada> partidas = Partidas();
  std::vector<std::array<bool, kImpuestos>> exento(partidas.size());
  for (const TNotaPartida& nota : notas_) {
    if (nota.Renglon >= 1 && nota.Renglon <= exento.size()) exento[nota.Renglon - 1] = nota.Exento;
  }
  std::vector<ImpuestoPorTasa> filas;
  for (std::size_t i = 0; i < kImpuestos; ++i) {
    const std::size_t primera = filas.size();
    const TImpuestoAsignado& asignado = asignacion_[i];
    const bool ceroDice = !asignado.Retenido && (asignado.Impuesto == ENUM_IMPUESTO_FISCAL::IVA ||
                                                 asignado.Impuesto == ENUM_IMPUESTO_FISCAL::IEPS);
    for (const PartidaCalculada& p : partidas) {
      if (!p.Cuenta || !p.Visible || !p.Montos.Aplica[i] || exento[p.Renglon - 1][i]) continue;
      const double tasa = RoundToText(g_redoTo(p.Datos.Tasa[i], kDecimalesPartida));
      // A quota enters the engine's list as it is.
      const bool conCuota = p.Datos.ImpuestoConCuota == static_cast<int>(i) + 1;
      const double importe = conCuota ? p.Montos.Impuesto[i] : p.Montos.ImpuestoRedondeado[i];
      if (tasa == 0 && importe == 0 && !ceroDice) continue;
      auto fila = std::find_if(filas.begin() + static_cast<std::ptrdiff_t>(primera), filas.end(),
                               [tasa](const ImpuestoPorTasa& f) { return f.Tasa == tasa; });
      if (fila == filas.end()) {
        filas.push_back({.Numero = static_cast<int>(i) + 1,
                         .Impuesto = asignado.Impuesto,
                         .Nombre = NombreDe(asignado),
                         .Retenido = EsRetenido(asignado, tasa),
                         .Tasa = tasa});
        fila = filas.end() - 1;
      }
      Acumula(fila->Base, p.Montos.BaseGravable[i]);
      Acumula(fila->Neto, p.Montos.Base);
      Acumula(fila->Importe, tasa < 0 ? -importe : importe);
    }
  }
  for (ImpuestoPorTasa& f : filas) f.Tasa = std::abs(f.Tasa);
  return filas;
}

TResumenFiscal Documento::Resumen(const OpcionesResumen& opciones) const {
  TDatosFiscales datos{.Impuestos = asignacion_,
                       .DecimalesMoneda = opciones.DecimalesMoneda,
                       .DecimalesLinea = opciones.DecimalesLinea,
                       .Notas = notas_};
  if (opciones.Fecha) datos.Fecha = *opciones.Fecha;
  return TResumenFiscal(*motor_, datos);
}

std::vector<UnicodeString> Documento::Avisos() const {
  // Totals are made of parts rounded to cents.
  constexpr double kMedioCentavo = 0.005;
  double descuentos = 0;
  std::array<double, kImpuestos> impuestos{};
  std::array<int, kImpuestos> redondeos{};
  for (const PartidaCalculada& p : Partidas()) {
    if (!p.Cuenta) continue;
    for (const double d : p.Montos.Descuento) descuentos += d;
    for (std::size_t i = 0; p.Visible && i < kImpuestos; ++i) impuestos[i] += p.Montos.ImpuestoRedondeado[i];
  }
  for (const ImpuestoPorTasa& f : PorTasa()) ++redondeos[static_cast<std::size_t>(f.Numero - 1)];
  std::vector<UnicodeString> avisos;
  const auto compara = [&avisos](const UnicodeString& que, double motor, double suyas, double margen,
                                 const char16_t* causa) {
    if (std::abs(motor - suyas) <= margen) return;
    avisos.push_back(que + u": el motor da " + FormateaMonto(motor) + u" y las partidas suman " +
                     FormateaMonto(suyas) + u"; " + causa);
  };
  compara(u"Descuentos", motor_->SumaDescuentos, descuentos, kMedioCentavo,
          u"una partida que no cuenta, oculta o sin impuestos lleva los descuentos de la anterior");
  for (std::size_t i = 0; i < kImpuestos; ++i) {
    const UnicodeString nombre = NombreDe(asignacion_[i]);
    compara(nombre.empty() ? u"Impuesto " + Numero(i + 1) : nombre, motor_->TotalImpuesto[i], impuestos[i],
            kMedioCentavo * (1 + redondeos[i]),
            u"una cuota reemplaza el impuesto de las partidas anteriores, y sin tasa no entra en las listas");
  }
  return avisos;
}

}  // namespace vel::facil

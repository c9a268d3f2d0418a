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
constexpr std::array<std::u16string_view, kImpuestos> kTasas{u"IMPU1", u"IMPU2", u"IMPU3", u"IMPU4",
                                                             u"IMPU5", u"IMPU6", u"IMPU7", u"IMPU8"};
constexpr std::array<std::u16string_view, kImpuestos> kCodigos{
    u"IMP1APLA", u"IMP2APLA", u"IMP3APLA", u"IMP4APLA", u"IMP5APLA", u"IMP6APLA", u"IMP7APLA", u"IMP8APLA"};

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

/// What a data set lacks, told at once.
class Revision {
 public:
  explicit Revision(TCalculoCFDI& motor) : motor_(motor), partidas_(motor.Partidas) {}

  /// What the engine does not miss: anything where there are no lines, a rate without its base code, the
  /// handling of quotas and the cost of purchases without taxes.
  bool Sospecha() {
    if (partidas_.IsEmpty() || partidas_.FindField(u"MAN_IEPS") == nullptr) return true;
    if (motor_.Modulo != ENUM_MODULO::MODULO_VENTAS && partidas_.FindField(u"COST") == nullptr) return true;
    for (std::size_t i = 0; i < kImpuestos; ++i) {
      if (partidas_.FindField(kCodigos[i]) == nullptr && PrimeraConTasa(i) != 0) return true;
    }
    return false;
  }

  /// Raises when something is missing.
  void Exige() {
    const bool ventas = motor_.Modulo == ENUM_MODULO::MODULO_VENTAS;
    for (const auto campo : {u"CVE_DOC", u"CANT", u"PREC", u"TIPO_PROD", u"TIPO_ELEM", u"MAN_IEPS"})
      Campo(campo);
    if (!motor_.IgnoraTipoCambio) Campo(u"TIP_CAM");
    if (ventas) {
      for (const auto campo : {u"DESC1", u"DESC2", u"DESC3"}) Campo(campo);
    } else {
      for (const auto campo : {u"COST", u"DESCU"}) Campo(campo);
    }
    for (std::size_t i = 0; i < kImpuestos; ++i) ExigeImpuesto(i);
    ExigeCuota();
    if (faltan_.empty()) return;
    throw EInvalidOperation(u"A las partidas de " + UnicodeString(ventas ? u"ventas" : u"compras") +
                            u" les faltan campos: " + faltan_);
  }

 private:
  void Falta(std::u16string_view que) {
    if (!faltan_.empty()) faltan_ += u", ";
    faltan_ += que;
  }

  void Campo(std::u16string_view nombre) {
    if (partidas_.FindField(nombre) == nullptr) Falta(nombre);
  }

  /// Number of the first line where the tax has a rate; 0 when none has.
  std::size_t PrimeraConTasa(std::size_t i) {
    const TField* const tasa = partidas_.FindField(kTasas[i]);
    if (tasa == nullptr) return 0;
    for (partidas_.First(); !partidas_.Eof(); partidas_.Next()) {
      if (tasa->AsFloat() != 0) return partidas_.RecNo();
    }
    return 0;
  }

  void ExigeImpuesto(std::size_t i) {
    if (partidas_.FindField(kCodigos[i]) != nullptr) return Campo(kTasas[i]);
    if (const std::size_t renglon = PrimeraConTasa(i); renglon != 0) {
      Falta(UnicodeString(kCodigos[i]) + u" (el código de base de " + UnicodeString(kTasas[i]) +
            u", que tiene tasa en la partida " + Numero(renglon) + u")");
    }
  }

  void ExigeCuota() {
    constexpr std::array<std::u16string_view, 3> kCuota{u"APL_MAN_IMP", u"APL_MAN_IEPS", u"MTO_CUOTA"};
    const TField* const manejo = partidas_.FindField(u"MAN_IEPS");
    const auto existe = [this](std::u16string_view nombre) { return partidas_.FindField(nombre) != nullptr; };
    if (manejo == nullptr || std::all_of(kCuota.begin(), kCuota.end(), existe)) return;
    for (partidas_.First(); !partidas_.Eof(); partidas_.Next()) {
      if (!Es(*manejo, u"S")) continue;
      for (const std::u16string_view nombre : kCuota) Campo(nombre);
      return;
    }
  }

  const TCalculoCFDI& motor_;
  TClientDataSet& partidas_;
  UnicodeString faltan_;
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

/// Whether a rate of 0 % says something: of a transferred tax of the standard.
bool ImprimeCero(const TImpuestoAsignado& asignado) {
  const bool traslado =
      asignado.Impuesto == ENUM_IMPUESTO_FISCAL::IVA || asignado.Impuesto == ENUM_IMPUESTO_FISCAL::IEPS;
  return traslado && !asignado.Retenido;
}

ImpuestoPorTasa Fila(std::size_t impuesto, const TImpuestoAsignado& asignado, double tasa) {
  return {.Numero = static_cast<int>(impuesto) + 1,
          .Impuesto = asignado.Impuesto,
          .Nombre = NombreDe(asignado),
          .Retenido = EsRetenido(asignado, tasa),
          .Tasa = tasa};
}

// As the engine's lists accumulate: every sum is what its text reads back to.
void Acumula(double& suma, double valor) { suma = RoundToText(suma + valor); }

}  // namespace

Documento::Documento(std::span<const Partida> partidas, ENUM_MODULO modulo) : motor_(CreaMotor(modulo)) {
  Traduccion traduccion = Traduce(partidas, modulo);
  motor_->Partidas = CreaConjunto(partidas, traduccion, modulo);
  asignacion_ = std::move(traduccion.Impuestos);
  notas_ = std::move(traduccion.Notas);
  lineas_ = std::move(traduccion.Lineas);
  motor_->CalculaTotales();
}

Documento::Documento(const TClientDataSet& partidas, OpcionesDocumento opciones)
    : motor_(CreaMotor(opciones.Modulo)),
      asignacion_(std::move(opciones.Impuestos)),
      notas_(std::move(opciones.Notas)) {
  motor_->IgnoraTipoCambio = opciones.IgnoraTipoCambio;
  motor_->SetPartidas(partidas);
  try {
    Revision revision(*motor_);
    if (revision.Sospecha()) revision.Exige();
    try {
      motor_->CalculaTotales();
    } catch (const EDatabaseError&) {
      revision.Exige();
      throw;
    }
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
  // The engine has read those that decide.
  const TField* const producto = registros.FindField(u"TIPO_PROD");
  const TField* const elemento = registros.FindField(u"TIPO_ELEM");
  const TField* const muestra = registros.FindField(u"MUESTRA_PAR");
  const auto es = [](const TField* campo, std::u16string_view texto) {
    return campo != nullptr && Es(*campo, texto);
  };
  for (registros.First(); !registros.Eof(); registros.Next()) {
    PartidaCalculada& p = calculadas.emplace_back();
    p.Renglon = registros.RecNo();
    p.Cuenta = !((es(producto, u"P") || es(producto, u"S")) && es(elemento, u"K")) &&
               !(es(producto, u"G") && es(elemento, u"N"));
    p.Visible = muestra == nullptr || es(muestra, u"N") || es(muestra, u"");
    p.Datos = lineas_.empty() ? LeePartida(registros, motor_->Modulo, motor_->IgnoraTipoCambio)
                              : lineas_[p.Renglon - 1];
    p.Montos = CalcularImpuestosPartida(p.Datos);
  }
  return calculadas;
}

std::vector<ImpuestoPorTasa> Documento::PorTasa() const { return BastanListas() ? DeListas() : DePartidas(); }

// The engine's lists lack rates that are not above zero, and the taxes that a base code adds to their bases.
bool Documento::BastanListas() const {
  return !lineas_.empty() && std::all_of(lineas_.begin(), lineas_.end(), [this](const TDatosPartida& d) {
    for (std::size_t i = 0; i < kImpuestos; ++i) {
      if (d.Codigo[i] == TDatosPartida::kNoAplica) continue;
      const bool listada = d.Tasa[i] > 0 || (d.Tasa[i] == 0 && !ImprimeCero(asignacion_[i]));
      if (d.Codigo[i] != 0 || !listada) return false;
    }
    return d.ImpuestoConCuota == 0;
  });
}

std::vector<ImpuestoPorTasa> Documento::DeListas() const {
  std::vector<ImpuestoPorTasa> filas;
  for (std::size_t i = 0; i < kImpuestos; ++i) {
    const TStringList& lista = motor_->ListaImpuesto[i];
    for (std::size_t k = 0; k < lista.Count(); ++k) {
      const auto& montos = dynamic_cast<const TStringList&>(*lista.Objects(k));
      ImpuestoPorTasa& f = filas.emplace_back(Fila(i, asignacion_[i], StrToFloat(lista[k])));
      f.Base = f.Neto = StrToFloat(montos[0]);
      f.Importe = StrToFloat(montos[1]);
    }
  }
  return filas;
}

std::vector<ImpuestoPorTasa> Documento::DePartidas() const {
  const std::vector<PartidaCalculada> partidas = Partidas();
  std::vector<std::array<bool, kImpuestos>> exento(partidas.size());
  for (const TNotaPartida& nota : notas_) {
    if (nota.Renglon >= 1 && nota.Renglon <= exento.size()) exento[nota.Renglon - 1] = nota.Exento;
  }
  std::vector<ImpuestoPorTasa> filas;
  for (std::size_t i = 0; i < kImpuestos; ++i) {
    const auto primera = static_cast<std::ptrdiff_t>(filas.size());
    for (const PartidaCalculada& p : partidas) {
      if (!p.Cuenta || !p.Visible || !p.Montos.Aplica[i] || exento[p.Renglon - 1][i]) continue;
      const double tasa = RoundToText(g_redoTo(p.Datos.Tasa[i], kDecimalesPartida));
      // A quota enters the engine's list as it is.
      const bool conCuota = p.Datos.ImpuestoConCuota == static_cast<int>(i) + 1;
      const double importe = conCuota ? p.Montos.Impuesto[i] : p.Montos.ImpuestoRedondeado[i];
      if (tasa == 0 && importe == 0 && !ImprimeCero(asignacion_[i])) continue;
      auto fila = std::find_if(filas.begin() + primera, filas.end(),
                               [tasa](const ImpuestoPorTasa& f) { return f.Tasa == tasa; });
      if (fila == filas.end()) fila = filas.insert(fila, Fila(i, asignacion_[i], tasa));
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
  std::vector<UnicodeString> avisos;
  double descuentos = 0;
  std::array<double, kImpuestos> impuestos{};
  std::array<int, kImpuestos> redondeos{};
  for (const PartidaCalculada& p : Partidas()) {
    if (!p.Cuenta) continue;
    for (const double d : p.Montos.Descuento) descuentos += d;
    for (std::size_t i = 0; p.Visible && i < kImpuestos; ++i) {
      impuestos[i] += p.Montos.ImpuestoRedondeado[i];
      const int codigo = p.Datos.Codigo[i];
      if (p.Datos.Tasa[i] == 0 || (codigo >= 0 && codigo < TCalculoCFDI::kImpuestos)) continue;
      avisos.push_back(EnPartida(p.Renglon, UnicodeString(kCodigos[i]) + u" es " + IntToStr(codigo) +
                                                u", que no es un código de base (0 a 7): la tasa de " +
                                                UnicodeString(kTasas[i]) + u" no se aplica"));
    }
  }
  for (const ImpuestoPorTasa& f : PorTasa()) ++redondeos[static_cast<std::size_t>(f.Numero - 1)];
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

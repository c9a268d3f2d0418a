#include "facil/Partida.h"

#include <cstdint>
#include <string_view>
#include <utility>

#include "Uutilext/documents/Redondeo.h"
#include "facil/Traduccion.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel::facil {

namespace {

// Quantities and prices that the fiscal summary takes, the least that the engine does not round to zero, and
// the summary's largest rate.
constexpr double kMaximo = 9e12;
constexpr double kMinimo = 0.000001;
constexpr double kTasaMaxima = 1000;
constexpr int kDecimales = 6;

// 0-based, as arrays have them.
constexpr std::size_t kIeps = 0;
constexpr std::size_t kRetencionIsr = 1;
constexpr std::size_t kRetencionIva = 2;
constexpr std::size_t kIva = 3;
constexpr std::size_t kPrimerLocal = 4;

/// Checks and translates the lines one by one.
class Traductor {
 public:
  Traductor(Traduccion& traduccion, ENUM_MODULO modulo) : traduccion_(traduccion), modulo_(modulo) {}

  void Agrega(const Partida& p) {
    ++renglon_;
    nota_ = {.Renglon = renglon_};
    TDatosPartida& d = traduccion_.Lineas.emplace_back();
    d.Cantidad = Exige(p.Cantidad, u"Cantidad", 0, kMaximo);
    d.Precio = Exige(p.Precio, u"Precio", 0, kMaximo);
    d.TipoCambio = Exige(p.TipoCambio, u"TipoCambio", kMinimo, kMaximo);
    suma_ += Exige(p.Cantidad * p.Precio / p.TipoCambio, u"el importe", 0, kMaximo);
    Exige(suma_, u"el importe del documento hasta aquí", 0, kMaximo);
    PonDescuentos(d, p);
    PonIeps(d, p);
    PonIva(d, p);
    // On every line, so that one without taxes is discounted too.
    PonTasa(d, kRetencionIsr, -Tasa(p.RetencionIsr.value_or(0), u"RetencionIsr"), 0);
    for (const ImpuestoLocal& local : p.Locales) PonLocal(d, local);
    if (!p.Visible) ExigeSinImpuestos(p);
    if (nota_.Unidades || nota_.Exento[kIva]) traduccion_.Notas.push_back(nota_);
  }

 private:
  [[noreturn]] void Falla(const UnicodeString& mensaje) const {
    throw EInvalidOperation(u"Partida " + IntToStr(static_cast<std::int64_t>(renglon_)) + u": " + mensaje);
  }

  double Exige(double valor, std::u16string_view campo, double minimo, double maximo) const {
    if (valor >= minimo && valor <= maximo) return valor;
    Falla(UnicodeString(campo) + u" es " + FloatToStr(valor) + u", que no está entre " + FloatToStr(minimo) +
          u" y " + FloatToStr(maximo));
  }

  double Tasa(double tasa, std::u16string_view campo) const { return Exige(tasa, campo, 0, kTasaMaxima); }

  // A rate of -0 would be one of 0 % that differs from it in a bit.
  static void PonTasa(TDatosPartida& d, std::size_t impuesto, double tasa, int codigo) {
    d.Tasa[impuesto] = tasa == 0 ? 0 : tasa;
    d.Codigo[impuesto] = codigo;
  }

  void PonDescuentos(TDatosPartida& d, const Partida& p) const {
    double suma = 0;
    for (const double descuento : p.Descuentos) suma += Exige(descuento, u"Descuentos", 0, 100);
    Exige(suma, u"la suma de Descuentos", 0, 100);
    if (modulo_ != ENUM_MODULO::MODULO_VENTAS && (p.Descuentos[1] != 0 || p.Descuentos[2] != 0))
      Falla(u"Descuentos tiene más de uno, y las compras sólo tienen un descuento");
    d.PorcDescuento = p.Descuentos;
  }

  void PonIeps(TDatosPartida& d, const Partida& p) {
    if (!p.Ieps && !p.Cuota) return;
    PonTasa(d, kIeps, Tasa(p.Ieps.value_or(0), u"Ieps"), 0);
    if (!p.Cuota) return;
    const CuotaIeps& c = *p.Cuota;
    const double unidades = Exige(c.Unidades.value_or(p.Cantidad), u"Cuota.Unidades", kMinimo, kMaximo);
    d.ImpuestoConCuota = static_cast<int>(kIeps) + 1;
    d.Cuota = g_redoTo(Exige(c.PorUnidad, u"Cuota.PorUnidad", 0, kMaximo) * unidades, kDecimales);
    Exige(d.Cuota, u"la cuota de la partida", 0, kMaximo);
    d.ModoCuota = c.Modo;
    switch (c.Modo) {
      case ENUM_CUOTA::NINGUNA:
        d.ModoCuota = p.Ieps ? ENUM_CUOTA::ADICIONAL : ENUM_CUOTA::SOLA;
        break;
      case ENUM_CUOTA::SOLA:
        if (p.Ieps) Falla(u"Cuota.Modo es SOLA y hay además una tasa en Ieps");
        break;
      case ENUM_CUOTA::MINIMA:
      case ENUM_CUOTA::ADICIONAL:
        if (!p.Ieps) Falla(u"Cuota.Modo es MINIMA o ADICIONAL y falta la tasa en Ieps");
        break;
      default:
        Falla(u"Cuota.Modo no es uno de los modos de cuota");
    }
    nota_.Unidades = c.Unidades;
  }

  void PonIva(TDatosPartida& d, const Partida& p) {
    const int codigo = p.Ieps || p.Cuota ? 1 : 0;
    if (p.Iva && p.IvaExento) Falla(u"Iva tiene tasa y la partida está exenta (IvaExento)");
    nota_.Exento[kIva] = p.IvaExento;
    if (p.Iva || p.IvaExento) PonTasa(d, kIva, Tasa(p.Iva.value_or(0), u"Iva"), codigo);
    if (p.RetencionIva) PonTasa(d, kRetencionIva, -Tasa(*p.RetencionIva, u"RetencionIva"), codigo);
  }

  void PonLocal(TDatosPartida& d, const ImpuestoLocal& local) {
    if (local.Nombre.empty()) Falla(u"Locales tiene un impuesto sin nombre");
    const std::size_t impuesto = NumeroLocal(local);
    if (d.Codigo[impuesto] != TDatosPartida::kNoAplica)
      Falla(u"Locales tiene dos veces '" + local.Nombre + u"'");
    const double tasa = Tasa(local.Tasa, u"Locales['" + local.Nombre + u"']");
    PonTasa(d, impuesto, local.Retenido ? -tasa : tasa, 0);
  }

  std::size_t NumeroLocal(const ImpuestoLocal& local) {
    const TImpuestoAsignado buscado{ENUM_IMPUESTO_FISCAL::LOCAL, local.Retenido, local.Nombre};
    for (std::size_t i = kPrimerLocal; i < traduccion_.Impuestos.size(); ++i) {
      TImpuestoAsignado& asignado = traduccion_.Impuestos[i];
      if (asignado.Impuesto == ENUM_IMPUESTO_FISCAL::NINGUNO) asignado = buscado;
      if (asignado == buscado) return i;
    }
    Falla(u"Locales tiene '" + local.Nombre + u"', y el documento no admite más de cuatro impuestos locales");
  }

  void ExigeSinImpuestos(const Partida& p) const {
    if (p.Iva || p.IvaExento || p.Ieps || p.Cuota || p.RetencionIsr || p.RetencionIva || !p.Locales.empty())
      Falla(u"Visible es falso y la partida tiene impuestos, que el motor no calcula en una partida oculta");
    if (p.Descuentos != TCalculoCFDI::Descuentos{})
      Falla(u"Visible es falso y la partida tiene Descuentos, que el motor no calcula en una partida oculta");
  }

  Traduccion& traduccion_;
  ENUM_MODULO modulo_;
  std::size_t renglon_ = 0;
  double suma_ = 0;
  TNotaPartida nota_;
};

// Modules that have a field.
enum class En : std::uint8_t { AMBOS, VENTAS, COMPRAS };

/// A field of the data set that does not belong to one of the eight taxes. Texts that say nothing stay null,
/// which reads as the empty text.
struct Columna {
  const char16_t* nombre;
  TFieldType tipo;
  int largo;
  En modulo;
  void (*escribe)(TField& campo, const Partida& partida, const TDatosPartida& datos);
};

using enum TFieldType;
using Campo = TField;
using Datos = TDatosPartida;

constexpr Columna kColumnas[] = {
    {u"CVE_DOC", ftString, 20, En::AMBOS, [](Campo&, const Partida&, const Datos&) {}},
    {u"CANT", ftFloat, 0, En::AMBOS,
     [](Campo& c, const Partida&, const Datos& d) { c.SetAsFloat(d.Cantidad); }},
    // The subtotal of a purchase is of its price, its taxes of its cost.
    {u"PREC", ftFloat, 0, En::AMBOS,
     [](Campo& c, const Partida&, const Datos& d) { c.SetAsFloat(d.Precio); }},
    {u"COST", ftFloat, 0, En::COMPRAS,
     [](Campo& c, const Partida&, const Datos& d) { c.SetAsFloat(d.Precio); }},
    {u"TIP_CAM", ftFloat, 0, En::AMBOS,
     [](Campo& c, const Partida&, const Datos& d) { c.SetAsFloat(d.TipoCambio); }},
    {u"DESC1", ftFloat, 0, En::VENTAS,
     [](Campo& c, const Partida&, const Datos& d) { c.SetAsFloat(d.PorcDescuento[0]); }},
    {u"DESC2", ftFloat, 0, En::VENTAS,
     [](Campo& c, const Partida&, const Datos& d) { c.SetAsFloat(d.PorcDescuento[1]); }},
    {u"DESC3", ftFloat, 0, En::VENTAS,
     [](Campo& c, const Partida&, const Datos& d) { c.SetAsFloat(d.PorcDescuento[2]); }},
    {u"DESCU", ftFloat, 0, En::COMPRAS,
     [](Campo& c, const Partida&, const Datos& d) { c.SetAsFloat(d.PorcDescuento[0]); }},
    {u"MAN_IEPS", ftString, 1, En::AMBOS,
     [](Campo& c, const Partida&, const Datos& d) {
       if (d.ImpuestoConCuota != 0) c.SetAsString(u"S");
     }},
    {u"APL_MAN_IMP", ftInteger, 0, En::AMBOS,
     [](Campo& c, const Partida&, const Datos& d) { c.SetAsInteger(d.ImpuestoConCuota); }},
    {u"APL_MAN_IEPS", ftString, 1, En::AMBOS,
     [](Campo& c, const Partida&, const Datos& d) {
       const auto letra = static_cast<char16_t>(d.ModoCuota);
       if (d.ImpuestoConCuota != 0) c.SetAsString({&letra, 1});
     }},
    {u"MTO_CUOTA", ftFloat, 0, En::AMBOS,
     [](Campo& c, const Partida&, const Datos& d) { c.SetAsFloat(d.Cuota); }},
    {u"TIPO_PROD", ftString, 1, En::AMBOS,
     [](Campo& c, const Partida& p, const Datos&) {
       if (p.ComponenteDeKit) c.SetAsString(u"P");
     }},
    {u"TIPO_ELEM", ftString, 1, En::AMBOS,
     [](Campo& c, const Partida& p, const Datos&) {
       if (p.ComponenteDeKit) c.SetAsString(u"K");
     }},
    {u"MUESTRA_PAR", ftString, 1, En::AMBOS,
     [](Campo& c, const Partida& p, const Datos&) {
       if (!p.Visible) c.SetAsString(u"S");
     }},
};

}  // namespace

ImpuestoLocal::ImpuestoLocal(const Texto& nombre, double tasa, bool retenido)
    : Nombre(nombre.Vista()), Tasa(tasa), Retenido(retenido) {}

Traduccion Traduce(std::span<const Partida> partidas, ENUM_MODULO modulo) {
  Traduccion traduccion;
  traduccion.Lineas.reserve(partidas.size());
  Traductor traductor(traduccion, modulo);
  for (const Partida& p : partidas) traductor.Agrega(p);
  return traduccion;
}

TClientDataSet CreaConjunto(std::span<const Partida> partidas, const Traduccion& traduccion,
                            ENUM_MODULO modulo) {
  const En suyo = modulo == ENUM_MODULO::MODULO_VENTAS ? En::VENTAS : En::COMPRAS;
  std::vector<TFieldDef> defs;
  std::vector<const Columna*> columnas;
  for (const Columna& c : kColumnas) {
    if (c.modulo != En::AMBOS && c.modulo != suyo) continue;
    columnas.push_back(&c);
    defs.push_back({.Name = c.nombre, .DataType = c.tipo, .Size = c.largo});
  }
  // Without local taxes the last four have no fields.
  std::size_t impuestos = 0;
  for (const TImpuestoAsignado& a : traduccion.Impuestos) {
    if (a.Impuesto == ENUM_IMPUESTO_FISCAL::NINGUNO) break;
    const UnicodeString n = IntToStr(static_cast<std::int64_t>(++impuestos));
    defs.push_back({.Name = u"IMPU" + n, .DataType = ftFloat});
    defs.push_back({.Name = u"IMP" + n + u"APLA", .DataType = ftInteger});
  }
  TClientDataSet datos;
  datos.CreateDataSet(std::move(defs));
  for (std::size_t r = 0; r < partidas.size(); ++r) {
    const TDatosPartida& d = traduccion.Lineas[r];
    datos.Append();
    std::size_t campo = 0;
    for (const Columna* c : columnas) c->escribe(datos.Fields(campo++), partidas[r], d);
    for (std::size_t i = 0; i < impuestos; ++i) {
      datos.Fields(campo++).SetAsFloat(d.Tasa[i]);
      datos.Fields(campo++).SetAsInteger(d.Codigo[i]);
    }
  }
  datos.First();
  return datos;
}

TClientDataSet CreaPartidas(std::span<const Partida> partidas, ENUM_MODULO modulo) {
  return CreaConjunto(partidas, Traduce(partidas, modulo), modulo);
}

}  // namespace vel::facil

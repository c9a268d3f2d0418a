// From the engine's lines to the printed ones.

#include <algorithm>
#include <cmath>
#include <optional>

#include "Ucalculocfdi/CamposPartida.h"
#include "Ucalculocfdi/Enteros128.h"
#include "Ucalculocfdi/TResumenFiscal.h"
#include "Ucalculocfdi/TotalesFiscales.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel {
namespace {

using exacto::Diez;
using exacto::DivideRedondea;
using exacto::Entero128;
using exacto::kMillon;
using exacto::Monto;
using exacto::Multiplica;

constexpr std::size_t kImpuestos = TCalculoCFDI::kImpuestos;
// Quantities, prices, percentages, exchange rates and printed rates.
constexpr int kDecimales = 6;
// 100 % in millionths of a percent, and the largest rate.
constexpr std::int64_t kCiento = 100 * kMillon;
constexpr std::int64_t kTasaMaxima = 1000 * kMillon;
// Above this, six decimals do not fit in what can be printed.
constexpr double kMaximo = 9e12;
// Doubles from here on hold no cents.
constexpr double kMaximoMotor = 1e15;

[[noreturn]] void Falla(const UnicodeString& mensaje) { throw EInvalidOperation(mensaje); }

std::int64_t ExigeNumero(double valor, std::u16string_view nombre) {
  if (!std::isfinite(valor)) Falla(UnicodeString(nombre) + u" no es un número finito");
  if (std::abs(valor) > kMaximo) Falla(UnicodeString(nombre) + u" es demasiado grande: " + FloatToStr(valor));
  return exacto::Millonesimas(valor);
}

std::int64_t ExigeNoNegativo(double valor, std::u16string_view nombre) {
  const std::int64_t millonesimas = ExigeNumero(valor, nombre);
  if (millonesimas < 0)
    Falla(UnicodeString(nombre) + u" es negativo y el comprobante no imprime negativos: " +
          FloatToStr(valor));
  return millonesimas;
}

// It has no default: a tax added to the enumeration does not compile before it is said that it is one.
#pragma GCC diagnostic error "-Wswitch"
bool EsMiembro(ENUM_IMPUESTO_FISCAL impuesto) noexcept {
  using enum ENUM_IMPUESTO_FISCAL;
  switch (impuesto) {
    case NINGUNO:
    case ISR:
    case IVA:
    case IEPS:
    case LOCAL:
      return true;
  }
  return false;
}

void ExigeAsignacion(const TAsignacionFiscal& asignacion) {
  for (std::size_t i = 0; i < kImpuestos; ++i) {
    const TImpuestoAsignado& a = asignacion[i];
    const auto falla = [i](const char16_t* causa) {
      Falla(u"La asignación del impuesto " + IntToStr(static_cast<int>(i) + 1) + u" se contradice: " + causa);
    };
    if (!EsMiembro(a.Impuesto)) falla(u"no es un impuesto");
    const bool local = a.Impuesto == ENUM_IMPUESTO_FISCAL::LOCAL;
    if (local && a.Nombre.empty()) falla(u"un impuesto local lleva nombre");
    if (!local && !a.Nombre.empty()) falla(u"sólo un impuesto local lleva nombre");
    if (a.Impuesto == ENUM_IMPUESTO_FISCAL::ISR && !a.Retenido) falla(u"el ISR sólo se retiene");
  }
}

std::vector<TNotaPartida> Ordena(std::vector<TNotaPartida> notas, std::size_t renglones) {
  std::sort(notas.begin(), notas.end(), [](const auto& a, const auto& b) { return a.Renglon < b.Renglon; });
  for (std::size_t i = 0; i < notas.size(); ++i) {
    const std::size_t renglon = notas[i].Renglon;
    const auto texto = [renglon] { return IntToStr(static_cast<std::int64_t>(renglon)); };
    if (renglon < 1 || renglon > renglones) Falla(u"Hay datos de la partida " + texto() + u", que no existe");
    if (i > 0 && notas[i - 1].Renglon == renglon)
      Falla(u"Los datos de la partida " + texto() + u" se repiten");
  }
  return notas;
}

void Acota(TMontoFiscal& importe, const TLimitesFiscales& limites) {
  importe.Unidades = std::clamp(importe.Unidades, limites.Inferior.Unidades, limites.Superior.Unidades);
}

}  // namespace

/// Reads the lines in their order.
struct TResumenFiscal::Lectura {
  Lectura(TResumenFiscal& propio, TCalculoCFDI& motor)
      : resumen(propio), calculo(motor), campos(motor.Partidas, motor.Modulo) {}

  void Recorre(const std::vector<TNotaPartida>& notas) {
    TClientDataSet& registros = calculo.Partidas;
    const TNotaPartida ninguna;
    auto nota = notas.begin();
    std::size_t renglon = 0;
    for (registros.First(); !registros.Eof(); registros.Next()) {
      ++renglon;
      const bool conNota = nota != notas.end() && nota->Renglon == renglon;
      if (campos.SeCuenta()) {
        try {
          Lee(renglon, conNota ? *nota : ninguna);
        } catch (const EInvalidOperation& e) {
          Falla(u"Partida " + IntToStr(static_cast<std::int64_t>(renglon)) + u": " + e.Message());
        }
      }
      if (conNota) ++nota;
    }
  }

 private:
  using Campo = TCalculoCFDI::CamposPartida::Campo;

  struct Base {
    std::int64_t unidades;
    int codigo;
  };

  static std::int64_t Numero(const Campo& campo) { return ExigeNumero(campo.Real(), (*campo).FieldName()); }
  static std::int64_t NoNegativo(const Campo& campo) {
    return ExigeNoNegativo(campo.Real(), (*campo).FieldName());
  }

  void Lee(std::size_t renglon, const TNotaPartida& nota) {
    TPartidaFiscal& partida = resumen.Partidas.emplace_back();
    partida.Renglon = renglon;
    LeeImporte(partida);
    LeeDescuento(partida);
    if (campos.SeMuestra()) LeeImpuestos(partida, nota);
  }

  void LeeImporte(TPartidaFiscal& partida) const {
    const std::int64_t cantidad = NoNegativo(campos.cantidad);
    const std::int64_t precio = NoNegativo(campos.precioPartida);
    const std::int64_t cambio = calculo.IgnoraTipoCambio ? kMillon : Numero(campos.cambio);
    if (cambio <= 0) Falla(u"TIP_CAM no es mayor que cero");
    const Entero128 producto = Entero128{cantidad} * precio;
    partida.Cantidad = {cantidad, kDecimales};
    if (cambio == kMillon) {
      partida.ValorUnitario = {precio, kDecimales};
      partida.Importe = Monto(DivideRedondea(producto, Diez(2 * kDecimales - Linea())), Linea());
      return;
    }
    partida.ValorUnitario = Monto(DivideRedondea(Entero128{precio} * kMillon, cambio), kDecimales);
    partida.Importe =
        Monto(DivideRedondea(Multiplica(producto, Diez(Linea())), Multiplica(cambio, kMillon)), Linea());
    // The printed price is rounded, so that a large quantity of it may miss the amount.
    Acota(partida.Importe, resumen.LimitesImporte(partida));
  }

  void LeeDescuento(TPartidaFiscal& partida) const {
    Entero128 porcentaje = 0;
    if (calculo.Modulo == ENUM_MODULO::MODULO_VENTAS) {
      for (const Campo& descuento : campos.descuento) porcentaje += Numero(descuento);
    } else {
      porcentaje = Numero(campos.descuentoCompra);
    }
    if (porcentaje < 0 || porcentaje > kCiento) {
      Falla(u"los descuentos suman " + FloatToStr(static_cast<double>(porcentaje) / 1e6) +
            u" %, que no está entre 0 y 100");
    }
    partida.Descuento = Monto(DivideRedondea(partida.Importe.Unidades * porcentaje, kCiento), Linea());
  }

  void LeeImpuestos(TPartidaFiscal& partida, const TNotaPartida& nota) {
    cuantos = 0;
    const std::int64_t neto = partida.Importe.Unidades - partida.Descuento.Unidades;
    // What each tax adds to the bases of those that cascade over it, with the sign of its rate.
    std::array<Entero128, kImpuestos> suma{};
    for (std::size_t i = 0; i < kImpuestos; ++i) {
      const int codigo = campos.Codigo(i);
      const bool aplica = TCalculoCFDI::CamposPartida::Aplica(codigo);
      if (!aplica && !nota.Exento[i]) continue;
      const bool conBase = aplica && codigo >= 0 && codigo < TCalculoCFDI::kImpuestos;
      Entero128 gravable = neto;
      for (std::size_t k = 0; conBase && k < static_cast<std::size_t>(codigo); ++k) gravable += suma[k];
      if (gravable < 0) Falla(u"la base del impuesto " + IntToStr(static_cast<int>(i) + 1) + u" es negativa");
      const std::int64_t tasa = aplica ? Numero(campos.tasa[i]) : 0;
      if (std::abs(tasa) > kTasaMaxima) Falla((*campos.tasa[i]).FieldName() + u" pasa de 1000 %");
      const bool conCuota = aplica && campos.ConCuota(i);
      const Base base{exacto::A64(gravable), conBase ? codigo : 0};
      if (nota.Exento[i]) {
        PonExento(i, base, tasa, conCuota);
      } else if (conCuota) {
        suma[i] = PonConCuota(i, base, conBase ? std::optional(tasa) : std::nullopt, partida, nota);
      } else if (conBase) {
        suma[i] = PonTasa(i, base, tasa);
      }
    }
    partida.Impuestos.assign(impuestos.begin(), impuestos.begin() + static_cast<std::ptrdiff_t>(cuantos));
  }

  void PonExento(std::size_t i, const Base& base, std::int64_t tasa, bool conCuota) {
    const TImpuestoAsignado& a = resumen.Asignacion[i];
    const UnicodeString impuesto = u"el impuesto " + IntToStr(static_cast<int>(i) + 1) + u" está exento y ";
    if (a.Impuesto != ENUM_IMPUESTO_FISCAL::IVA && a.Impuesto != ENUM_IMPUESTO_FISCAL::IEPS)
      Falla(impuesto + u"no es IVA ni IEPS");
    if (a.Retenido) Falla(impuesto + u"es una retención");
    if (tasa != 0 || conCuota) Falla(impuesto + u"tiene tasa o cuota");
    Agrega(i, false, ENUM_FACTOR_FISCAL::EXENTO, base, 0) = {0, Linea()};
  }

  /// The tax at a rate (millionths of a percent); returns it with the sign of the rate.
  std::int64_t PonTasa(std::size_t i, const Base& base, std::int64_t tasa) {
    const TImpuestoAsignado& a = resumen.Asignacion[i];
    const bool retenido = a.Retenido || tasa < 0;
    const auto fraccion = static_cast<std::int64_t>(DivideRedondea(std::abs(tasa), 100));
    // Of the zero rates only that of a transferred tax of the standard means something.
    if (fraccion == 0 && (retenido || !Asignado(i) || a.Impuesto == ENUM_IMPUESTO_FISCAL::LOCAL)) return 0;
    ExigeAsignado(i);
    TMontoFiscal& importe = Agrega(i, retenido, ENUM_FACTOR_FISCAL::TASA, base, fraccion);
    importe = Monto(DivideRedondea(Entero128{base.unidades} * fraccion, kMillon), Linea());
    impuestos[cuantos - 1].TasaNegativa = tasa < 0;
    return tasa < 0 ? -importe.Unidades : importe.Unidades;
  }

  /// A tax with a quota; without a rate when its base code is none, which adds no percentage.
  Entero128 PonConCuota(std::size_t i, const Base& base, std::optional<std::int64_t> tasa,
                        const TPartidaFiscal& partida, const TNotaPartida& nota) {
    const UnicodeString modo = (*campos.modoCuota).AsString();
    const std::int64_t cuota = NoNegativo(campos.cuota);
    if (modo != u"C" && modo != u"A" && modo != u"M") return 0;
    if (modo == u"C" || !tasa) return PonCuota(i, cuota, partida, nota);
    if (modo == u"A") {
      const Entero128 porTasa = PonTasa(i, base, *tasa);
      return porTasa + PonCuota(i, cuota, partida, nota);
    }
    const Entero128 fraccion = DivideRedondea(std::abs(*tasa), 100);
    const Entero128 impuesto = DivideRedondea(base.unidades * fraccion, Diez(Linea()));
    return *tasa < 0 || impuesto < cuota ? PonCuota(i, cuota, partida, nota) : PonTasa(i, base, *tasa);
  }

  std::int64_t PonCuota(std::size_t i, std::int64_t cuota, const TPartidaFiscal& partida,
                        const TNotaPartida& nota) {
    const std::int64_t unidades = nota.Unidades ? ExigeNoNegativo(*nota.Unidades, u"las unidades de la cuota")
                                                : partida.Cantidad.Unidades;
    if (cuota == 0) return 0;
    if (unidades == 0)
      Falla(u"la cuota del impuesto " + IntToStr(static_cast<int>(i) + 1) + u" no tiene unidades");
    ExigeAsignado(i);
    if (resumen.Asignacion[i].Impuesto == ENUM_IMPUESTO_FISCAL::LOCAL) {
      Falla(u"el impuesto " + IntToStr(static_cast<int>(i) + 1) +
            u" es local y lleva cuota: el complemento de impuestos locales sólo tiene tasas");
    }
    const int resto = kDecimales - Linea();
    TMontoFiscal& importe = Agrega(i, resumen.Asignacion[i].Retenido, ENUM_FACTOR_FISCAL::CUOTA,
                                   {exacto::A64(DivideRedondea(unidades, Diez(resto))), 0},
                                   exacto::A64(DivideRedondea(Entero128{cuota} * kMillon, unidades)));
    importe = Monto(DivideRedondea(cuota, Diez(resto)), Linea());
    Acota(importe, resumen.LimitesImpuesto(impuestos[cuantos - 1]));
    return importe.Unidades;
  }

  bool Asignado(std::size_t i) const {
    return resumen.Asignacion[i].Impuesto != ENUM_IMPUESTO_FISCAL::NINGUNO;
  }
  void ExigeAsignado(std::size_t i) const {
    if (!Asignado(i)) Falla(u"no se ha dicho qué impuesto es el " + IntToStr(static_cast<int>(i) + 1));
  }

  /// Returns the place of the tax's amount.
  TMontoFiscal& Agrega(std::size_t i, bool retenido, ENUM_FACTOR_FISCAL factor, const Base& base,
                       std::int64_t tasa) {
    TImpuestoImpreso& impuesto = impuestos[cuantos++];
    impuesto = {static_cast<int>(i) + 1,
                resumen.Asignacion[i].Impuesto,
                retenido,
                factor,
                {base.unidades, Linea()},
                {tasa, kDecimales},
                {0, Linea()},
                base.codigo,
                false};
    return impuesto.Importe;
  }

  int Linea() const { return resumen.DecimalesLinea; }

  TResumenFiscal& resumen;
  TCalculoCFDI& calculo;
  const TCalculoCFDI::CamposPartida campos;
  /// Those of the current line: eight, and the quota beside a rate.
  std::array<TImpuestoImpreso, kImpuestos + 1> impuestos;
  std::size_t cuantos = 0;
};

TAsignacionFiscal AsignacionUsual() {
  using enum ENUM_IMPUESTO_FISCAL;
  return {{{IEPS, false, {}}, {ISR, true, {}}, {IVA, true, {}}, {IVA, false, {}}, {}, {}, {}, {}}};
}

TResumenFiscal::TResumenFiscal(TCalculoCFDI& calculo, const TDatosFiscales& datos)
    : Asignacion(datos.Impuestos),
      DecimalesMoneda(datos.DecimalesMoneda),
      DecimalesLinea(datos.DecimalesLinea),
      Fecha(datos.Fecha) {
  fiscal::ExigeDecimales(DecimalesMoneda, DecimalesLinea);
  ExigeAsignacion(Asignacion);
  TClientDataSet& registros = calculo.Partidas;
  const std::size_t cuantos = registros.RecordCount();
  const std::vector<TNotaPartida> notas = Ordena(datos.Notas, cuantos);
  const std::size_t actual = registros.RecNo();
  const bool alFinal = registros.Eof();
  const auto regresa = [&registros, actual, alFinal] {
    if (alFinal) {
      registros.Last();
      registros.Next();
      return;
    }
    registros.First();
    while (registros.RecNo() < actual) registros.Next();
  };
  Partidas.reserve(cuantos);
  try {
    Lectura(*this, calculo).Recorre(notas);
  } catch (...) {
    regresa();
    throw;
  }
  regresa();
  Totaliza();
  const bool calculado = calculo.Subtotal != 0 || calculo.TotalImpuestos != 0 || Total.Unidades == 0;
  const double delMotor = std::abs(calculo.TotalImpuestos);
  if (calculado && delMotor < kMaximoMotor && delMotor * static_cast<double>(Diez(DecimalesMoneda)) < 9e18) {
    Diferencia = Total.Unidades - exacto::DeReal(calculo.TotalImpuestos, DecimalesMoneda);
  }
}

}  // namespace vel

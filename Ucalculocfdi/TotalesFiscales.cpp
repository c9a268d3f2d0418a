// From the printed lines to the document's figures.

#include "Ucalculocfdi/TotalesFiscales.h"

#include <array>
#include <unordered_map>
#include <utility>

#include "Ucalculocfdi/Enteros128.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel {
namespace fiscal {
namespace {

using exacto::Entero128;

constexpr std::size_t kImpuestos = TCalculoCFDI::kImpuestos;

/// What the lines' taxes are told apart by in the document.
struct Clave {
  ENUM_IMPUESTO_FISCAL impuesto;
  /// The first tax number of a local tax's name; 0 for the others.
  int local;
  bool retenido;
  ENUM_FACTOR_FISCAL factor;
  std::int64_t tasa;
  friend bool operator==(const Clave&, const Clave&) = default;
};

struct Dispersa {
  std::size_t operator()(const Clave& c) const noexcept {
    // An odd constant spreads rates that differ in few bits.
    const auto tasa = static_cast<std::uint64_t>(c.tasa) * 0x9E3779B97F4A7C15U;
    return static_cast<std::size_t>((tasa ^ (tasa >> 32)) + static_cast<std::uint64_t>(c.local) * 64 +
                                    static_cast<std::uint64_t>(c.impuesto) * 8 +
                                    static_cast<std::uint64_t>(c.factor) * 2 + (c.retenido ? 1 : 0));
  }
};

struct Grupo {
  Clave clave;
  Entero128 base = 0;
  Entero128 importe = 0;
};

class Grupos {
 public:
  explicit Grupos(const TAsignacionFiscal& asignacion) {
    for (std::size_t i = 0; i < kImpuestos; ++i) {
      std::size_t primero = 0;
      while (asignacion[primero].Nombre != asignacion[i].Nombre) ++primero;
      local_[i] = static_cast<int>(primero) + 1;
    }
  }

  void Agrega(const TImpuestoImpreso& impuesto) {
    const Clave clave = ClaveDe(impuesto);
    // Lines tend to repeat the rates of the line before.
    std::size_t& ultimo = ultimos_[static_cast<std::size_t>(impuesto.Numero - 1) % kImpuestos];
    if (ultimo >= grupos_.size() || grupos_[ultimo].clave != clave) {
      const auto [lugar, nuevo] = lugares_.try_emplace(clave, grupos_.size());
      if (nuevo) grupos_.push_back({clave});
      ultimo = lugar->second;
    }
    grupos_[ultimo].base += impuesto.Base.Unidades;
    grupos_[ultimo].importe += impuesto.Importe.Unidades;
  }

  const std::vector<Grupo>& Todos() const noexcept { return grupos_; }

 private:
  Clave ClaveDe(const TImpuestoImpreso& i) const {
    const bool esLocal = i.Impuesto == ENUM_IMPUESTO_FISCAL::LOCAL;
    // Withheld taxes are printed by tax alone.
    if (i.Retenido && !esLocal) return {i.Impuesto, 0, true, ENUM_FACTOR_FISCAL::TASA, 0};
    if (!esLocal) return {i.Impuesto, 0, false, i.Factor, i.Tasa.Unidades};
    // The complement of local taxes knows rates only.
    const int local = local_[static_cast<std::size_t>(i.Numero - 1) % kImpuestos];
    return {i.Impuesto, local, i.Retenido, ENUM_FACTOR_FISCAL::TASA, i.Tasa.Unidades};
  }

  std::vector<Grupo> grupos_;
  std::unordered_map<Clave, std::size_t, Dispersa> lugares_;
  std::array<std::size_t, kImpuestos> ultimos_{};
  std::array<int, kImpuestos> local_{};
};

template <typename Lista>
TMontoFiscal SumaImportes(const TResumenFiscal& resumen, const Lista& lista) {
  Entero128 suma = 0;
  for (const auto& entrada : lista) suma += entrada.Importe.Unidades;
  return exacto::Monto(suma, resumen.DecimalesMoneda);
}

}  // namespace

Repaso Repasa(const TResumenFiscal& resumen) {
  ExigeDecimales(resumen.DecimalesMoneda, resumen.DecimalesLinea);
  const auto exige = [](const TPartidaFiscal& partida, const TMontoFiscal& monto, int decimales) {
    if (monto.Unidades >= 0 && monto.Decimales == decimales) return;
    throw EInvalidOperation(u"Partida " + IntToStr(static_cast<std::int64_t>(partida.Renglon)) +
                            u": un monto es negativo o no tiene los decimales de las partidas");
  };
  Repaso repaso;
  repaso.reglas = ReglasVigentes(resumen.Fecha);
  repaso.partidas = resumen.Partidas.size();
  Entero128 importe = 0;
  Entero128 descuento = 0;
  Grupos grupos(resumen.Asignacion);
  for (const TPartidaFiscal& partida : resumen.Partidas) {
    for (const TMontoFiscal* m : {&partida.Cantidad, &partida.ValorUnitario}) exige(partida, *m, 6);
    for (const TMontoFiscal* m : {&partida.Importe, &partida.Descuento})
      exige(partida, *m, resumen.DecimalesLinea);
    importe += partida.Importe.Unidades;
    descuento += partida.Descuento.Unidades;
    for (const TImpuestoImpreso& impuesto : partida.Impuestos) {
      for (const TMontoFiscal* m : {&impuesto.Base, &impuesto.Importe})
        exige(partida, *m, resumen.DecimalesLinea);
      exige(partida, impuesto.Tasa, 6);
      grupos.Agrega(impuesto);
    }
    RevisaPartida(repaso.reglas, partida, repaso.motivos);
  }
  const std::int64_t unidad = exacto::Diez(resumen.DecimalesLinea - resumen.DecimalesMoneda);
  const auto cierra = [&](Entero128 suma) {
    return exacto::Monto(exacto::DivideRedondea(suma, unidad), resumen.DecimalesMoneda);
  };
  repaso.subTotal = cierra(importe);
  repaso.descuento = cierra(descuento);
  for (const Grupo& g : grupos.Todos()) {
    const TMontoFiscal tasa{g.clave.tasa, 6};
    if (g.clave.impuesto == ENUM_IMPUESTO_FISCAL::LOCAL) {
      repaso.locales.push_back({resumen.Asignacion[static_cast<std::size_t>(g.clave.local - 1)].Nombre,
                                g.clave.retenido, tasa, cierra(g.importe)});
    } else if (g.clave.retenido) {
      repaso.retenciones.push_back({g.clave.impuesto, cierra(g.importe)});
    } else {
      repaso.traslados.push_back({g.clave.impuesto, g.clave.factor, tasa, cierra(g.base), cierra(g.importe)});
    }
  }
  return repaso;
}

TMontoFiscal SumaTraslados(const TResumenFiscal& resumen) { return SumaImportes(resumen, resumen.Traslados); }

TMontoFiscal SumaRetenciones(const TResumenFiscal& resumen) {
  return SumaImportes(resumen, resumen.Retenciones);
}

TMontoFiscal SumaLocales(const TResumenFiscal& resumen, bool retenidos) {
  Entero128 suma = 0;
  for (const TLocalFiscal& local : resumen.Locales)
    suma += local.Retenido == retenidos ? local.Importe.Unidades : 0;
  return exacto::Monto(suma, resumen.DecimalesMoneda);
}

TMontoFiscal TotalDe(const TResumenFiscal& r) {
  const Entero128 total = Entero128{r.SubTotal.Unidades} - r.Descuento.Unidades +
                          r.TotalImpuestosTrasladados.Unidades - r.TotalImpuestosRetenidos.Unidades +
                          r.TotalLocalesTrasladados.Unidades - r.TotalLocalesRetenidos.Unidades;
  if (total < 0) return {-exacto::A64(-total), r.DecimalesMoneda};
  return exacto::Monto(total, r.DecimalesMoneda);
}

void ExigeDecimales(int moneda, int linea) {
  if (moneda < 0 || moneda > 6)
    throw EInvalidOperation(u"Los decimales de la moneda van de 0 a 6: " + IntToStr(moneda));
  if (linea < 2 || linea > 6)
    throw EInvalidOperation(u"Los decimales de las partidas van de 2 a 6: " + IntToStr(linea));
  if (linea < moneda) throw EInvalidOperation(u"Las partidas no pueden tener menos decimales que la moneda");
}

}  // namespace fiscal

void TResumenFiscal::Totaliza() {
  fiscal::Repaso repaso = fiscal::Repasa(*this);
  TResumenFiscal nuevo;
  nuevo.Asignacion = Asignacion;
  nuevo.DecimalesMoneda = DecimalesMoneda;
  nuevo.DecimalesLinea = DecimalesLinea;
  nuevo.Fecha = Fecha;
  nuevo.SubTotal = repaso.subTotal;
  nuevo.Descuento = repaso.descuento;
  nuevo.Traslados = repaso.traslados;
  nuevo.Retenciones = repaso.retenciones;
  nuevo.Locales = repaso.locales;
  nuevo.TotalImpuestosTrasladados = fiscal::SumaTraslados(nuevo);
  nuevo.TotalImpuestosRetenidos = fiscal::SumaRetenciones(nuevo);
  nuevo.TotalLocalesTrasladados = fiscal::SumaLocales(nuevo, false);
  nuevo.TotalLocalesRetenidos = fiscal::SumaLocales(nuevo, true);
  nuevo.Total = fiscal::TotalDe(nuevo);
  if (nuevo.Total.Unidades < 0) {
    throw EInvalidOperation(u"El total es negativo y el comprobante no imprime negativos: " +
                            nuevo.Total.Texto());
  }
  if (Diferencia) nuevo.Diferencia = *Diferencia + nuevo.Total.Unidades - Total.Unidades;
  nuevo.Motivos = fiscal::Revisa(nuevo, std::move(repaso));
  // Nothing throws from here on.
  nuevo.Partidas.swap(Partidas);
  *this = std::move(nuevo);
}

std::vector<TMotivoFiscal> TResumenFiscal::Revisa() const {
  return fiscal::Revisa(*this, fiscal::Repasa(*this));
}

}  // namespace vel

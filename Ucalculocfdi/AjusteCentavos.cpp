#include "Ucalculocfdi/AjusteCentavos.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <optional>
#include <tuple>
#include <utility>

#include "Ucalculocfdi/Enteros128.h"
#include "framework/Excepciones.h"

namespace vel {
namespace {

using exacto::Entero128;

// A tax of a line: places in TResumenFiscal::Partidas and TPartidaFiscal::Impuestos.
struct Lugar {
  std::size_t partida;
  std::size_t impuesto;
  // What rounding has taken, in the sense of the move: base x rate less the amount, in millionths of a unit.
  Entero128 resto;
};

// The taxes behind one printed figure.
struct Grupo {
  bool retenido = false;
  // Of the amounts of all lines, in units of their last decimal.
  Entero128 suma = 0;
  std::vector<Lugar> lugares;
  std::size_t siguiente = 0;
  // Whether a place took a unit since the places were last put in order.
  bool avanzo = true;
  bool agotado = false;
};

// What a unit of tax `k` of the line moves the base of the tax `j` after it by: 1, -1 or 0.
int ParteEnBase(const TImpuestoImpreso& k, const TImpuestoImpreso& j) {
  // A quota beside a rate has its number, and a base of units.
  if (k.Numero >= j.Numero || k.Numero > j.CodigoBase) return 0;
  return k.TasaNegativa ? -1 : 1;
}

class Ajuste {
 public:
  // `sentido`: 1 for a larger total, -1 for a smaller one.
  Ajuste(TResumenFiscal& resumen, int sentido)
      : resumen_(resumen),
        sentido_(sentido),
        unidad_(exacto::Diez(resumen.DecimalesLinea - resumen.DecimalesMoneda)) {
    using Clave = std::tuple<ENUM_IMPUESTO_FISCAL, bool, ENUM_FACTOR_FISCAL, std::int64_t>;
    std::map<Clave, std::size_t> numeros;
    for (std::size_t p = 0; p < resumen.Partidas.size(); ++p) {
      const std::vector<TImpuestoImpreso>& impuestos = resumen.Partidas[p].Impuestos;
      for (std::size_t i = 0; i < impuestos.size(); ++i) {
        const TImpuestoImpreso& t = impuestos[i];
        if (t.Impuesto == ENUM_IMPUESTO_FISCAL::LOCAL) continue;
        // Withheld taxes are printed by tax alone.
        const Clave clave = t.Retenido ? Clave{t.Impuesto, true, ENUM_FACTOR_FISCAL::TASA, 0}
                                       : Clave{t.Impuesto, false, t.Factor, t.Tasa.Unidades};
        const auto [lugar, nuevo] = numeros.try_emplace(clave, grupos_.size());
        if (nuevo) grupos_.emplace_back().retenido = t.Retenido;
        Grupo& grupo = grupos_[lugar->second];
        grupo.suma += t.Importe.Unidades;
        if (t.Factor == ENUM_FACTOR_FISCAL::TASA && t.Tasa.Unidades != 0) grupo.lugares.push_back({p, i, 0});
      }
    }
    for (Grupo& grupo : grupos_) Ordena(grupo);
  }

  // Moves the total by as many cents as find a place, at most these.
  void Coloca(std::int64_t centavos) {
    bool avanza = true;
    while (centavos > 0 && avanza) {
      avanza = false;
      // A move may make room for others: what was full is asked again as long as something moves.
      for (Grupo& grupo : grupos_) grupo.agotado = grupo.lugares.empty();
      for (Grupo* grupo; centavos > 0 && (grupo = Mejor()) != nullptr;) {
        if (Cruza(*grupo)) {
          avanza = true;
          --centavos;
        } else {
          grupo->agotado = true;
        }
      }
    }
  }

 private:
  int Sentido(const Grupo& grupo) const { return grupo.retenido ? -sentido_ : sentido_; }

  // Units that carry the group's printed sum to the next one.
  Entero128 Falta(const Grupo& grupo) const {
    const Entero128 medio = unidad_ / 2;
    const Entero128 impreso = (grupo.suma + medio) / unidad_;
    return Sentido(grupo) > 0 ? unidad_ * (impreso + 1) - medio - grupo.suma
                              : grupo.suma - (unidad_ * impreso - medio) + 1;
  }

  // The largest remainder first.
  void Ordena(Grupo& grupo) const {
    for (Lugar& lugar : grupo.lugares) {
      const TImpuestoImpreso& t = resumen_.Partidas[lugar.partida].Impuestos[lugar.impuesto];
      lugar.resto = Sentido(grupo) * (Entero128{t.Base.Unidades} * t.Tasa.Unidades -
                                      Entero128{t.Importe.Unidades} * exacto::kMillon);
    }
    std::stable_sort(grupo.lugares.begin(), grupo.lugares.end(),
                     [](const Lugar& a, const Lugar& b) { return a.resto > b.resto; });
    grupo.siguiente = 0;
    grupo.avanzo = false;
  }

  // The group whose printed sum is nearest to the next one; of equal ones, that with the largest remainder.
  Grupo* Mejor() {
    Grupo* mejor = nullptr;
    for (Grupo& grupo : grupos_) {
      if (grupo.agotado) continue;
      if (grupo.siguiente == grupo.lugares.size()) Ordena(grupo);
      const auto orden = [this](const Grupo& g) {
        return std::pair(Falta(g), -g.lugares[g.siguiente].resto);
      };
      if (mejor == nullptr || orden(grupo) < orden(*mejor)) mejor = &grupo;
    }
    return mejor;
  }

  // Carries the group's printed sum one cent on, or leaves everything as it was.
  bool Cruza(Grupo& grupo) {
    std::vector<std::pair<std::size_t, std::vector<TImpuestoImpreso>>> antes;
    const Entero128 falta = Falta(grupo);
    const int sentido = Sentido(grupo);
    while (static_cast<Entero128>(antes.size()) < falta) {
      if (grupo.siguiente == grupo.lugares.size()) {
        if (!grupo.avanzo) break;
        Ordena(grupo);
      }
      const Lugar lugar = grupo.lugares[grupo.siguiente++];
      std::vector<TImpuestoImpreso>& impuestos = resumen_.Partidas[lugar.partida].Impuestos;
      std::optional<std::vector<TImpuestoImpreso>> movidos = Mueve(lugar, sentido);
      if (!movidos) continue;
      impuestos.swap(*movidos);
      antes.emplace_back(lugar.partida, std::move(*movidos));
      grupo.avanzo = true;
    }
    if (static_cast<Entero128>(antes.size()) == falta) {
      grupo.suma += sentido * falta;
      return true;
    }
    for (auto it = antes.rbegin(); it != antes.rend(); ++it)
      resumen_.Partidas[it->first].Impuestos.swap(it->second);
    Ordena(grupo);
    return false;
  }

  // The line's taxes with that one moved by a unit; nothing when a limit forbids it.
  std::optional<std::vector<TImpuestoImpreso>> Mueve(const Lugar& lugar, int sentido) const {
    std::vector<TImpuestoImpreso> impuestos = resumen_.Partidas[lugar.partida].Impuestos;
    impuestos[lugar.impuesto].Importe.Unidades += sentido;
    if (!Cabe(impuestos[lugar.impuesto])) return std::nullopt;
    for (std::size_t j = lugar.impuesto + 1; j < impuestos.size(); ++j) {
      const int parte = ParteEnBase(impuestos[lugar.impuesto], impuestos[j]);
      if (parte == 0) continue;
      impuestos[j].Base.Unidades += std::int64_t{parte} * sentido;
      if (impuestos[j].Base.Unidades <= 0 || !Cabe(impuestos[j])) return std::nullopt;
    }
    return impuestos;
  }

  bool Cabe(const TImpuestoImpreso& impuesto) const {
    if (impuesto.Importe.Unidades < 0) return false;
    const TLimitesFiscales limites = resumen_.LimitesImpuesto(impuesto);
    return limites.Inferior.Unidades <= impuesto.Importe.Unidades &&
           impuesto.Importe.Unidades <= limites.Superior.Unidades;
  }

  TResumenFiscal& resumen_;
  int sentido_;
  // Units of a line's last decimal in one of the currency's.
  Entero128 unidad_;
  std::vector<Grupo> grupos_;
};

std::vector<TMovimientoImpuesto> Movimientos(const TResumenFiscal& antes, const TResumenFiscal& ahora) {
  std::vector<TMovimientoImpuesto> movimientos;
  for (std::size_t p = 0; p < antes.Partidas.size(); ++p) {
    const TPartidaFiscal& partida = antes.Partidas[p];
    for (std::size_t i = 0; i < partida.Impuestos.size(); ++i) {
      const TImpuestoImpreso& impuesto = partida.Impuestos[i];
      const std::int64_t unidades =
          ahora.Partidas[p].Impuestos[i].Importe.Unidades - impuesto.Importe.Unidades;
      if (unidades != 0) movimientos.push_back({partida.Renglon, impuesto.Numero, unidades});
    }
  }
  return movimientos;
}

}  // namespace

TAjusteCentavos AjustaCentavos(TResumenFiscal& resumen, const TMontoFiscal& total) {
  if (total.Unidades < 0) throw EInvalidOperation(u"El total pedido es negativo: " + total.Texto());
  const std::int64_t pedido = exacto::Unidades(total, resumen.DecimalesMoneda);
  TResumenFiscal nuevo = resumen;
  nuevo.Totaliza();
  TAjusteCentavos ajuste;
  ajuste.Pedidos = pedido - nuevo.Total.Unidades;
  if (ajuste.Pedidos != 0) {
    Ajuste(nuevo, ajuste.Pedidos > 0 ? 1 : -1).Coloca(std::abs(ajuste.Pedidos));
    nuevo.Totaliza();
  }
  ajuste.PorColocar = pedido - nuevo.Total.Unidades;
  ajuste.Movimientos = Movimientos(resumen, nuevo);
  if (ajuste.PorColocar != 0) {
    ajuste.Mensaje = u"El total impreso es " + nuevo.Total.Texto() + u" y el pedido " +
                     TMontoFiscal{pedido, resumen.DecimalesMoneda}.Texto() +
                     u": ningún impuesto de las partidas admite la diferencia dentro de sus límites";
    if (resumen.DecimalesLinea > resumen.DecimalesMoneda) {
      ajuste.Mensaje += u"; con los decimales de la moneda en las partidas caben más centavos";
    }
  }
  resumen = std::move(nuevo);
  return ajuste;
}

}  // namespace vel

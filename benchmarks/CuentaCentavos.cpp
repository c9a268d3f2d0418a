// Counts the documents whose printed total is the sum of their prices with taxes: random documents of 1 to 30
// lines with the usual sets of taxes, whole and broken quantities, discounts (of list prices and of final
// ones) and exchange rates; printed with two and with six decimals, before and after the moving of cents.
// Totals and limits are computed anew here from the printed lines, and where cents are left in lines of two
// decimals, no choice of line taxes within their limits would have placed them.
//
//     cuenta_centavos [documents]      by default 100,000

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <random>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "Ucalculocfdi/Ucalculocfdi.h"
#include "benchmarks/JuegosImpuestos.h"
#include "benchmarks/Medicion.h"

namespace {

__extension__ typedef __int128 Entero;

Entero Diez(int exponente) {
  Entero p = 1;
  for (int i = 0; i < exponente; ++i) p *= 10;
  return p;
}

Entero Redondea(Entero n, Entero d) { return (2 * n + d) / (2 * d); }

// Whether an amount lies between truncate((base - 10^-b / 2) x rate) and roundup((base + 10^-b / 2 - 10^-12)
// x rate), at its own decimals, which are those of its base. In units of 10^-18: bases of 10^-12 by rates of
// 10^-6.
bool EnLimites(const vel::TImpuestoImpreso& t, Entero base, Entero importe) {
  const Entero unidad = Diez(12 - t.Base.Decimales);
  const Entero corte = Diez(18 - t.Importe.Decimales);
  const Entero inferior = (base * unidad - unidad / 2) * t.Tasa.Unidades / corte;
  const Entero superior = ((base * unidad + unidad / 2 - 1) * t.Tasa.Unidades + corte - 1) / corte;
  return inferior <= importe && importe <= superior;
}

// The least and the most that amount and taxes of a line come to, for every choice of its taxes from i on
// within their limits; `base` is what the earlier ones make. Each tax builds on all before it.
std::pair<Entero, Entero> Alcance(const std::vector<vel::TImpuestoImpreso>& impuestos, std::size_t i,
                                  Entero base) {
  if (i == impuestos.size()) return {base, base};
  const vel::TImpuestoImpreso& t = impuestos[i];
  Entero primero = base * t.Tasa.Unidades / 1'000'000;
  while (primero > 0 && EnLimites(t, base, primero - 1)) --primero;
  while (!EnLimites(t, base, primero)) ++primero;
  std::pair<Entero, Entero> alcance = Alcance(impuestos, i + 1, base + primero);
  for (Entero importe = primero + 1; EnLimites(t, base, importe); ++importe) {
    const auto [minimo, maximo] = Alcance(impuestos, i + 1, base + importe);
    alcance = {std::min(alcance.first, minimo), std::max(alcance.second, maximo)};
  }
  return alcance;
}

struct Distribucion {
  std::map<std::int64_t, std::int64_t> antes;
  std::map<std::int64_t, std::int64_t> despues;
};

// The printed total from the printed lines alone.
std::int64_t TotalDe(const vel::TResumenFiscal& r) {
  const Entero unidad = Diez(r.DecimalesLinea - 2);
  Entero importe = 0;
  Entero descuento = 0;
  std::map<std::tuple<int, std::int64_t>, Entero> impuestos;
  for (const vel::TPartidaFiscal& p : r.Partidas) {
    importe += p.Importe.Unidades;
    descuento += p.Descuento.Unidades;
    for (const vel::TImpuestoImpreso& t : p.Impuestos)
      impuestos[{t.Numero, t.Tasa.Unidades}] += t.Importe.Unidades;
  }
  Entero total = Redondea(importe, unidad) - Redondea(descuento, unidad);
  for (const auto& [clave, suma] : impuestos) total += Redondea(suma, unidad);
  return static_cast<std::int64_t>(total);
}

void Comprueba(const vel::TResumenFiscal& r, const vel::TAjusteCentavos& ajuste, std::int64_t pedido) {
  medicion::Exige(r.Total == vel::TMontoFiscal{TotalDe(r), 2}, "printed parts and total");
  medicion::Exige(ajuste.PorColocar == pedido - r.Total.Unidades, "what is left");
  medicion::Exige(ajuste.Mensaje.empty() == (ajuste.PorColocar == 0), "message");
  Entero menor = 0;
  Entero mayor = 0;
  for (const vel::TPartidaFiscal& p : r.Partidas) {
    std::int64_t base = p.Importe.Unidades - p.Descuento.Unidades;
    for (const vel::TImpuestoImpreso& t : p.Impuestos) {
      medicion::Exige(t.Base.Unidades == base, "base");
      medicion::Exige(EnLimites(t, t.Base.Unidades, t.Importe.Unidades), "limits");
      base += t.Importe.Unidades;
    }
    const auto [minimo, maximo] = Alcance(p.Impuestos, 0, p.Importe.Unidades - p.Descuento.Unidades);
    menor += minimo;
    mayor += maximo;
  }
  // With the currency's decimals a line's cents are the document's: whether any choice of them would do.
  if (r.DecimalesLinea != 2 || ajuste.PorColocar == 0) return;
  medicion::Exige(pedido < menor || pedido > mayor, "a choice of cents that was not found");
}

class Generador {
 public:
  // A line at its net price; its total with taxes is added to `pedido`, in cents.
  vel::TDatosPartida Partida(double cambio, std::int64_t& pedido) {
    const double cantidades[] = {1, 7, 144, static_cast<double>(1 + azar_() % 5'000'000) / 1000};
    vel::TDatosPartida p =
        medicion::PartidaDe(medicion::kJuegos[azar_() % medicion::kJuegos.size()], cantidades[azar_() % 4]);
    p.TipoCambio = cambio;
    if (azar_() % 3 == 0)
      p.PorcDescuento = {static_cast<double>(azar_() % 40), static_cast<double>(azar_() % 500) / 100, 0};
    const auto tipo = azar_() % 2 == 0 ? vel::ENUM_PRECIO::PRECIO_LISTA : vel::ENUM_PRECIO::PRECIO_FINAL;
    const double precio = static_cast<double>(1 + azar_() % 2'000'000) / 100;
    const vel::TPrecioInverso inverso = vel::ObtenPrecioInverso(precio, p, tipo);
    p.Precio = inverso.PrecioNeto;
    pedido += inverso.TotalPedido.Unidades;
    return p;
  }
  std::uint64_t operator()() { return azar_(); }

 private:
  std::mt19937 azar_{20261121};
};

void Imprime(const char* nombre, const std::map<std::int64_t, std::int64_t>& cuenta) {
  std::printf("  %s", nombre);
  for (const auto& [centavos, documentos] : cuenta) {
    std::printf("  %+lld: %lld", static_cast<long long>(centavos), static_cast<long long>(documentos));
  }
  std::printf("\n");
}

}  // namespace

int main(int argc, char** argv) {
  const std::int64_t documentos = argc > 1 ? std::atoll(argv[1]) : 100'000;
  Generador azar;
  Distribucion cuenta[2];
  for (std::int64_t d = 0; d < documentos; ++d) {
    vel::TCalculoCFDI calculo(vel::ENUM_MODULO::MODULO_VENTAS, vel::ENUM_PROC_FACTCOMP::PROC_NORMAL,
                              vel::TIPO_DOCTO::TD_FACTURA);
    calculo.Partidas.CreateDataSet(medicion::CamposDePartidas());
    const double cambio = azar() % 10 == 0 ? 18.7654 : 1;
    std::int64_t pedido = 0;
    const std::uint64_t lineas = 1 + azar() % 30;
    for (std::uint64_t i = 0; i < lineas; ++i)
      medicion::AgregaPartida(calculo.Partidas, azar.Partida(cambio, pedido));
    calculo.CalculaTotales();
    for (const int decimales : {2, 6}) {
      vel::TResumenFiscal resumen(calculo, {.DecimalesLinea = decimales});
      const vel::TAjusteCentavos ajuste = vel::AjustaCentavos(resumen, {pedido, 2});
      Comprueba(resumen, ajuste, pedido);
      ++cuenta[decimales / 6].antes[ajuste.Pedidos];
      ++cuenta[decimales / 6].despues[ajuste.PorColocar];
    }
  }
  std::printf("%lld documents: cents by which the printed total misses the sum of the prices\n",
              static_cast<long long>(documentos));
  for (const int decimales : {2, 6}) {
    std::printf("lines of %d decimals\n", decimales);
    Imprime("before", cuenta[decimales / 6].antes);
    Imprime("after ", cuenta[decimales / 6].despues);
  }
  return 0;
}

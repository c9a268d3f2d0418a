// Counts the prices that no net price of six decimals reaches: every price from 0.01 to the limit, with each
// of the usual sets of taxes and at three quantities, its net price computed, and the document's total at
// that net price compared with price by quantity. Each price that is said to be out of reach is tried again
// at every net price around, by a computation of its own on whole numbers of 128 bits.
//
//     cuenta_precio_inverso [last price in cents] [every how many]      by default 2,000,000 and 1

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

#include "Ucalculocfdi/Ucalculocfdi.h"
#include "benchmarks/JuegosImpuestos.h"

namespace {

__extension__ typedef __int128 Entero;

using medicion::JuegoImpuestos;
using medicion::kJuegos;

constexpr std::array<int, 3> kCantidades = {1, 7, 144};
// Prices out of reach at those quantities, of 2,000,000, for each set.
constexpr std::int64_t kConocidos[kJuegos.size()][kCantidades.size()] = {
    {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 546, 8'723}, {0, 902, 13'522}, {0, 0, 21'220}};

// The engine itself, on a document of one line.
class Documento {
 public:
  explicit Documento(const vel::TDatosPartida& p)
      : calculo_(vel::ENUM_MODULO::MODULO_VENTAS, vel::ENUM_PROC_FACTCOMP::PROC_NORMAL,
                 vel::TIPO_DOCTO::TD_FACTURA) {
    vel::TClientDataSet& lineas = calculo_.Partidas;
    lineas.CreateDataSet(medicion::CamposDePartidas());
    medicion::AgregaPartida(lineas, p);
    precio_ = &lineas.FieldByName(u"PREC");
  }
  double Total(double precio) {
    calculo_.Partidas.Edit();
    precio_->SetAsFloat(precio);
    calculo_.Partidas.Post();
    calculo_.CalculaTotales();
    return calculo_.TotalImpuestos;
  }

 private:
  vel::TCalculoCFDI calculo_;
  vel::TField* precio_;
};

// n / d, half up.
Entero Divide(Entero n, Entero d) { return (2 * n + d) / (2 * d); }

// The same document on whole numbers: rates in tenths of a percent, price in millionths.
std::int64_t CentavosExactos(const JuegoImpuestos& juego, int cantidad, std::int64_t precio) {
  const Entero importe = Entero{precio} * cantidad;
  const auto ieps = static_cast<std::int64_t>(std::llround(juego.ieps * 10));
  const auto iva = static_cast<std::int64_t>(std::llround(juego.iva * 10));
  // IVA falls on the unrounded IEPS.
  const Entero impuestos = Divide(importe * ieps, 1'000) + Divide(importe * (1'000 + ieps) * iva, 1'000'000);
  return static_cast<std::int64_t>(Divide(importe, 10'000) + Divide(impuestos, 10'000));
}

// Whether any net price whose total lies within two cents of the one asked for reaches it.
bool AlgunoAlcanza(const JuegoImpuestos& juego, int cantidad, std::int64_t centavos) {
  const double factor = (1 + juego.ieps / 100) * (1 + juego.iva / 100);
  const double exacto = static_cast<double>(centavos) * 1e4 / factor;
  const auto alcance = static_cast<std::int64_t>(2e4 / factor / cantidad) + 2;
  const std::int64_t medio = std::llround(exacto);
  for (std::int64_t p = std::max<std::int64_t>(medio - alcance, 0); p <= medio + alcance; ++p) {
    if (CentavosExactos(juego, cantidad, p) == centavos * cantidad) return true;
  }
  return false;
}

struct Cuenta {
  std::int64_t precios = 0;
  std::int64_t fuera = 0;
  // Prices where a claim does not hold: the total is not the engine's, the residue is not what is missing or
  // not of one cent, or a net price that was called out of reach is not.
  std::int64_t fallas = 0;
};

Cuenta Recorre(const JuegoImpuestos& juego, int cantidad, std::int64_t ultimo, std::int64_t cada) {
  const vel::TDatosPartida partida = medicion::PartidaDe(juego, cantidad);
  Documento documento(partida);
  Cuenta cuenta;
  for (std::int64_t centavos = 1; centavos <= ultimo; centavos += cada) {
    ++cuenta.precios;
    const vel::TPrecioInverso inverso = vel::ObtenPrecioInverso(static_cast<double>(centavos) / 100, partida);
    const double total = documento.Total(inverso.PrecioNeto);
    const std::int64_t falta = centavos * cantidad - std::llround(total * 100);
    bool cumple = total == inverso.Total && falta == inverso.Residuo;
    if (falta != 0) {
      ++cuenta.fuera;
      cumple = cumple && std::abs(falta) == 1 && !AlgunoAlcanza(juego, cantidad, centavos);
    }
    if (!cumple) {
      ++cuenta.fallas;
      std::printf("  %s, %d: %lld cents, net %.6f, total %.2f, residue %lld\n", juego.nombre, cantidad,
                  static_cast<long long>(centavos), inverso.PrecioNeto, total,
                  static_cast<long long>(inverso.Residuo));
    }
  }
  return cuenta;
}

}  // namespace

int main(int argc, char** argv) {
  const std::int64_t ultimo = argc > 1 ? std::atoll(argv[1]) : 2'000'000;
  const std::int64_t cada = argc > 2 ? std::atoll(argv[2]) : 1;
  if (ultimo < 1 || cada < 1) return 2;
  constexpr std::size_t kTareas = kJuegos.size() * kCantidades.size();
  std::array<Cuenta, kTareas> cuentas;
  std::atomic<std::size_t> siguiente = 0;
  const auto trabaja = [&] {
    for (std::size_t t; (t = siguiente++) < kTareas;) {
      cuentas[t] = Recorre(kJuegos[t / 3], kCantidades[t % 3], ultimo, cada);
    }
  };
  std::vector<std::jthread> hilos;
  for (unsigned h = 0; h < std::max(1U, std::thread::hardware_concurrency()); ++h)
    hilos.emplace_back(trabaja);
  hilos.clear();
  int codigo = 0;
  for (std::size_t t = 0; t < kTareas; ++t) {
    const Cuenta& c = cuentas[t];
    const bool completo = ultimo == 2'000'000 && cada == 1;
    const bool bien = c.fallas == 0 && (!completo || c.fuera == kConocidos[t / 3][t % 3]);
    std::printf("%-10s at %3d: %lld prices, %lld out of reach, all proved: %s\n", kJuegos[t / 3].nombre,
                kCantidades[t % 3], static_cast<long long>(c.precios), static_cast<long long>(c.fuera),
                bien ? "yes" : "NO");
    if (!bien) codigo = 1;
  }
  return codigo;
}

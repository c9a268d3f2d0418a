// Prints a digest of each zone's offsets, to be compared with the same program's on another system:
//   zonas < names of the tz database
// A Windows name: every half hour from 1990 to 2037. Every name: both sides of each change from 1800 to 2099,
// as far as a look at every quarter of a day finds them.

#include <chrono>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <iostream>
#include <string>

#include "framework/Texto.h"
#include "platform/NombresZonas.h"
#include "platform/ReglasZona.h"
#include "platform/ZonasHorarias.h"

namespace {

namespace crono = std::chrono;

std::int64_t Comienzo(int anio) {
  return crono::sys_seconds{crono::sys_days{crono::year{anio} / 1 / 1}}.time_since_epoch().count();
}

// FNV-1a, 64 bits.
class Suma {
 public:
  void Agrega(std::int64_t valor) {
    for (int i = 0; i < 64; i += 8)
      suma_ = (suma_ ^ (static_cast<std::uint64_t>(valor) >> i & 0xFF)) * 0x100000001B3;
  }
  void Agrega(const vel::DesfaseZona& d) { Agrega(std::int64_t{d.segundos} * 2 + (d.verano ? 1 : 0)); }
  std::uint64_t Valor() const { return suma_; }

 private:
  std::uint64_t suma_ = 0xCBF29CE484222325;
};

long long medias = 0;
long long cambios = 0;

void AgregaMediasHoras(const vel::ZonaHoraria& zona, Suma& suma) {
  for (std::int64_t t = Comienzo(1990); t < Comienzo(2038); t += 1800, ++medias)
    suma.Agrega(vel::DesfaseEnUtc(zona, t));
}

void AgregaCambios(const vel::ZonaHoraria& zona, Suma& suma) {
  constexpr std::int64_t kPaso = 6 * 3600;
  vel::DesfaseZona antes = vel::DesfaseEnUtc(zona, Comienzo(1800));
  suma.Agrega(antes);
  for (std::int64_t t = Comienzo(1800) + kPaso; t < Comienzo(2100); t += kPaso) {
    const vel::DesfaseZona ahora = vel::DesfaseEnUtc(zona, t);
    if (ahora == antes) continue;
    // The first second of what follows.
    std::int64_t bajo = t - kPaso;
    std::int64_t alto = t;
    while (alto - bajo > 1) {
      const std::int64_t medio = (bajo + alto) / 2;
      (vel::DesfaseEnUtc(zona, medio) == antes ? bajo : alto) = medio;
    }
    suma.Agrega(alto);
    suma.Agrega(vel::DesfaseEnUtc(zona, alto));
    suma.Agrega(ahora);
    antes = ahora;
    ++cambios;
  }
}

void Imprime(const std::string& nombre, const Suma& suma) {
  std::printf("%s|%016" PRIx64 "\n", nombre.c_str(), suma.Valor());
}

}  // namespace

int main() {
  int nombres = 0;
  for (const vel::ZonaWindows& windows : vel::ZonasWindows()) {
    const auto zona = vel::DameZonaWindows(windows.nombre);
    Suma suma;
    if (zona != nullptr) {
      AgregaMediasHoras(*zona, suma);
      AgregaCambios(*zona, suma);
      ++nombres;
    }
    Imprime(vel::UTF8Encode(windows.nombre), suma);
  }
  for (std::string nombre; std::getline(std::cin, nombre);) {
    // The system of the reader may end lines in two characters.
    if (!nombre.empty() && nombre.back() == '\r') nombre.pop_back();
    const auto zona = vel::DameZonaIana(vel::UTF8ToString(nombre));
    Suma suma;
    if (zona != nullptr) {
      AgregaCambios(*zona, suma);
      ++nombres;
    }
    Imprime(nombre, suma);
  }
  std::printf("zonas|%d|medias horas|%lld|cambios|%lld\n", nombres, medias, cambios);
}

#include "Uutilext/time/Reloj.h"

#include <chrono>

#include "platform/ReglasZona.h"
#include "platform/ZonasHorarias.h"

namespace vel {

TDateTime AhoraLocal() {
  namespace crono = std::chrono;
  constexpr double kMilisPorDia = 86'400'000;
  // Day 0 of 1970 as days since 30 December 1899.
  constexpr double kDia1970 = 25'569;
  const auto ahora = crono::floor<crono::milliseconds>(crono::system_clock::now()).time_since_epoch();
  const std::int64_t utc = crono::floor<crono::seconds>(ahora).count();
  const std::int64_t local =
      ahora.count() + std::int64_t{1000} * DesfaseEnUtc(*DameZonaActiva(), utc).segundos;
  return TDateTime(static_cast<double>(local) / kMilisPorDia + kDia1970);
}

}  // namespace vel

#include "platform/ReglasZona.h"

#include <algorithm>
#include <chrono>

namespace vel {
namespace {

namespace crono = std::chrono;

constexpr std::int64_t kDia = 86400;

std::int64_t DivideHaciaAbajo(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }

int AnioDe(std::int64_t momento) {
  const crono::sys_days dia{crono::days{DivideHaciaAbajo(momento, kDia)}};
  return static_cast<int>(crono::year_month_day{dia}.year());
}

// Offset by the rules that hold after the last change.
DesfaseZona DesfasePorRegla(const ZonaHoraria& zona, std::int64_t utc) {
  if (!zona.verano.has_value()) return zona.estandar;
  const ZonaHoraria::Verano& verano = *zona.verano;
  const int anio = AnioDe(utc + zona.estandar.segundos);
  const std::int64_t comienza = MomentoDeRegla(verano.comienza, anio) - zona.estandar.segundos;
  const std::int64_t termina = MomentoDeRegla(verano.termina, anio) - verano.desfase.segundos;
  // South of the equator summer holds at both ends of the year.
  const bool esVerano =
      comienza < termina ? utc >= comienza && utc < termina : utc >= comienza || utc < termina;
  return esVerano ? verano.desfase : zona.estandar;
}

}  // namespace

std::int64_t MomentoDeRegla(const ReglaCambio& regla, int anio) {
  if (regla.diaAnio > 0) {
    constexpr int kPrimeroDeMarzo = 60;
    const bool salta = !regla.conBisiesto && crono::year{anio}.is_leap() && regla.diaAnio >= kPrimeroDeMarzo;
    const crono::sys_days enero = crono::year{anio} / 1 / 1;
    const crono::sys_days dia = enero + crono::days{regla.diaAnio - 1 + (salta ? 1 : 0)};
    return dia.time_since_epoch().count() * kDia + regla.segundos;
  }
  const crono::year_month mes = crono::year{anio} / regla.mes;
  const crono::weekday dia{static_cast<unsigned>(regla.diaSemana)};
  constexpr int kUltima = 5;
  const crono::sys_days fecha = regla.semana == kUltima
                                    ? crono::sys_days{mes / dia[crono::last]}
                                    : crono::sys_days{mes / dia[static_cast<unsigned>(regla.semana)]};
  return fecha.time_since_epoch().count() * kDia + regla.segundos;
}

DesfaseZona DesfaseEnUtc(const ZonaHoraria& zona, std::int64_t utc) {
  const auto despues =
      std::upper_bound(zona.cambios.begin(), zona.cambios.end(), utc,
                       [](std::int64_t m, const ZonaHoraria::Cambio& c) { return m < c.momento; });
  if (despues == zona.cambios.end()) return DesfasePorRegla(zona, utc);
  return despues == zona.cambios.begin() ? zona.inicial : std::prev(despues)->desfase;
}

}  // namespace vel

#include "Uutilext/time/CalculoZonas.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <optional>

namespace vel {
namespace {

namespace crono = std::chrono;

constexpr std::int64_t kDia = 86400;
constexpr std::int64_t kMilisPorDia = 86'400'000;
// 30 December 1899, day 0 of a TDateTime, in days of 1970.
constexpr std::int64_t kDiaCero = crono::sys_days{crono::year{1899} / 12 / 30}.time_since_epoch().count();
constexpr double kPrimerDia = -693'593;
constexpr double kUltimoDia = 2'958'465;
// No offset of any zone reaches a day and two hours.
constexpr std::int64_t kVentana = kDia + 7200;

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

// Milliseconds since day 0; nothing for what is no date. Before day 0 the fraction still counts forward.
std::optional<std::int64_t> AMilis(TDateTime momento) {
  if (!(momento.Val() >= kPrimerDia && momento.Val() < kUltimoDia + 1)) return std::nullopt;
  const double dia = std::trunc(momento.Val());
  const double hora = std::abs(momento.Val() - dia);
  return static_cast<std::int64_t>(dia) * kMilisPorDia +
         std::llround(hora * static_cast<double>(kMilisPorDia));
}

std::optional<TDateTime> DeMilis(std::int64_t milis) {
  const std::int64_t dia = DivideHaciaAbajo(milis, kMilisPorDia);
  if (dia < static_cast<std::int64_t>(kPrimerDia) || dia > static_cast<std::int64_t>(kUltimoDia))
    return std::nullopt;
  const double hora = static_cast<double>(milis - dia * kMilisPorDia) / static_cast<double>(kMilisPorDia);
  return ComposeDateTime(TDateTime(static_cast<double>(dia)), TDateTime(hora));
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

std::int64_t LocalAUtc(const ZonaHoraria& zona, std::int64_t local) {
  const DesfaseZona antes = DesfaseEnUtc(zona, local - kVentana);
  const DesfaseZona despues = DesfaseEnUtc(zona, local + kVentana);
  if (antes == despues && DesfaseEnUtc(zona, local - antes.segundos) == antes) return local - antes.segundos;
  // A change is near: of the offsets on its two sides, those under which the moment really occurs.
  const bool vale = DesfaseEnUtc(zona, local - antes.segundos).segundos == antes.segundos;
  const bool valeDespues = DesfaseEnUtc(zona, local - despues.segundos).segundos == despues.segundos;
  if (vale != valeDespues) return local - (vale ? antes : despues).segundos;
  // Twice or never: standard time. Where both sides are standard, the time after a repeated hour's change,
  // and before a skipped one's, which is what the clock on the wall shows.
  if (antes.verano != despues.verano) return local - (antes.verano ? despues : antes).segundos;
  return local - (vale ? despues : antes).segundos;
}

bool ConvierteZona(const ZonaHoraria& de, const ZonaHoraria& a, TDateTime& momento) {
  const std::optional<std::int64_t> milis = AMilis(momento);
  if (!milis.has_value()) return false;
  const std::int64_t segundos = DivideHaciaAbajo(*milis, 1000);
  const std::int64_t utc = LocalAUtc(de, segundos + kDiaCero * kDia);
  const std::int64_t local = utc + DesfaseEnUtc(a, utc).segundos - kDiaCero * kDia;
  const std::optional<TDateTime> convertido = DeMilis(local * 1000 + (*milis - segundos * 1000));
  if (!convertido.has_value()) return false;
  momento = *convertido;
  return true;
}

}  // namespace vel

#include "Uutilext/time/ConversionZonas.h"

#include <cmath>
#include <optional>

#include "Uutilext/time/CalculoZonas.h"
#include "platform/ReglasZona.h"
#include "platform/ZonasHorarias.h"

namespace vel {
namespace {

namespace crono = std::chrono;
using Milis = crono::milliseconds;

constexpr std::int64_t kMilisPorDia = 86'400'000;
// 30 December 1899, day 0 of a TDateTime, in days of 1970.
constexpr std::int64_t kDiaCero = crono::sys_days{crono::year{1899} / 12 / 30}.time_since_epoch().count();
constexpr double kPrimerDia = -693'593;
constexpr double kUltimoDia = 2'958'465;

// Milliseconds since day 0; nothing for what is no date. Before day 0 the fraction still counts forward.
std::optional<std::int64_t> AMilis(TDateTime momento) {
  if (!(momento.Val() >= kPrimerDia && momento.Val() < kUltimoDia + 1)) return std::nullopt;
  const double dia = std::trunc(momento.Val());
  const double hora = std::abs(momento.Val() - dia);
  return static_cast<std::int64_t>(dia) * kMilisPorDia +
         std::llround(hora * static_cast<double>(kMilisPorDia));
}

std::optional<TDateTime> DeMilis(std::int64_t milis) {
  const std::int64_t dia = crono::floor<crono::days>(Milis(milis)).count();
  if (dia < static_cast<std::int64_t>(kPrimerDia) || dia > static_cast<std::int64_t>(kUltimoDia))
    return std::nullopt;
  const double hora = static_cast<double>(milis - dia * kMilisPorDia) / static_cast<double>(kMilisPorDia);
  return ComposeDateTime(TDateTime(static_cast<double>(dia)), TDateTime(hora));
}

}  // namespace

std::shared_ptr<const ZonaHoraria> BuscaZona(std::u16string_view nombre) {
  std::shared_ptr<const ZonaHoraria> zona = DameZonaWindows(nombre);
  return zona != nullptr ? zona : DameZonaIana(nombre);
}

bool LocalAUniversal(const ZonaHoraria& zona, TDateTime local, crono::sys_time<Milis>& universal) {
  const std::optional<std::int64_t> milis = AMilis(local);
  if (!milis.has_value()) return false;
  const Milis local1970(*milis + kDiaCero * kMilisPorDia);
  const auto segundos = crono::floor<crono::seconds>(local1970);
  const crono::sys_seconds utc(crono::seconds(LocalAUtc(zona, segundos.count())));
  universal = utc + (local1970 - segundos);
  return true;
}

bool UniversalALocal(const ZonaHoraria& zona, crono::sys_time<Milis> universal, TDateTime& local) {
  // What no zone brings back into the calendar would not fit the sums below.
  constexpr Milis kLimite = crono::days(4'000'000);
  if (universal.time_since_epoch() < -kLimite || universal.time_since_epoch() > kLimite) return false;
  const std::int64_t utc = crono::floor<crono::seconds>(universal).time_since_epoch().count();
  const std::int64_t desfase = std::int64_t{DesfaseEnUtc(zona, utc).segundos} * 1000;
  const std::optional<TDateTime> convertido =
      DeMilis(universal.time_since_epoch().count() + desfase - kDiaCero * kMilisPorDia);
  if (!convertido.has_value()) return false;
  local = *convertido;
  return true;
}

}  // namespace vel

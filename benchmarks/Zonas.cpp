// Conversion between zones against the bare ICU calls on zone objects that stay open.

#include <cstdlib>
#include <memory>
#include <random>
#include <unicode/timezone.h>
#include <vector>

#include "Uutilext/time/ZonasHorarias.h"
#include "benchmarks/Medicion.h"
#include "framework/TDateTime.h"

namespace {

constexpr double kMilisPorDia = 86'400'000;
constexpr double kDia1970 = 25'569;

// 2000 to 2021, when ICU's own data agree with the system's.
std::vector<double> Momentos() {
  std::mt19937 azar(3);
  std::vector<double> momentos;
  for (int i = 0; i < 1'000; ++i)
    momentos.push_back(static_cast<double>(36'526 + azar() % 8'000) +
                       static_cast<double>(azar() % 1'440) / 1'440);
  return momentos;
}

double ConIcu(const icu::TimeZone& de, const icu::TimeZone& a, double dias) {
  UErrorCode error = U_ZERO_ERROR;
  std::int32_t crudo = 0;
  std::int32_t verano = 0;
  const double local = (dias - kDia1970) * kMilisPorDia;
  de.getOffset(local, true, crudo, verano, error);
  const double utc = local - crudo - verano;
  a.getOffset(utc, false, crudo, verano, error);
  return (utc + crudo + verano) / kMilisPorDia + kDia1970;
}

}  // namespace

int main(int argc, char** argv) {
  setenv("TZ", "America/New_York", 1);
  const std::unique_ptr<icu::TimeZone> de(icu::TimeZone::createTimeZone("America/New_York"));
  const std::unique_ptr<icu::TimeZone> a(icu::TimeZone::createTimeZone("America/Mexico_City"));
  const std::vector<double> momentos = Momentos();
  int distintos = 0;
  for (const double m : momentos) {
    const double propio =
        vel::ConvertTimeToTimeZone(vel::TDateTime(m), u"Central Standard Time (Mexico)").Val();
    if (std::abs(propio - ConIcu(*de, *a, m)) > 0.5 / kMilisPorDia) ++distintos;
  }
  // A time that a change repeats is read in standard time by us and by the former offset by ICU.
  medicion::Exige(distintos <= 1, "ConvertTimeToTimeZone");
  double suma = 0;
  return medicion::Ejecuta(
      argc, argv,
      {{.nombre = "ConvertTimeToTimeZone",
        .propio =
            [&] {
              for (const double m : momentos) {
                suma +=
                    vel::ConvertTimeToTimeZone(vel::TDateTime(m), u"Central Standard Time (Mexico)").Val();
              }
            },
        .par =
            [&] {
              for (const double m : momentos) suma += ConIcu(*de, *a, m);
            },
        .limite = 2,
        .nombrePar = "bare ICU",
        .unidades = static_cast<double>(momentos.size())}});
}

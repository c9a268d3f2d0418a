// The computer's own zone, which a process chooses by TZ on POSIX, and the C library's opinion of zones.
#include "Uutilext/time/ZonasHorarias.h"

#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "Uutilext/time/CalculoZonas.h"
#include "platform/ReglasZona.h"
#include "tests/Casos.h"
#include "tests/Reales.h"

namespace vel {
namespace {

constexpr std::int64_t kHora = 3600;
constexpr std::int64_t kAnio = 31'556'952;

// TZ for the length of a test.
class Tz {
 public:
  explicit Tz(const char* zona) { Pon(zona); }
  Tz(const Tz&) = delete;
  Tz& operator=(const Tz&) = delete;
  ~Tz() {
    unsetenv("TZ");
    tzset();
  }
  static void Pon(const char* zona) {
    setenv("TZ", zona, 1);
    tzset();
  }
};

// The C library reads the same data with code of its own.
DesfaseZona DesfaseDeC(std::int64_t utc) {
  const std::time_t t = utc;
  std::tm local{};
  localtime_r(&t, &local);
  return {static_cast<std::int32_t>(local.tm_gmtoff), local.tm_isdst > 0};
}

TDateTime Fecha(const CivilDate& dia, const CivilTime& hora = {}) {
  TDateTime tiempo;
  EXPECT_TRUE(TryEncodeTime(hora, tiempo));
  return ComposeDateTime(EncodeDate(dia), tiempo);
}

TEST(Zonas, AgreeWithTheCLibraryAroundEveryChange) {
  const Tz tz("UTC");
  int cambios = 0;
  for (const auto& caso : pruebas::Casos("zonas/zonas.txt", "|")) {
    const std::string& archivo = caso.at(1);
    Tz::Pon(archivo.c_str());
    const auto zona = DameZonaWindows(UTF8ToString(caso[0]));
    ASSERT_NE(zona, nullptr) << archivo;
    for (std::int64_t t = 0; t < 68 * kAnio; t += 12 * kHora) {
      if (DesfaseDeC(t) == DesfaseDeC(t + 12 * kHora)) continue;
      ++cambios;
      for (std::int64_t utc = t - 30 * kHora; utc < t + 42 * kHora; utc += kHora / 2) {
        const DesfaseZona esperado = DesfaseDeC(utc);
        ASSERT_EQ(DesfaseEnUtc(*zona, utc), esperado) << archivo << ' ' << utc;
        // The local time of that moment, and the one that a clock put forward skips.
        for (const std::int64_t local : {utc + esperado.segundos, utc + DesfaseDeC(t).segundos}) {
          const std::int64_t leido = LocalAUtc(*zona, local);
          const DesfaseZona lados[] = {DesfaseDeC(t - 2 * kHora), DesfaseDeC(t + 14 * kHora)};
          std::vector<DesfaseZona> validos;
          for (const DesfaseZona& d : lados) {
            if (DesfaseDeC(local - d.segundos) == d) validos.push_back(d);
          }
          const bool unaEstandar = lados[0].verano != lados[1].verano;
          if (validos.size() == 1 || (validos.size() == 2 && lados[0] == lados[1])) {
            ASSERT_EQ(leido, local - validos[0].segundos) << archivo << ' ' << local;
          } else {
            // Standard time; where both are, the later of two times and the earlier of none.
            const bool despues = unaEstandar ? lados[0].verano : !validos.empty();
            ASSERT_EQ(leido, local - lados[despues ? 1 : 0].segundos) << archivo << ' ' << local;
          }
        }
      }
    }
    // The years without a change of rules near them, one moment a week.
    for (std::int64_t utc = -50 * kAnio; utc < 100 * kAnio; utc += 7 * 24 * kHora) {
      ASSERT_EQ(DesfaseEnUtc(*zona, utc).segundos, DesfaseDeC(utc).segundos) << archivo << ' ' << utc;
    }
  }
  EXPECT_GT(cambios, 1000) << "changes looked at, in all zones";
}

TEST(Zonas, MexicoGaveUpDaylightSavingInOctober2022) {
  const Tz tz("America/Mexico_City");
  for (const auto& c : pruebas::Casos("zonas/conversiones.txt", "|")) {
    CivilDate dia;
    pruebas::Entrada(c.at(0)) >> dia.anio >> dia.mes >> dia.dia;
    const TDateTime convertida = ConvertTimeToTimeZone(Fecha(dia, {12, 0, 0, 7}), UTF8ToString(c.at(1)));
    EXPECT_EQ(DecodeTime(convertida), (CivilTime{std::stoi(c.at(2)), 0, 0, 7})) << c[1];
    EXPECT_EQ(DecodeDate(convertida), dia);
  }
}

TEST(Conversion, KeepsMillisecondsAndTheEndsOfTime) {
  const Tz tz("Asia/Kolkata");
  EXPECT_EQ(DateTimeToStr(ConvertTimeToTimeZone(Fecha({1899, 12, 30}, {0, 0, 0, 1}), u"UTC")),
            u"29/12/1899 18:38:50.001")
      << "before day 0; local mean time of Madras in those years";
  EXPECT_EQ(DateTimeToStr(ConvertTimeToTimeZone(Fecha({2024, 2, 29}, {2, 0, 0, 999}), u"UTC")),
            u"28/02/2024 20:30:00.999");
  for (const double dias : {std::numeric_limits<double>::infinity(), -693593.0, 1e300}) {
    EXPECT_EQ(ConvertTimeToTimeZone(TDateTime(dias), u"UTC").Val(), dias);
  }
}

TEST(HoraBase, RoundsHalvesAwayFromZero) {
  const Tz tz("UTC");
  for (const auto& c : pruebas::Casos("zonas/horas.txt", "|")) {
    Tz::Pon(c.at(0).c_str());
    EXPECT_EQ(DameHoraBase(TDateTime()), std::stoi(c.at(1))) << c[0];
  }
  for (const char* porDia : {"EST5EDT,J60/2,J300/2", "EST5EDT,59,299", "<-04>4<-03>,M9.1.6/24,M4.1.6/24"}) {
    Tz::Pon(porDia);
    const auto zona = DameZonaActiva();
    for (std::int64_t t = 54 * kAnio / kHora * kHora; t < 56 * kAnio; t += kHora)
      ASSERT_EQ(DesfaseEnUtc(*zona, t), DesfaseDeC(t)) << porDia << ' ' << t;
  }
}

}  // namespace
}  // namespace vel

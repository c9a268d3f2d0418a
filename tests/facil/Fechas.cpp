// Zones by name, and the ISO texts of dates and moments.

#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>

#include "facil/facil.h"
#include "framework/Excepciones.h"
#include "tests/Mensaje.h"

namespace {

using namespace std::chrono;
using namespace vel::facil;

TEST(Zonas, ConvertByTheRulesOfTheYear) {
  const struct {
    const char* local;
    const char* de;
    const char* a;
    const char* esperado;
    const char* universal;
  } casos[] = {
      {"2024-01-15T12:00:00", "America/Tijuana", "America/Mexico_City", "2024-01-15T14:00:00",
       "2024-01-15T20:00:00Z"},
      {"2024-07-15T12:00:00.007", "pacific standard time (mexico)", "Central Standard Time (Mexico)",
       "2024-07-15T13:00:00.007", "2024-07-15T19:00:00.007Z"},
      // Mexico City had daylight saving time until 2022.
      {"2022-07-15T12:00:00", "America/Mexico_City", "UTC", "2022-07-15T17:00:00", "2022-07-15T17:00:00Z"},
      // Twice: the second one; never: by standard time.
      {"2024-11-03T01:30:00", "America/Tijuana", "America/Tijuana", "2024-11-03T01:30:00",
       "2024-11-03T09:30:00Z"},
      {"2024-11-03T00:59:59", "America/Tijuana", "America/Cancun", "2024-11-03T02:59:59",
       "2024-11-03T07:59:59Z"},
      {"2024-03-10T02:30:00", "America/Tijuana", "America/Tijuana", "2024-03-10T03:30:00",
       "2024-03-10T10:30:00Z"},
      {"1899-12-29T06:00:00", "Asia/Kolkata", "Etc/GMT+12", "1899-12-28T12:38:50", "1899-12-29T00:38:50Z"},
      {"9999-12-31T23:59:59.999", "Etc/GMT+12", "Etc/GMT+12", "9999-12-31T23:59:59.999", ""},
  };
  for (const auto& c : casos) {
    const vel::TDateTime local = DeISO(c.local);
    EXPECT_EQ(FechaHoraISO(CambiaZona(local, c.de, c.a)), vel::UTF8ToString(c.esperado)) << c.local;
    if (*c.universal == '\0') continue;
    EXPECT_EQ(FechaHoraISO(AUniversal(local, c.de)), vel::UTF8ToString(c.universal)) << c.local;
    EXPECT_EQ(AUniversal(CambiaZona(local, c.de, c.a), c.a), DeISOUniversal(c.universal)) << c.local;
  }
  EXPECT_EQ(vel::DateTimeToISO(DeUniversal(sys_days(2024y / May / 13), u"America/Cancun")),
            u"2024-05-12 19:00:00");
}

TEST(Zonas, TellUnknownNamesAndDatesBeyondTheCalendar) {
  for (const char* nombre :
       {"America/Ciudad", "america/tijuana", "", "../zoneinfo/UTC", "America", "right/UTC", "Hora de Peña"}) {
    EXPECT_EQ(pruebas::MensajeDe([&] { Zona{nombre}; }), std::string("Zona horaria desconocida: ") + nombre);
  }
  const auto fecha = [](const std::function<void()>& accion) {
    return pruebas::MensajeDe(accion) == "La fecha no es válida";
  };
  EXPECT_TRUE(fecha([] { CambiaZona(DeISO("9999-12-31T23:00"), "America/Tijuana", "UTC"); }));
  EXPECT_TRUE(fecha([] { AUniversal(vel::TDateTime(std::nan("")), "UTC"); }));
  for (const auto momento : {MomentoUniversal::min(), MomentoUniversal::max()}) {
    EXPECT_TRUE(fecha([&] { DeUniversal(momento, "Asia/Kolkata"); }));
    EXPECT_TRUE(fecha([&] { FechaHoraISO(momento); }));
  }
}

TEST(FechasISO, ReadWhatTheyWrite) {
  const MomentoUniversal momento = sys_days(2024y / May / 13) + 20h + 30min;
  EXPECT_EQ(FechaISO(2024y / May / 13), u"2024-05-13");
  EXPECT_EQ(FechaHoraISO(2024y / May / 13), u"2024-05-13T00:00:00");
  EXPECT_EQ(FechaHoraISO(sys_days(2024y / May / 13) + 20h), u"2024-05-13T20:00:00Z");
  EXPECT_EQ(FechaHoraISO(local_days(2024y / May / 13) + 20h), u"2024-05-13T20:00:00");
  EXPECT_EQ(FechaHoraISO(momento, "America/Mexico_City"), u"2024-05-13T14:30:00-06:00");
  EXPECT_EQ(FechaHoraISO(momento, "Asia/Kolkata"), u"2024-05-14T02:00:00+05:30");
  EXPECT_EQ(FechaHoraISO(sys_days(1890y / May / 13), "America/Mexico_City"), u"1890-05-12T17:24:00-06:36")
      << "-06:36:36";
  EXPECT_EQ(vel::DateTimeToISO(DeISO(u" 2024-05-13 14:30:00.1239876 ")), u"2024-05-13 14:30:00.123");
  for (const char* texto :
       {"2024-05-13T14:30:00-06:00", "2024-05-13 14:30-0600", "2024-05-13T14:30:00.0000009-06",
        "2024-05-13T20:30:00Z", "2024-05-14T02:00:00+05:30", "2024-05-13T20:30:00+00:00"}) {
    EXPECT_EQ(DeISOUniversal(texto), momento) << texto;
  }
  for (const char* texto :
       {"2024-05-13", "2024-05-13T14:30:00", "2024-05-13Z", "2024-05-13T14:30:00-24:00",
        "2024-05-13T14:30:00-6", "2024-05-13T14:30:00-06:60", "2024-05-13T14:30:00Zz", "2024-02-30T14:30:00Z",
        "2024-05-13T14:30 Z", "T14:30:00Z", "2024-05-13T14:30:00.Z", ""}) {
    EXPECT_EQ(pruebas::MensajeDe([&] { DeISOUniversal(texto); }),
              "'" + std::string(texto) + "' no es una fecha ISO");
  }
  for (const char* texto :
       {"2024-05-13T14:30:00Z", "2024-05-13T14:30:00-06:00", "13/05/2024", "14:30:00", "2024-05-13T"}) {
    EXPECT_THROW(DeISO(texto), vel::EConvertError) << texto;
  }
}

}  // namespace

// Zones by name, and the ISO texts of dates and moments.

#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>

#include "facil/facil.h"
#include "framework/Excepciones.h"
#include "tests/Casos.h"
#include "tests/Mensaje.h"

namespace {

using namespace std::chrono;
using namespace vel::facil;

TEST(Zonas, ConvertByTheRulesOfTheYear) {
  for (const auto& c : pruebas::Casos("zonas/cambios.txt", "|")) {
    SCOPED_TRACE(c.at(0) + " " + c.at(1));
    const vel::TDateTime local = DeISO(c[0]);
    EXPECT_EQ(vel::UTF8Encode(FechaHoraISO(CambiaZona(local, c[1], c.at(2)))), c.at(3));
    if (c.at(4).empty()) continue;
    EXPECT_EQ(vel::UTF8Encode(FechaHoraISO(AUniversal(local, c[1]))), c[4]);
    EXPECT_EQ(AUniversal(CambiaZona(local, c[1], c[2]), c[2]), DeISOUniversal(c[4]));
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
  for (const auto& c : pruebas::Casos("textos/iso.txt", "|")) {
    SCOPED_TRACE(c.at(0));
    if (c.at(1) == "same") {
      EXPECT_EQ(DeISOUniversal(c[0]), momento);
    } else if (c[1] == "none") {
      EXPECT_EQ(pruebas::MensajeDe([&c] { DeISOUniversal(c[0]); }), "'" + c[0] + "' no es una fecha ISO");
    } else {
      EXPECT_THROW(DeISO(c[0]), vel::EConvertError);
    }
  }
}

}  // namespace

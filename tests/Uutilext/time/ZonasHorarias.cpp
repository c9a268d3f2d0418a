#include "Uutilext/time/ZonasHorarias.h"

#include <chrono>
#include <gtest/gtest.h>
#include <optional>
#include <string>

#include "platform/Tzif.h"
#include "platform/ZonasHorarias.h"
#include "platform/windows/TablaZonas.h"
#include "tests/Casos.h"

namespace vel {
namespace {

TEST(Zonas, AreKnownByEveryNameInAnyCapitals) {
  for (const auto& caso : pruebas::Casos("zonas/nombres.txt", "|")) {
    UnicodeString nombre = UTF8ToString(caso[0]);
    for (std::size_t i = 0; i < nombre.size(); ++i) {
      if (nombre[i] >= u'a' && nombre[i] <= u'z' && i % 2 == 0)
        nombre[i] = static_cast<char16_t>(nombre[i] - 32);
    }
    EXPECT_NE(DameZonaWindows(nombre), nullptr) << caso[0];
  }
}

TEST(GetInfoTimeZone, FillsTheWholeRecord) {
  TIME_ZONE_INFORMATION tzi{};
  tzi.Bias = 99;
  EXPECT_FALSE(GetInfoTimeZone(tzi, u""));
  EXPECT_FALSE(GetInfoTimeZone(tzi, u"Mexico"));
  EXPECT_EQ(tzi.Bias, 99);
  ASSERT_TRUE(GetInfoTimeZone(tzi, u"CENTRAL STANDARD TIME (MEXICO)"));
  EXPECT_EQ(tzi.Bias, 360);
  EXPECT_EQ(std::u16string_view(tzi.StandardName), u"Central Standard Time (Mexico)");
  EXPECT_EQ(std::u16string_view(tzi.DaylightName), u"Central Daylight Time (Mexico)");
  EXPECT_EQ(tzi.DaylightBias, 0);
  EXPECT_EQ(tzi.StandardDate, SYSTEMTIME{});
  ASSERT_TRUE(GetInfoTimeZone(tzi, u"Pacific Standard Time (Mexico)"));
  EXPECT_EQ(tzi.Bias, 480);
  EXPECT_EQ(tzi.DaylightBias, -60);
  EXPECT_EQ(tzi.DaylightDate, (SYSTEMTIME{0, 3, 0, 2, 2, 0, 0, 0}));
  EXPECT_EQ(tzi.StandardDate, (SYSTEMTIME{0, 11, 0, 1, 2, 0, 0, 0}));
  ASSERT_TRUE(GetInfoTimeZone(tzi, u"Greenland Standard Time"));
  using namespace std::chrono;
  const year_month marzo = year_month_day{floor<days>(system_clock::now())}.year() / March;
  const bool esUltimo = sys_days{marzo / Saturday[last]} + days{1} == sys_days{marzo / Sunday[last]};
  EXPECT_EQ(tzi.DaylightDate,
            (SYSTEMTIME{0, 3, 6, static_cast<std::uint16_t>(esUltimo ? 5 : 4), 23, 0, 0, 0}))
      << "an hour before the last Sunday";
  ASSERT_TRUE(GetInfoTimeZone(tzi, u"Central America Standard Time"));
  EXPECT_EQ(std::u16string_view(tzi.StandardName).size(), 29U);
}

TEST(DameSecTiempoSincro, NumbersItsSections) {
  EXPECT_EQ(DameSecTiempoSincro(5), u"TiempoSincronizacion05");
  EXPECT_EQ(DameSecTiempoSincro(12), u"TiempoSincronizacion12");
  EXPECT_EQ(DameSecTiempoSincro(-3), u"TiempoSincronizacion0-3");
}

TEST(Tzif, RefusesWhatIsNoZone) {
  ZonaHoraria zona;
  for (const char* malo : {"", "C6", "CST", "CST6CDT,M13.1.0,M11.1.0", "CST6CDT,M3.2.0",
                           "CST6CDT,M3.2.0,M11.1.0x", "<CST6", "<C6>6", "<C,T>6", "<>6", "CST25"}) {
    EXPECT_FALSE(LeeReglaPosix(malo, zona)) << malo;
  }
  EXPECT_FALSE(LeeTzif("").has_value());
  EXPECT_FALSE(LeeTzif("TZif2" + std::string(15, '\0') + std::string(24, '\xFF')).has_value());
  EXPECT_FALSE(LeeTzif(std::string(100, 'x')).has_value());
  const std::string_view entero = BuscaTablaZonas("America/Tijuana");
  ASSERT_TRUE(LeeTzif(entero).has_value());
  for (std::size_t n = 0; n < entero.size(); ++n) {
    EXPECT_FALSE(LeeTzif(entero.substr(0, n)).has_value()) << "cut at " << n;
  }
  // Its first two changes, behind the second header, in each other's place.
  const std::size_t cambios = entero.rfind("TZif") + 44;
  std::string volteado(entero);
  volteado.replace(cambios, 16, volteado.substr(cambios + 8, 8) + volteado.substr(cambios, 8));
  EXPECT_FALSE(LeeTzif(volteado).has_value());
}

}  // namespace
}  // namespace vel

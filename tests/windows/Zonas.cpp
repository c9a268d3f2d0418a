// What the registry says of zones, and the zone that the computer is set to.

#include "facil/Zonas.h"

#include <chrono>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <vector>
#include <windows.h>

#include "Uutilext/time/ZonasHorarias.h"
#include "framework/TDateTime.h"
#include "tests/CarpetaTemporal.h"

namespace vel {
namespace {

using namespace std::chrono;

constexpr const wchar_t* kZonas = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Time Zones\\";

void Pon(const std::wstring& clave, const wchar_t* nombre, DWORD clase, const void* datos,
         std::size_t bytes) {
  ASSERT_EQ(RegSetKeyValueW(HKEY_LOCAL_MACHINE, (kZonas + clave).c_str(), nombre, clase, datos,
                            static_cast<DWORD>(bytes)),
            ERROR_SUCCESS);
}

// A record without daylight saving time.
void PonTzi(const std::wstring& clave, const wchar_t* nombre, std::int32_t sesgo) {
  std::int32_t tzi[11] = {sesgo, 0, -60};
  Pon(clave, nombre, REG_BINARY, tzi, sizeof tzi);
}

double Horas(const facil::Zona& zona, int anio) {
  const year_month_day dia = year{anio} / July / 1;
  return (facil::DeUniversal(sys_days{dia}, zona).Val() - EncodeDate({anio, 7, 1}).Val()) * 24;
}

TEST(ZonasWindows, NewRecordsOfTheSystemWin) {
  const pruebas::CarpetaTemporal carpeta;
  const int este = static_cast<int>(year_month_day{floor<days>(system_clock::now())}.year());
  // Decreed after the table was made: an hour more from next year on.
  const DWORD primero = 2000;
  const auto ultimo = static_cast<DWORD>(este + 1);
  PonTzi(L"Korea Standard Time", L"TZI", -600);
  PonTzi(L"Korea Standard Time\\Dynamic DST", L"2000", -540);
  PonTzi(L"Korea Standard Time\\Dynamic DST", std::to_wstring(ultimo).c_str(), -600);
  Pon(L"Korea Standard Time\\Dynamic DST", L"FirstEntry", REG_DWORD, &primero, sizeof primero);
  Pon(L"Korea Standard Time\\Dynamic DST", L"LastEntry", REG_DWORD, &ultimo, sizeof ultimo);
  for (const char* nombre : {"Korea Standard Time", "Asia/Seoul", "ROK"}) {
    EXPECT_NEAR(Horas(nombre, 2020), 9, 1e-6) << nombre;
    EXPECT_NEAR(Horas(nombre, este), 9, 1e-6) << nombre;
    EXPECT_NEAR(Horas(nombre, este + 1), 10, 1e-6) << nombre;
    EXPECT_NEAR(Horas(nombre, este + 20), 10, 1e-6) << nombre;
  }
  EXPECT_NEAR(Horas("Asia/Tokyo", este + 1), 9, 1e-6) << "another zone of the same hours";

  // A zone that is newer than the library, named in the system's language.
  const std::wstring estandar = L"Hora estándar de Coatzacoalcos";
  PonTzi(L"Coatzacoalcos Standard Time", L"TZI", 330);
  Pon(L"Coatzacoalcos Standard Time", L"Std", REG_SZ, estandar.c_str(),
      (estandar.size() + 1) * sizeof(wchar_t));
  EXPECT_NEAR(Horas("COATZACOALCOS Standard Time", este), -5.5, 1e-6);
  TIME_ZONE_INFORMATION tzi{};
  ASSERT_TRUE(GetInfoTimeZone(tzi, u"Coatzacoalcos Standard Time"));
  EXPECT_EQ(tzi.Bias, 330);
  EXPECT_EQ(std::u16string_view(tzi.StandardName), std::u16string(estandar.begin(), estandar.end()));
  // What stands below a zone is none.
  PonTzi(L"Coatzacoalcos Standard Time\\Otra", L"TZI", 330);
  for (const char16_t* malo : {u"Coatzacoalcos Standard Time\\Otra", u"Otra", u"Korea"})
    EXPECT_FALSE(GetInfoTimeZone(tzi, malo));
}

TEST(ZonasWindows, TheComputersIsTheSystems) {
  ::SYSTEMTIME antes;
  GetLocalTime(&antes);
  const TDateTime local = facil::DeUniversal(system_clock::now(), facil::Zona::DeEstaComputadora());
  TDateTime hora;
  ASSERT_TRUE(TryEncodeTime({antes.wHour, antes.wMinute, antes.wSecond, antes.wMilliseconds}, hora));
  const TDateTime suya = ComposeDateTime(EncodeDate({antes.wYear, antes.wMonth, antes.wDay}), hora);
  EXPECT_NEAR((local.Val() - suya.Val()) * 86'400, 0, 60);
}

}  // namespace
}  // namespace vel

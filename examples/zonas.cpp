// The present time in three Mexican zones.

#include <chrono>
#include <cstdio>
#include <string>

#include "Uutilext/time/ZonasHorarias.h"
#include "examples/Salida.h"
#include "framework/TDateTime.h"

namespace {

// The time of this computer's clock, to the second, as the suite's programs have it.
vel::TDateTime Ahora() {
  const std::time_t t = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  std::tm local{};
  localtime_r(&t, &local);
  vel::TDateTime hora;
  vel::TryEncodeTime({local.tm_hour, local.tm_min, local.tm_sec % 60, 0}, hora);
  return vel::ComposeDateTime(vel::EncodeDate({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday}), hora);
}

}  // namespace

int main(int argc, char** argv) {
  return ejemplo::Principal(argc, argv, [](const std::string& /*carpeta*/) {
    const vel::TDateTime ahora = Ahora();
    std::printf("%s%s\n", ejemplo::Columna(u"Esta computadora", 36).c_str(),
                vel::UTF8Encode(vel::DateTimeToStr(ahora)).c_str());
    for (const char16_t* zona : {u"Pacific Standard Time (Mexico)", u"Central Standard Time (Mexico)",
                                 u"Eastern Standard Time (Mexico)"}) {
      std::printf("%s%s\n", ejemplo::Columna(zona, 36).c_str(),
                  vel::UTF8Encode(vel::DateTimeToStr(vel::ConvertTimeToTimeZone(ahora, zona))).c_str());
    }
    std::printf("\nDesfase de esta computadora: %d horas\n", vel::DameHoraBase(ahora));
  });
}

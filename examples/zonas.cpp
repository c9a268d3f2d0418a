// The present time in three Mexican zones.

#include <cstdio>
#include <string>

#include "Uutilext/time/Reloj.h"
#include "Uutilext/time/ZonasHorarias.h"
#include "examples/Salida.h"
#include "framework/TDateTime.h"

int main(int argc, char** argv) {
  return ejemplo::Principal(argc, argv, [](const std::string& /*carpeta*/) {
    const vel::TDateTime ahora = vel::AhoraLocal();
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

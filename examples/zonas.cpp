// The present time in three Mexican zones, and an appointment told from one to another.

#include <chrono>
#include <cstdio>
#include <string>

#include "examples/Salida.h"
#include "facil/facil.h"

namespace {

void Muestra(std::u16string_view nombre, vel::TDateTime hora) {
  std::printf("%s%s\n", ejemplo::Columna(nombre, 36).c_str(),
              vel::UTF8Encode(vel::DateTimeToStr(hora)).c_str());
}

}  // namespace

int main(int argc, char** argv) {
  return ejemplo::Principal(argc, argv, [](const std::string& /*carpeta*/) {
    namespace facil = vel::facil;
    using namespace std::chrono;

    const auto ahora = system_clock::now();
    Muestra(u"Esta computadora", facil::DeUniversal(ahora, facil::Zona::DeEstaComputadora()));
    for (const char16_t* zona : {u"America/Tijuana", u"Central Standard Time (Mexico)", u"America/Cancun"}) {
      Muestra(zona, facil::DeUniversal(ahora, zona));
    }

    const vel::TDateTime cita = facil::DeISO("2024-07-15T12:00");
    std::printf("\n12:00 en Tijuana el 15 de julio de 2024:\n");
    Muestra(u"Ciudad de México", facil::CambiaZona(cita, "America/Tijuana", "America/Mexico_City"));
    std::printf(
        "%s%s\n", ejemplo::Columna(u"para un servicio web", 36).c_str(),
        vel::UTF8Encode(facil::FechaHoraISO(facil::AUniversal(cita, "America/Tijuana"), "America/Tijuana"))
            .c_str());
  });
}

// A table of the date ranges of an example file for a reference date.

#include <cstdio>
#include <string>

#include "Fechas/Fechas.h"
#include "examples/Salida.h"

int main(int argc, char** argv) {
  return ejemplo::Principal(argc, argv, [](const std::string& carpeta) {
    const vel::TConfigVEL rangos(vel::UTF8ToString(carpeta + "/fechas.ini"), vel::EncodeDate({2024, 5, 15}));
    std::printf("Fecha de referencia: 15/05/2024\n\n");
    for (int i = 0; i < rangos.NumeroFormatos(); ++i) {
      std::printf("%s  %s a %s\n", ejemplo::Columna(rangos.Nombres(i), 22).c_str(),
                  vel::UTF8Encode(rangos.FechaComoString(i, 1)).c_str(),
                  vel::UTF8Encode(rangos.FechaComoString(i, 2)).c_str());
    }
  });
}

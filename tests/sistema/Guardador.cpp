// Saves for ever, each time another number: guardador FOLDER. Muertes.cpp ends it.
#include "tests/sistema/Guardador.h"

#include <string>

int main(int, char** argv) {
  using namespace vel;
  const pruebas::Guardado guardado{UTF8ToString(argv[1])};
  for (int i = 1;; ++i) guardado.Guarda(i);
}

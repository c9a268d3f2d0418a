// The program utilvel: what the library does, as commands.

#include "tools/utilvel/Comandos.h"
#include "tools/utilvel/Programa.h"
#include "tools/utilvel/Sistema.h"

int main(int argc, char** argv) {
  utilvel::AtiendeSenales();
  utilvel::Programa programa;
  utilvel::AgregaComandos(programa);
  const utilvel::Codigo codigo = programa.Corre(argc, argv);
  if (codigo == utilvel::Codigo::Interrumpido) utilvel::TerminaPorInterrupcion();
  if (codigo == utilvel::Codigo::TuberiaCerrada) utilvel::TerminaPorTuberia();
  return static_cast<int>(codigo);
}

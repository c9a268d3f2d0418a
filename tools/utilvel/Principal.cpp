// The program utilvel: what the library does, as commands.

#include <cstdlib>

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
  // Firebird's library crashes in its farewell when the server cut the connection; nothing else waits for
  // one.
  if (codigo == utilvel::Codigo::Base) std::quick_exit(static_cast<int>(codigo));
  return static_cast<int>(codigo);
}

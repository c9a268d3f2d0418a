// The program utilvel: what the library does, as commands.

#include <clocale>
#include <cstdlib>

#include "tools/utilvel/Comandos.h"
#include "tools/utilvel/Programa.h"
#include "tools/utilvel/Sistema.h"

int main(int argc, char** argv) {
  // Firebird reads the name of a file in the encoding of the locale; the program has them in UTF-8.
  static_cast<void>(std::setlocale(LC_CTYPE, "C.UTF-8"));
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

#include "tools/utilvel/Comandos.h"

namespace utilvel {

void AgregaComandos(Programa& programa) {
  AgregaRedondea(programa);
  AgregaVersion(programa);
  AgregaInternos(programa);
}

}  // namespace utilvel

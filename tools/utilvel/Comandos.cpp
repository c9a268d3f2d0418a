#include "tools/utilvel/Comandos.h"

namespace utilvel {

void AgregaComandos(Programa& programa) {
  AgregaConsulta(programa);
  AgregaCfdi(programa);
  AgregaTotales(programa);
  AgregaFormula(programa);
  AgregaFechas(programa);
  AgregaConfig(programa);
  AgregaInstala(programa);
  AgregaEmpresas(programa);
  AgregaRutas(programa);
  AgregaCertificado(programa);
  AgregaHora(programa);
  AgregaRedondea(programa);
  AgregaDireccion(programa);
  AgregaClave(programa);
  AgregaVersion(programa);
  AgregaInternos(programa);
}

}  // namespace utilvel

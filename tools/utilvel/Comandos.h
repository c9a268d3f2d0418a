#pragma once

namespace utilvel {

class Programa;

// One function a command, each in a file of its name; Programa.h says how one is added.
void AgregaTotales(Programa& programa);
void AgregaFormula(Programa& programa);
void AgregaFechas(Programa& programa);
void AgregaConfig(Programa& programa);
void AgregaInstala(Programa& programa);
void AgregaConsulta(Programa& programa);
void AgregaEmpresas(Programa& programa);
void AgregaRutas(Programa& programa);
void AgregaCertificado(Programa& programa);
void AgregaHora(Programa& programa);
void AgregaCfdi(Programa& programa);
void AgregaRedondea(Programa& programa);
void AgregaDireccion(Programa& programa);
void AgregaClave(Programa& programa);
void AgregaVersion(Programa& programa);
/// What the build and the shell ask for; not in the help.
void AgregaInternos(Programa& programa);

/// Adds all of them, in the order of the help.
void AgregaComandos(Programa& programa);

}  // namespace utilvel

#pragma once

namespace utilvel {

class Programa;

// One function a command, each in a file of its name; Programa.h says how one is added.
void AgregaRedondea(Programa& programa);
void AgregaVersion(Programa& programa);
/// What the build and the shell ask for; not in the help.
void AgregaInternos(Programa& programa);

/// Adds all of them, in the order of the help.
void AgregaComandos(Programa& programa);

}  // namespace utilvel

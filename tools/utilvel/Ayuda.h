#pragma once

#include <string>

namespace CLI {
class App;
}

// The texts about the program, all made from the commands themselves and the table of exit codes.
namespace utilvel {

class Programa;

/// What `--help` prints of the program or of a command.
std::string Ayuda(const Programa& programa, const CLI::App& comando);
/// The manual page utilvel(1), for man.
std::string PaginaManual(const Programa& programa);
/// Completion for bash.
std::string Completado(const Programa& programa);
/// The lines of the examples, one a line.
std::string Ejemplos(const Programa& programa);

}  // namespace utilvel

#pragma once

#include <functional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace utilvel {

// What commands say of their arguments to the parser of the command line. Its header alone takes a compiler
// longer than the largest command, so only the files that need more of it include it: the help and
// Programa.cpp.

/// An argument or an option of a command, which owns it.
class Argumento {
 public:
  explicit Argumento(CLI::Option* opcion) noexcept : opcion_(opcion) {}

  /// The command does not run without it.
  const Argumento& Exige() const;
  /// How help names its value: "ARCHIVO".
  const Argumento& Toma(const std::string& valor) const;
  /// Of an option with several values: each is written with the option's name.
  const Argumento& UnoPorVez() const;
  /// Not together with the other one.
  const Argumento& SinOtro(const Argumento& otro) const;
  /// `revisa` gives what is wrong with a value, or an empty text.
  const Argumento& Revisa(std::function<std::string(const std::string&)> revisa) const;

 private:
  CLI::Option* opcion_;
};

/// An argument where `nombres` is a word ("VALOR"), an option where it begins with a hyphen
/// ("-v,--variable"). The line's text goes to `valor`, which outlives the command; what is not on the line
/// stays as it is.
Argumento AgregaArgumento(CLI::App& comando, const std::string& nombres, std::string& valor,
                          const std::string& explica);
/// The same with a whole number; another text on the line is an error.
Argumento AgregaArgumento(CLI::App& comando, const std::string& nombres, int& valor,
                          const std::string& explica);
/// The same with one or more texts.
Argumento AgregaArgumento(CLI::App& comando, const std::string& nombres, std::vector<std::string>& valores,
                          const std::string& explica);
/// An option without a value.
Argumento AgregaBandera(CLI::App& comando, const std::string& nombre, bool& puesta,
                        const std::string& explica);

/// A command that is only a group of others: one of them must be named.
void ExigeOrden(CLI::App& comando);
/// Takes the command out of help, manual page and completion.
void Oculta(CLI::App& comando);

}  // namespace utilvel

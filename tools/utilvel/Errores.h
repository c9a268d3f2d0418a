#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "framework/Texto.h"
#include "tools/utilvel/Codigos.h"

namespace utilvel {

/// What ends a command: its message, one line of Spanish in UTF-8, and the exit code.
class Falla : public std::runtime_error {
 public:
  Falla(Codigo codigo, const std::string& mensaje) : std::runtime_error(mensaje), codigo_(codigo) {}
  Codigo DameCodigo() const noexcept { return codigo_; }

 private:
  Codigo codigo_;
};

/// The reader of what the program prints went away. Nobody is told; the program just ends.
struct TuberiaCerrada {};

/// Ctrl-C, noticed where nothing stays half done.
struct Interrumpido {};

/// Prints "utilvel: " and the message on standard error, in one line: line breaks in it become blanks and
/// other control characters stand as Visible has them.
void Avisa(std::string_view mensaje);

}  // namespace utilvel

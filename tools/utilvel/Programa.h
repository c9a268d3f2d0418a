#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tools/utilvel/Codigos.h"

// How a command is added
//
//  1. A file ComandoX.cpp with `void AgregaX(Programa& programa)`, which calls Programa::Agrega with what the
//     help and the manual page say of the command and with the function that runs it, and gives the CLI::App
//     that it gets back its arguments and options (Argumentos.h). Their values live in a structure that the
//     function shares.
//  2. The function's name in Comandos.h and in the list of Comandos.cpp, whose order is that of the help, and
//     the file in CMakeLists.txt.
//  3. Its examples, with what they print, in tests/tools/utilvel; a test misses an example that has no case.
//
//     struct Opciones { std::string valor; };
//     Codigo Corre(const Opciones& o) { ... return Codigo::Bien; }
//     void AgregaDoble(Programa& programa) {
//       const auto o = std::make_shared<Opciones>();
//       CLI::App& comando = programa.Agrega({.nombre = "doble", .resumen = "Duplica una cantidad",
//                                            .ejemplos = {{"utilvel doble 21", "Da 42."}}},
//                                           [o] { return Corre(*o); });
//       AgregaArgumento(comando, "VALOR", o->valor, "Cantidad").Exige();
//     }
//
// A command prints rows through Filas, other results through Escritor, and what went wrong through Avisa. To
// end with an error it throws Falla with the exit code; exceptions of the library end with Codigo::Datos.
namespace CLI {
class App;
}

namespace utilvel {

struct Ejemplo {
  /// As a user types it, in a folder that holds the example files: "utilvel redondea 2.675 2".
  std::string linea;
  std::string explica;
};

/// What help, manual page and completion say of a command.
struct Ficha {
  std::string nombre;
  /// One line, without a full stop.
  std::string resumen;
  /// Paragraphs parted by "\n"; may be empty.
  std::string detalle = {};
  std::vector<Ejemplo> ejemplos = {};
};

/// The program: its commands and what runs each.
class Programa {
 public:
  Programa();
  Programa(const Programa&) = delete;
  Programa& operator=(const Programa&) = delete;
  ~Programa();

  /// A command. What is returned belongs to the program.
  CLI::App& Agrega(Ficha ficha, std::function<Codigo()> corre);
  /// A command within a command ("config lee").
  CLI::App& Agrega(CLI::App& padre, Ficha ficha, std::function<Codigo()> corre);

  /// Reads the command line and runs the command. Errors are printed; nothing is thrown.
  Codigo Corre(int argc, const char* const* argv);

  const CLI::App& Raiz() const noexcept { return *raiz_; }
  /// What is said of a command; null for what was not added here.
  const Ficha* DameFicha(const CLI::App& comando) const noexcept;

 private:
  struct Comando {
    const CLI::App* app;
    Ficha ficha;
    std::function<Codigo()> corre;
  };
  const Comando* Busca(const CLI::App& comando) const noexcept;
  Codigo Ejecuta(int argc, const char* const* argv);

  std::unique_ptr<CLI::App> raiz_;
  std::vector<Comando> comandos_;
};

}  // namespace utilvel

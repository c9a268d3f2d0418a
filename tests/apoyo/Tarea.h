#pragma once

#include <chrono>
#include <thread>

#include "tests/apoyo/Sistema.h"

namespace pruebas {

/// Work that a test gives to processes of their own: copies of the test program that do this and no tests.
/// Their exit code is 0 when no expectation failed and nothing was thrown.
///
///     const Tarea kDos("dos", [](const Argumentos& a) { EXPECT_EQ(a.at(0), u"2"); });   // beside the tests
///
///     Proceso p = kDos.Empieza({u"2"});
///     EXPECT_EQ(p.Espera(), 0);
class Tarea {
 public:
  Tarea(const char* nombre, void (*trabajo)(const Argumentos&));
  Proceso Empieza(const Argumentos& argumentos) const;

 private:
  const char* nombre_;
};

/// Waits until the condition holds; false when it does not within a minute.
template <class Condicion>
bool Aguarda(Condicion condicion) {
  const auto limite = std::chrono::steady_clock::now() + std::chrono::minutes(1);
  while (!condicion()) {
    if (std::chrono::steady_clock::now() > limite) return false;
    std::this_thread::sleep_for(std::chrono::microseconds(50));
  }
  return true;
}

/// Does the task that the command line names, in place of the tests; its exit code, or nothing when it names
/// none.
std::optional<int> HazTarea(const Argumentos& propios);

}  // namespace pruebas

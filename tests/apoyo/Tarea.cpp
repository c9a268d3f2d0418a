#include "tests/apoyo/Tarea.h"

#include <cstdio>
#include <exception>
#include <gtest/gtest.h>
#include <map>

namespace pruebas {
namespace {

constexpr std::u16string_view kOpcion = u"--tarea";

std::map<std::u16string, void (*)(const Argumentos&)>& Tareas() {
  static std::map<std::u16string, void (*)(const Argumentos&)> tareas;
  return tareas;
}

std::u16string Ancho(const std::string& utf8) {
  return std::filesystem::path(std::u8string(utf8.begin(), utf8.end())).u16string();
}

}  // namespace

Tarea::Tarea(const char* nombre, void (*trabajo)(const Argumentos&)) : nombre_(nombre) {
  Tareas()[Ancho(nombre)] = trabajo;
}

Proceso Tarea::Empieza(const Argumentos& argumentos) const {
  Argumentos todos{std::u16string(kOpcion), Ancho(nombre_)};
  todos.insert(todos.end(), argumentos.begin(), argumentos.end());
  return Proceso(todos);
}

std::optional<int> HazTarea(const Argumentos& propios) {
  if (propios.size() < 2 || propios[0] != kOpcion) return std::nullopt;
  HeredaDesvio();
  try {
    Tareas().at(propios[1])({propios.begin() + 2, propios.end()});
  } catch (const std::exception& e) {
    std::fprintf(stderr, "%s\n", e.what());
    return 1;
  }
  return testing::Test::HasFailure() ? 1 : 0;
}

}  // namespace pruebas

#pragma once

#include <compare>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/CarpetaTemporal.h"
#include "tests/sistema/Llamadas.h"

namespace pruebas {

/// A file of a folder, or a folder or link in it, as anyone finds it.
struct Visto {
  std::string bytes;
  unsigned modo;
  auto operator<=>(const Visto&) const = default;
};

/// All that stands in a folder, by full path.
using Foto = std::map<std::string, Visto>;
Foto Retrata(const std::filesystem::path& carpeta);
/// Makes the folder as the picture has it.
void Revela(const std::filesystem::path& carpeta, const Foto& foto);

/// Whole contents that files have had, by path.
using Versiones = std::set<std::pair<std::string, Visto>>;
/// Adds the file that this call gave its name.
void Publica(const Suceso& suceso, Versiones& enteras);

/// One kind of saving. It raises its fault.
struct Operacion {
  const char* nombre;
  void (*prepara)(CarpetaTemporal& c);
  void (*guarda)(CarpetaTemporal& c);
};
const std::vector<Operacion>& Operaciones();

/// What the objects that the operations save look like.
std::string Objetos();

}  // namespace pruebas

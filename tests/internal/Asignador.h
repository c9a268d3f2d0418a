#pragma once

namespace pruebas {

/// The memory of this program: operator new obeys it.
struct Asignador {
  /// Allocations up to the one that fails; 0 for none.
  long restan = 0;
  /// It failed.
  bool fallo = false;
  /// There is no memory at all.
  bool agotado = false;
  /// Allocations that were not given back.
  long vivas = 0;
};
extern Asignador asignador;

}  // namespace pruebas

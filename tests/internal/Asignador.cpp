#include "tests/internal/Asignador.h"

#include <cstdlib>
#include <new>

namespace pruebas {

Asignador asignador;

namespace {

void* Pide(std::size_t largo) noexcept {
  const bool falla = asignador.restan > 0 && --asignador.restan == 0;
  asignador.fallo = asignador.fallo || falla;
  if (falla || asignador.agotado) return nullptr;
  ++asignador.vivas;
  return std::malloc(largo == 0 ? 1 : largo);
}

void Devuelve(void* p) noexcept {
  if (p != nullptr) --asignador.vivas;
  std::free(p);
}

}  // namespace
}  // namespace pruebas

void* operator new(std::size_t largo) {
  void* const p = pruebas::Pide(largo);
  return p != nullptr ? p : throw std::bad_alloc();
}
void* operator new[](std::size_t largo) { return operator new(largo); }
void* operator new(std::size_t largo, const std::nothrow_t&) noexcept { return pruebas::Pide(largo); }
void* operator new[](std::size_t largo, const std::nothrow_t&) noexcept { return pruebas::Pide(largo); }
void operator delete(void* p) noexcept { pruebas::Devuelve(p); }
void operator delete[](void* p) noexcept { pruebas::Devuelve(p); }
void operator delete(void* p, std::size_t) noexcept { pruebas::Devuelve(p); }
void operator delete[](void* p, std::size_t) noexcept { pruebas::Devuelve(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { pruebas::Devuelve(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { pruebas::Devuelve(p); }

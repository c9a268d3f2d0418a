#pragma once

#include <cstddef>
#include <vector>

namespace vel::formula {

/// Sequence for building one formula after another: emptying keeps the room, and growing stays out of line,
/// so that appending costs the loops that live on it next to nothing.
template <class T>
class Serie {
 public:
  /// Appends one to be filled in its place; it holds what an earlier one left there.
  T& Agrega() {
    if (cuenta_ == cabida_) [[unlikely]]
      Crece();
    return datos_[cuenta_++];
  }
  void Agrega(const T& valor) { Agrega() = valor; }
  void Vacia() noexcept { cuenta_ = 0; }
  /// Keeps the first ones.
  void Recorta(std::size_t cuenta) noexcept { cuenta_ = cuenta; }
  T Saca() noexcept { return datos_[--cuenta_]; }

  std::size_t Cuenta() const noexcept { return cuenta_; }
  bool EstaVacia() const noexcept { return cuenta_ == 0; }
  T& operator[](std::size_t i) noexcept { return datos_[i]; }
  const T& operator[](std::size_t i) const noexcept { return datos_[i]; }
  const T& Ultimo() const noexcept { return datos_[cuenta_ - 1]; }

 private:
  [[gnu::noinline]] void Crece() {
    cabida_ = 2 * cabida_ + 16;
    datos_.resize(cabida_);
  }

  std::vector<T> datos_;
  std::size_t cuenta_ = 0;
  std::size_t cabida_ = 0;
};

}  // namespace vel::formula

#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace vel::formula {

/// Sequence for building one formula after another: emptying keeps the room, and growing stays out of line,
/// so that appending costs the loops that live on it next to nothing.
template <class T>
class Serie {
 public:
  Serie() = default;
  /// Copies what is in use, not the room kept.
  Serie(const Serie& otra)
      : datos_(otra.datos_.begin(), otra.datos_.begin() + static_cast<std::ptrdiff_t>(otra.cuenta_)),
        cuenta_(otra.cuenta_),
        cabida_(otra.cuenta_) {}
  Serie(Serie&& otra) noexcept
      : datos_(std::move(otra.datos_)),
        cuenta_(std::exchange(otra.cuenta_, 0)),
        cabida_(std::exchange(otra.cabida_, 0)) {}
  Serie& operator=(Serie otra) noexcept {
    datos_.swap(otra.datos_);
    std::swap(cuenta_, otra.cuenta_);
    std::swap(cabida_, otra.cabida_);
    return *this;
  }
  ~Serie() = default;

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
    // The count of the room follows the room: a vector that cannot grow stays as it was.
    datos_.resize(2 * cabida_ + 16);
    cabida_ = datos_.size();
  }

  std::vector<T> datos_;
  std::size_t cuenta_ = 0;
  std::size_t cabida_ = 0;
};

}  // namespace vel::formula

#pragma once

#include <cstddef>
#include <new>
#include <utility>

namespace vel {

/// A value of a static variable that is made once and never destroyed:
///
///     static SinDestruir<std::string> leida;   // *leida is the std::string
///
/// Programs call the library from the destructors of their own static and thread_local objects, which run
/// when the destructors of ours may be over. So a static of the library holds what needs a destructor in one
/// of these. Its memory goes back to the system with the process; leak checkers see it held by the static.
template <class T>
class SinDestruir {
 public:
  template <class... Argumentos>
  explicit SinDestruir(Argumentos&&... argumentos) {
    ::new (static_cast<void*>(bytes_)) T(std::forward<Argumentos>(argumentos)...);
  }
  SinDestruir(const SinDestruir&) = delete;
  SinDestruir& operator=(const SinDestruir&) = delete;
  T& operator*() noexcept { return *std::launder(reinterpret_cast<T*>(bytes_)); }
  T* operator->() noexcept { return &**this; }

 private:
  alignas(T) std::byte bytes_[sizeof(T)];
};

}  // namespace vel

#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <windows.h>

#include "framework/Texto.h"

// What the files of this folder share: the system's texts are of wchar_t, which is 16 bits wide here, and the
// library's of char16_t.
namespace vel::windows {

inline std::wstring Ancha(std::u16string_view texto) { return {texto.begin(), texto.end()}; }
inline UnicodeString DeAncha(std::wstring_view texto) { return {texto.begin(), texto.end()}; }

/// A handle of the system that closes itself.
class Manejador {
 public:
  Manejador() noexcept = default;
  explicit Manejador(HANDLE h) noexcept : h_(h) {}
  Manejador(const Manejador&) = delete;
  Manejador& operator=(const Manejador&) = delete;
  Manejador(Manejador&& otro) noexcept : h_(otro.Suelta()) {}
  Manejador& operator=(Manejador&& otro) noexcept {
    Manejador anterior(std::exchange(h_, otro.Suelta()));
    return *this;
  }
  ~Manejador() {
    if (Valido()) CloseHandle(h_);
  }
  bool Valido() const noexcept { return h_ != INVALID_HANDLE_VALUE; }
  HANDLE Handle() const noexcept { return h_; }
  /// Hands the handle over to the caller.
  HANDLE Suelta() noexcept { return std::exchange(h_, INVALID_HANDLE_VALUE); }

 private:
  HANDLE h_ = INVALID_HANDLE_VALUE;
};

}  // namespace vel::windows

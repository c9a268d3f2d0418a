#pragma once

#include <memory>

#include "platform/windows/Sistema.h"

namespace vel::windows {

/// The rights to a file that are its own, not those that it inherits from its folder.
class Permisos {
 public:
  /// Reads them from a file that is open with READ_CONTROL; a file system without rights has none. Gives the
  /// system's error number.
  DWORD Lee(HANDLE archivo) noexcept;
  /// True when there are any.
  bool Propios() const noexcept { return propios_; }
  /// Gives them to a file that is open with WRITE_DAC; nothing to do without any.
  DWORD Pon(HANDLE archivo) const noexcept;

 private:
  struct Libera {
    void operator()(void* memoria) const noexcept { LocalFree(memoria); }
  };
  std::unique_ptr<void, Libera> descriptor_;
  PACL lista_ = nullptr;
  bool propios_ = false;
  bool protegidos_ = false;
};

}  // namespace vel::windows

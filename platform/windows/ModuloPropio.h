#pragma once

#include "platform/windows/Sistema.h"

namespace vel::windows {

/// The module that this code is part of: the library, or the program that its objects are linked to. Null
/// when the system does not tell.
HMODULE ModuloPropio() noexcept;

}  // namespace vel::windows

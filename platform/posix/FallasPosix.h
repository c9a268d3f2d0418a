#pragma once

#include "platform/Archivos.h"

namespace vel::posix {

/// The fault that errno means: the one place where the system's errors are translated.
FallaArchivo FallaDe(int error);

}  // namespace vel::posix

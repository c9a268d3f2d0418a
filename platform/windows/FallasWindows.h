#pragma once

#include "platform/Archivos.h"
#include "platform/windows/Sistema.h"

namespace vel::windows {

/// The fault that an error number of the system means: the one place where they are translated. None for
/// ERROR_SUCCESS.
FallaArchivo FallaDe(DWORD error);

}  // namespace vel::windows

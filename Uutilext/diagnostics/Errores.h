#pragma once

#include <string_view>

#include "utilvel90_export.h"

namespace vel {

/// Raises an error in the form that the process expects. In an interactive program sets `codigo` to -1 and
/// raises Exception with the message; in a service host (one that loaded "SrvVEL90.dll", "IServerVEL90.dll"
/// or "VELMovil30.dll") throws the int `codigo` itself, which the host maps to its own response.
[[noreturn]] UTILVEL90_EXPORT void LanzaThrow(std::u16string_view mensaje, int& codigo);

/// True when the message says that the remote session expired: it holds "La sesión ha caducado".
UTILVEL90_EXPORT bool esErrorSesionCaduca(std::u16string_view mensaje) noexcept;

/// Opens a file and returns its handle, which the caller closes with the system's close; with `mantener`
/// false the handle is closed at once and only success counts. `modo` holds the runtime's open-mode flags:
/// 0 read, 1 write, 2 both, and a share mode: 0x10 exclusive; 0x20, 0x30, 0x40 and none are alike on POSIX,
/// where locks hold only among programs that open by this function. No flag creates or empties a file.
///
/// Raises Exception with a message for the user that names the file, or "de empresas" when
/// `archivoEmpresas`; the system's own text for a fault that is none of the common ones.
UTILVEL90_EXPORT int IntentarAbrirArchivo(std::u16string_view ruta, unsigned int modo, bool mantener,
                                          bool archivoEmpresas);

}  // namespace vel

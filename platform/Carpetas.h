#pragma once

#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// The folders that the system gives every program, without a trailing separator, in the suite's notation
/// where the system has one of its own (see RutaNativa).
struct CarpetasConocidas {
  /// The user's own application data, on this machine only. Windows: local application data. POSIX:
  /// $XDG_DATA_HOME when it is absolute, else ~/.local/share, the home being $HOME or, without it, the user
  /// database's; empty when there is none (freedesktop.org, XDG base directories).
  UnicodeString datosUsuario;
  /// Application data of all users. Windows: common application data. POSIX: $UTILVEL_DATOS_COMUNES, else
  /// /var/lib.
  UnicodeString datosComunes;
};

/// Both, asked of the system anew at each call.
UTILVEL90_EXPORT CarpetasConocidas DameCarpetasConocidas();

}  // namespace vel

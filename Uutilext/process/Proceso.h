#pragma once

#include "framework/Texto.h"

// What the process that loaded the library is, and where its files stand. Everything that asks stands above.
namespace vel {

/// True in a process that loaded one of the suite's server or mobile modules: its files stand beside the
/// library, and its errors are raised as codes.
bool EsProcesoServidor();

/// The folder of this library's own file, with a trailing backslash. Raises Exception when the system does
/// not tell it.
UnicodeString CarpetaBiblioteca();

/// The folder of this process's own files, with a trailing backslash: beside the library for a server, else
/// the user's application data under the product label.
UnicodeString CarpetaDelProceso();

}  // namespace vel

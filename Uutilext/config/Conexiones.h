#pragma once

#include <string_view>

#include "framework/TStringList.h"
#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// Settings of the remote service, in section "Sistema" of the configuration file. The setters raise as
/// EscribeValor does.

/// Base address of the remote service ("RutaServidorRemoto"); when empty, the address that the build sets
/// (CMake's UTILVEL90_SERVIDOR_REMOTO, "http://servidor/" unless changed) followed by the product label and
/// "/".
UTILVEL90_EXPORT UnicodeString DameRutaAccesoRemoto();
UTILVEL90_EXPORT void EscribeRutaAccesoRemoto(std::u16string_view ruta);

/// Path of the service under the base address ("NombreServicio"); "SrvVEL90.dll/soap" when empty.
UTILVEL90_EXPORT UnicodeString DameNombreServicio();

/// Full address of the service: base address and service name with one "/" between them.
///
///     base u"https://otro.mx/vel" or u"https://otro.mx/vel/": u"https://otro.mx/vel/SrvVEL90.dll/soap"
UTILVEL90_EXPORT UnicodeString DameDirDatosRemoto();

/// Name of the remote connection that the user chose ("NombreConexionRemoto").
UTILVEL90_EXPORT void EscribeNombreAccesoRemoto(std::u16string_view nombre);

/// Last user that logged in ("UsrRecent"); "Administrador" when empty.
UTILVEL90_EXPORT UnicodeString DameUsuarioReciente();
UTILVEL90_EXPORT void EscribeUsuarioReciente(std::u16string_view usuario);

/// Web session identifier kept under a key that the caller names; empty when there is none.
UTILVEL90_EXPORT UnicodeString DameIdSesionWeb(std::u16string_view clave);
UTILVEL90_EXPORT void EscribeIdSesion(std::u16string_view clave, std::u16string_view valor);

/// Path of the user's connections file, "conexionesusuario.ini": in the user's application data, or beside
/// the library in a process that loaded a server or mobile module. Creates the folder, and outside the
/// "SrvVEL90.dll" service seeds a missing file from the engine folder's template.
UTILVEL90_EXPORT UnicodeString DameArchConexUsu();

/// Fills the list with the connection names (the section names) of a connections file; a missing file has
/// none.
UTILVEL90_EXPORT void DameListaConexiones(std::u16string_view archivo, TStringList& lista);

}  // namespace vel

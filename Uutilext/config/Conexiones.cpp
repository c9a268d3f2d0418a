#include "Uutilext/config/Conexiones.h"

#include "Uutilext/config/Ajustes.h"
#include "Uutilext/config/ArchivoIni.h"
#include "Uutilext/config/Rutas.h"
#include "Uutilext/process/Proceso.h"
#include "platform/Archivos.h"
#include "platform/Modulos.h"
#include "version/Version.h"

// What its header forgets would be exported by nobody.
#pragma GCC diagnostic error "-Wmissing-declarations"

namespace vel {

UnicodeString DameRutaAccesoRemoto() {
  UnicodeString ruta = Lee(ajustes::kRutaServidorRemoto);
  // The address is set by the build.
  return ruta.empty() ? UTF8ToString(UTILVEL90_SERVIDOR_REMOTO) + DameVerVEL() + u"/" : ruta;
}

void EscribeRutaAccesoRemoto(std::u16string_view ruta) { Escribe(ajustes::kRutaServidorRemoto, ruta); }

UnicodeString DameNombreServicio() { return Lee(ajustes::kNombreServicio); }

UnicodeString DameDirDatosRemoto() {
  UnicodeString direccion = DameRutaAccesoRemoto();
  if (direccion.back() != u'/') direccion += u'/';
  return direccion + DameNombreServicio();
}

void EscribeNombreAccesoRemoto(std::u16string_view nombre) { Escribe(ajustes::kNombreConexion, nombre); }

UnicodeString DameUsuarioReciente() { return Lee(ajustes::kUsuarioReciente); }
void EscribeUsuarioReciente(std::u16string_view usuario) { Escribe(ajustes::kUsuarioReciente, usuario); }

UnicodeString DameIdSesionWeb(std::u16string_view clave) { return Lee(ajustes::IdSesion(clave)); }
void EscribeIdSesion(std::u16string_view clave, std::u16string_view valor) {
  Escribe(ajustes::IdSesion(clave), valor);
}

UnicodeString DameArchConexUsu() {
  const UnicodeString carpeta = CarpetaDelProceso();
  // A folder or a copy that cannot be made shows when the file is used.
  if (!ExisteCarpeta(carpeta)) CreaCarpeta(carpeta);
  UnicodeString archivo = carpeta + u"conexionesusuario.ini";
  // Only this service brings its own file; the other modules' hosts are seeded like a workstation.
  if (!ModuloCargado(u"SrvVEL90.dll") && !ExisteArchivo(archivo)) {
    const UnicodeString plantilla = DameRutaVELNG() + u"\\Plantillas\\conexionesusuario.ini";
    if (ExisteArchivo(plantilla)) CopiaArchivo(plantilla, archivo, false);
  }
  return archivo;
}

void DameListaConexiones(std::u16string_view archivo, TStringList& lista) {
  lista.SetStrings(LeeIni(archivo).Secciones());
}

}  // namespace vel

#include "Uutilext/config/Conexiones.h"

#include "Uutilext/config/ArchivoIni.h"
#include "Uutilext/config/Configuracion.h"
#include "Uutilext/config/Rutas.h"
#include "Uutilext/process/Proceso.h"
#include "platform/Archivos.h"
#include "platform/Modulos.h"
#include "version/Version.h"

namespace vel {
namespace {

constexpr std::u16string_view kSistema = u"Sistema";

UnicodeString ValorUOmision(std::u16string_view clave, std::u16string_view omision) {
  const UnicodeString valor = DameValor(kSistema, clave);
  return valor.empty() ? UnicodeString(omision) : valor;
}

}  // namespace

UnicodeString DameRutaAccesoRemoto() {
  // Set by the build.
  return ValorUOmision(u"RutaServidorRemoto", UTF8ToString(UTILVEL90_SERVIDOR_REMOTO) + DameVerVEL() + u"/");
}

void EscribeRutaAccesoRemoto(std::u16string_view ruta) {
  EscribeValor(kSistema, u"RutaServidorRemoto", ruta);
}

UnicodeString DameNombreServicio() { return ValorUOmision(u"NombreServicio", u"SrvVEL90.dll/soap"); }

UnicodeString DameDirDatosRemoto() {
  UnicodeString direccion = DameRutaAccesoRemoto();
  if (direccion.back() != u'/') direccion += u'/';
  return direccion + DameNombreServicio();
}

void EscribeNombreAccesoRemoto(std::u16string_view nombre) {
  EscribeValor(kSistema, u"NombreConexionRemoto", nombre);
}

UnicodeString DameUsuarioReciente() { return ValorUOmision(u"UsrRecent", u"Administrador"); }

void EscribeUsuarioReciente(std::u16string_view usuario) { EscribeValor(kSistema, u"UsrRecent", usuario); }

UnicodeString DameIdSesionWeb(std::u16string_view clave) { return DameValor(kSistema, clave); }

void EscribeIdSesion(std::u16string_view clave, std::u16string_view valor) {
  EscribeValor(kSistema, clave, valor);
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

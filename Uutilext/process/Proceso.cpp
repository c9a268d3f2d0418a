#include "Uutilext/process/Proceso.h"

#include "platform/Carpetas.h"
#include "platform/Modulos.h"
#include "version/Version.h"

namespace vel {

bool EsProcesoServidor() {
  for (const char16_t* modulo : {u"SrvVEL90.dll", u"IServerVEL90.dll", u"VELMovil30.dll"}) {
    if (ModuloCargado(modulo)) return true;
  }
  return false;
}

UnicodeString CarpetaBiblioteca() {
  UnicodeString carpeta = RutaBiblioteca();
  carpeta.erase(carpeta.find_last_of(u"/\\"));
  return carpeta.append(u"\\");
}

UnicodeString CarpetaDelProceso() {
  if (EsProcesoServidor()) return CarpetaBiblioteca();
  return DameCarpetasConocidas().datosUsuario + u"\\Tavex\\" + DameVerVEL() + u"\\";
}

}  // namespace vel

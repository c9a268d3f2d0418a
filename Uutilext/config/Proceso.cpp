#include "Uutilext/config/Proceso.h"

#include "Uutilext/config/Rutas.h"
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

UnicodeString CarpetaDelProceso() {
  if (EsProcesoServidor()) return DameRutaDll();
  return DameCarpetasConocidas().datosUsuario + u"\\Tavex\\" + DameVerVEL() + u"\\";
}

}  // namespace vel

#include "Uutilext/diagnostics/Bitacora.h"

#include <cstdio>
#include <string>

#include "Uutilext/config/Rutas.h"
#include "Uutilext/time/Reloj.h"
#include "framework/Excepciones.h"
#include "framework/TDateTime.h"
#include "platform/Archivos.h"

namespace vel {
namespace {

UnicodeString RutaBitacora() { return DameRutaDll() + u"0010552.log"; }

}  // namespace

void logInterAux(std::string_view mensaje) {
  const TDateTime ahora = AhoraLocal();
  const CivilDate f = DecodeDate(ahora);
  const CivilTime h = DecodeTime(ahora);
  char sello[64];
  const int largo = std::snprintf(sello, sizeof sello, "%02d/%02d/%04d %02d:%02d:%02d %03d - ", f.dia, f.mes,
                                  f.anio, h.hora, h.minuto, h.segundo, h.milisegundo);
  std::string linea(sello, static_cast<std::size_t>(largo));
  linea.append(mensaje).append("\r\n");
  const UnicodeString ruta = RutaBitacora();
  const FallaArchivo falla = AgregaAlFinal(ruta, linea);
  if (falla.Hubo())
    throw EStreamError(u"No se puede escribir en el archivo \"" + ruta + u"\": " + falla.texto);
}

void Deletelog() {
  const UnicodeString ruta = RutaBitacora();
  const FallaArchivo falla = BorraArchivo(ruta);
  if (falla.Hubo()) throw EStreamError(u"No se puede borrar el archivo \"" + ruta + u"\": " + falla.texto);
}

}  // namespace vel

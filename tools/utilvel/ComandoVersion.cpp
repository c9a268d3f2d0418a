// utilvel version: the library's version.

#include "tools/utilvel/Comandos.h"
#include "tools/utilvel/Programa.h"
#include "tools/utilvel/Sistema.h"
#include "version/Version.h"

namespace utilvel {
namespace {

Codigo Corre() {
  Escritor salida("");
  salida.Escribe(vel::UTF8Encode(vel::DameVersionCompVEL(true) + u" (" + vel::DameVerVEL() + u")") + "\n");
  salida.Termina();
  return Codigo::Bien;
}

}  // namespace

void AgregaVersion(Programa& programa) {
  programa.Agrega({.nombre = "version",
                   .resumen = "Versión de la biblioteca y nombre de las carpetas de su entrega",
                   .ejemplos = {{"utilvel version", "La versión instalada."},
                                {"utilvel --version", "Lo mismo, como opción."}}},
                  Corre);
}

}  // namespace utilvel

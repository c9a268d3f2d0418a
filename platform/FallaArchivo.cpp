#include "framework/Excepciones.h"
#include "platform/Archivos.h"

namespace vel {

UnicodeString Descripcion(const FallaArchivo& falla) {
  switch (falla.clase) {
    case ClaseFalla::Ninguna:
      return {};
    case ClaseFalla::NoExiste:
      return u"el archivo no existe";
    case ClaseFalla::RutaNoExiste:
      return u"la carpeta no existe";
    case ClaseFalla::DemasiadosAbiertos:
      return u"hay demasiados archivos abiertos";
    case ClaseFalla::AccesoDenegado:
      return u"acceso denegado";
    case ClaseFalla::SinMemoria:
      return u"no hay suficiente memoria";
    case ClaseFalla::DiscoLleno:
      return u"no queda espacio en el disco";
    case ClaseFalla::EnUso:
      return u"lo está usando otro programa";
    case ClaseFalla::Otra:
      break;
  }
  return falla.texto;
}

void ExigeSinFalla(const FallaArchivo& falla, std::u16string_view que, std::u16string_view ruta) {
  if (!falla.Hubo()) return;
  throw EStreamError(
      UnicodeString(que).append(u" \"").append(ruta).append(u"\": ").append(Descripcion(falla)));
}

}  // namespace vel

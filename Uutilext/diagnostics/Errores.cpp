#include "Uutilext/diagnostics/Errores.h"

#include "Uutilext/diagnostics/Traza.h"
#include "Uutilext/process/Proceso.h"
#include "framework/Excepciones.h"
#include "platform/Archivos.h"

namespace vel {
namespace {

UnicodeString NombreDe(std::u16string_view ruta) {
  return UnicodeString(ruta.substr(ruta.find_last_of(u"\\/:") + 1));
}

UnicodeString MensajeDe(const FallaArchivo& falla, const UnicodeString& nombre) {
  switch (falla.clase) {
    case ClaseFalla::NoExiste:
      return u"No se pudo encontrar el archivo " + nombre;
    case ClaseFalla::RutaNoExiste:
      return u"No se pudo encontrar la ruta del archivo " + nombre;
    case ClaseFalla::DemasiadosAbiertos:
      return u"El sistema no pudo abrir el archivo " + nombre + u"\nDemasiados archivos abiertos";
    case ClaseFalla::AccesoDenegado:
      return u"Acceso denegado al archivo " + nombre + u"\nVerifique los permisos";
    case ClaseFalla::SinMemoria:
      // The second line is that of too many files; users and manuals know it so.
      return u"No hay suficiente memoria para abrir el archivo " + nombre + u"\nDemasiados archivos abiertos";
    default:
      return falla.texto;
  }
}

}  // namespace

void LanzaThrow(std::u16string_view mensaje, int& codigo) {
  logInter(u"uUtil::LanzaThrow...Inicio");
  const bool esServicio = EsProcesoServidor();
  logInter(esServicio ? u"uUtil::LanzaThrow...ES_WEBSERVICE" : u"uUtil::LanzaThrow...!ES_WEBSERVICE");
  logInter(u"uUtil::LanzaThrow...Fin");
  // A service host catches integers and maps them to its own responses.
  if (esServicio) throw codigo;
  // Made before the code is touched: it takes memory.
  Exception error(mensaje);
  codigo = -1;
  throw error;  // NOLINT(cert-err09-cpp,cert-err61-cpp)
}

bool esErrorSesionCaduca(std::u16string_view mensaje) noexcept {
  return Pos(u"La sesión ha caducado", mensaje) != 0;
}

int IntentarAbrirArchivo(std::u16string_view ruta, unsigned int modo, bool mantener, bool archivoEmpresas) {
  const UnicodeString nombre = archivoEmpresas ? u"de empresas" : NombreDe(ruta);
  int manejador = -1;
  const FallaArchivo falla = AbreArchivo(ruta, modo, manejador);
  if (falla.Hubo()) throw Exception(MensajeDe(falla, nombre));
  if (!mantener) CierraArchivo(manejador);
  return manejador;
}

}  // namespace vel

#include "Uutilext/config/NombreSistema.h"

#include "Uutilext/config/Configuracion.h"
#include "Uutilext/config/Rutas.h"
#include "platform/Archivos.h"
#include "platform/Caracteres.h"
#include "platform/PaginaCodigos.h"

namespace vel {

UnicodeString DameRutaVersionVel() {
  const UnicodeString version = DameValor(u"Sistema", u"VersionVel");
  return DameDirectorioArchComun() + u"Sistemas Tavex\\VEL" + (version.empty() ? u"9.00" : version) + u"\\";
}

UnicodeString GetNombreSistema() {
  const UnicodeString carpeta = DameRutaDll();
  const UnicodeString archivo = DameValor(carpeta + u"AlsConfig.ini", u"GENERAL", u"Verfile");
  const std::optional<std::string> bytes = archivo.empty() ? std::nullopt : LeeArchivo(carpeta + archivo);
  if (!bytes.has_value()) return u"VEL";
  const std::string linea = bytes->substr(0, bytes->find_first_of("\r\n"));
  const UnicodeString nombre = Trim(Mayusculas(IsUTF8(linea) ? UTF8ToString(linea) : DeCp1252(linea)));
  return nombre.empty() ? u"VEL" : nombre;
}

}  // namespace vel

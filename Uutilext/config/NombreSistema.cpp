#include "Uutilext/config/NombreSistema.h"

#include "Uutilext/config/Ajustes.h"
#include "Uutilext/config/Configuracion.h"
#include "Uutilext/config/Rutas.h"
#include "platform/Archivos.h"
#include "platform/Caracteres.h"
#include "platform/TextoArchivo.h"

namespace vel {

UnicodeString DameRutaVersionVel() {
  return DameDirectorioArchComun() + u"Sistemas Tavex\\VEL" + Lee(ajustes::kVersionVel) + u"\\";
}

UnicodeString GetNombreSistema() {
  const UnicodeString carpeta = DameRutaDll();
  const UnicodeString archivo = DameValor(carpeta + u"AlsConfig.ini", u"GENERAL", u"Verfile");
  const std::optional<std::string> bytes = archivo.empty() ? std::nullopt : LeeArchivo(carpeta + archivo);
  if (!bytes.has_value()) return u"VEL";
  const UnicodeString texto = DecodificaArchivo(*bytes).texto;
  const UnicodeString nombre = Trim(Mayusculas(texto.substr(0, texto.find_first_of(u"\r\n"))));
  return nombre.empty() ? u"VEL" : nombre;
}

}  // namespace vel

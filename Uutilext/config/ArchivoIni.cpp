#include "Uutilext/config/ArchivoIni.h"

#include <string>

#include "framework/Excepciones.h"
#include "platform/Archivos.h"
#include "platform/TextoArchivo.h"

namespace vel {
namespace {

[[noreturn]] void FallaArchivoIni(std::u16string_view mensaje, std::u16string_view archivo) {
  throw Exception(UnicodeString(mensaje).append(u"\"").append(archivo).append(
      u"\"\nCompruebe que tenga los permisos necesarios."));
}

}  // namespace

TextoIni LeeIni(std::u16string_view archivo) {
  const std::optional<std::string> bytes = LeeArchivo(archivo);
  return bytes.has_value() ? TextoIni(DecodificaArchivo(*bytes).texto) : TextoIni();
}

TextoIni LeeIniEntero(std::u16string_view archivo) {
  std::string bytes;
  const FallaArchivo falla = LeeArchivo(archivo, bytes);
  const bool falta = falla.clase == ClaseFalla::NoExiste || falla.clase == ClaseFalla::RutaNoExiste;
  if (falla.Hubo() && !falta) FallaArchivoIni(u"No se puede leer el archivo ", archivo);
  return TextoIni(DecodificaArchivo(bytes).texto);
}

void CambiaIni(std::u16string_view archivo, std::u16string_view mensaje,
               const std::function<void(TextoIni&)>& cambio) {
  const CandadoArchivo candado(archivo);
  if (candado.Falla().Hubo()) FallaArchivoIni(mensaje, archivo);
  std::string bytes;
  const FallaArchivo lectura = LeeArchivo(archivo, bytes);
  if (lectura.Hubo() && lectura.clase != ClaseFalla::NoExiste) FallaArchivoIni(mensaje, archivo);
  TextoArchivo leido = DecodificaArchivo(bytes);
  if (!SeReescribeIgual(bytes, leido)) FallaArchivoIni(mensaje, archivo);
  TextoIni texto(leido.texto);
  cambio(texto);
  if (texto.Texto() == leido.texto) return;
  leido.texto = texto.Texto();
  if (ReemplazaArchivo(archivo, CodificaArchivo(leido)).Hubo()) FallaArchivoIni(mensaje, archivo);
}

}  // namespace vel

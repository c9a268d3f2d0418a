#include "Uutilext/config/ArchivoIni.h"

#include <optional>
#include <string>

#include "Uutilext/config/BytesIni.h"
#include "framework/Excepciones.h"
#include "platform/Archivos.h"
#include "platform/TextoArchivo.h"

namespace vel {
namespace {

// The message that programs of the suite know, whatever the fault.
void ExigeIni(const FallaArchivo& falla, std::u16string_view mensaje, std::u16string_view archivo) {
  if (!falla.Hubo()) return;
  throw Exception(UnicodeString(mensaje).append(u"\"").append(archivo).append(
      u"\"\nCompruebe que tenga los permisos necesarios."));
}

// Gives the file the bytes that `cambio` makes of the present ones (of none, when it is missing), while no
// other program of the suite does the same. Without bytes the file cannot be written back as it was.
FallaArchivo CambiaBytes(std::u16string_view archivo,
                         const std::function<std::optional<std::string>(const std::string&)>& cambio) {
  const CandadoArchivo candado(archivo);
  if (candado.Falla().Hubo()) return candado.Falla();
  std::string bytes;
  FallaArchivo lectura = LeeArchivo(archivo, bytes);
  if (lectura.Hubo() && lectura.clase != ClaseFalla::NoExiste) return lectura;
  const std::optional<std::string> cambiados = cambio(bytes);
  if (!cambiados.has_value()) return {ClaseFalla::Otra, u"el archivo está dañado"};
  return *cambiados != bytes ? ReemplazaArchivo(archivo, *cambiados) : FallaArchivo{};
}

std::optional<std::string> CambiaTexto(const std::string& bytes,
                                       const std::function<void(TextoIni&)>& cambio) {
  TextoArchivo leido = DecodificaArchivo(bytes);
  if (!SeReescribeIgual(bytes, leido)) return std::nullopt;
  TextoIni texto(leido.texto);
  cambio(texto);
  if (texto.Texto() == leido.texto) return bytes;
  leido.texto = texto.Texto();
  return CodificaArchivo(leido);
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
  if (!falta) ExigeIni(falla, u"No se puede leer el archivo ", archivo);
  return TextoIni(DecodificaArchivo(bytes).texto);
}

UnicodeString ValorDeIni(std::u16string_view archivo, std::u16string_view seccion,
                         std::u16string_view clave) {
  const std::optional<std::string> bytes = LeeArchivo(archivo);
  return bytes.has_value() ? BytesIni(*bytes).Valor(seccion, clave).value_or(UnicodeString())
                           : UnicodeString();
}

FallaArchivo IntentaCambiarIni(std::u16string_view archivo, const std::function<void(TextoIni&)>& cambio) {
  return CambiaBytes(archivo, [&cambio](const std::string& bytes) { return CambiaTexto(bytes, cambio); });
}

void CambiaIni(std::u16string_view archivo, std::u16string_view mensaje,
               const std::function<void(TextoIni&)>& cambio) {
  ExigeIni(IntentaCambiarIni(archivo, cambio), mensaje, archivo);
}

void PonEnIni(std::u16string_view archivo, std::u16string_view seccion, std::u16string_view clave,
              std::u16string_view valor) {
  const FallaArchivo falla = CambiaBytes(archivo, [&](const std::string& bytes) {
    std::optional<std::string> cambiado = BytesIni(bytes).ConValor(seccion, clave, valor);
    return cambiado.has_value()
               ? cambiado
               : CambiaTexto(bytes, [&](TextoIni& texto) { texto.Pon(seccion, clave, valor); });
  });
  ExigeIni(falla, kNoSePuedeEscribir, archivo);
}

}  // namespace vel

#include "Uutilext/config/Configuracion.h"

#include <utility>
#include <vector>

#include "Uutilext/config/ArchivoIni.h"
#include "Uutilext/process/Proceso.h"
#include "platform/Archivos.h"
#include "platform/Caracteres.h"
#include "platform/Carpetas.h"
#include "version/Version.h"

namespace vel {

UnicodeString DameArchivoConfig() {
  const UnicodeString carpeta = CarpetaDelProceso();
  // A folder that cannot be made shows when something is written: reading goes on without it.
  if (!ExisteCarpeta(carpeta)) CreaCarpeta(carpeta);
  UnicodeString archivo = carpeta + DameNombreArchIni();
  if (!EsProcesoServidor() && !ExisteArchivo(archivo)) {
    // The seed is a path without a file name: it is copied only where that path itself names a file.
    const UnicodeString semilla = DameCarpetasConocidas().datosComunes + u"\\Tavex\\";
    if (ExisteArchivo(semilla)) CopiaArchivo(semilla, archivo, false);
  }
  return archivo;
}

UnicodeString DameValor(std::u16string_view archivo, std::u16string_view seccion, std::u16string_view clave) {
  return ValorDeIni(archivo, seccion, clave);
}

UnicodeString DameValor(std::u16string_view seccion, std::u16string_view clave) {
  return DameValor(DameArchivoConfig(), seccion, clave);
}

void EscribeValor(std::u16string_view archivo, std::u16string_view seccion, std::u16string_view clave,
                  std::u16string_view valor) {
  PonEnIni(archivo, seccion, clave, valor);
}

void EscribeValor(std::u16string_view seccion, std::u16string_view clave, std::u16string_view valor) {
  EscribeValor(DameArchivoConfig(), seccion, clave, valor);
}

void BorraSeccion(std::u16string_view archivo, std::u16string_view seccion) {
  CambiaIni(archivo, kNoSePuedeActualizar, [&](TextoIni& texto) { texto.Borra(seccion); });
}

UnicodeString GetProfileStringW(std::u16string_view archivo, std::u16string_view seccion,
                                std::u16string_view clave) {
  return DameValor(archivo, seccion, clave);
}

UnicodeString DameValorSinComillas(std::u16string_view archivo, std::u16string_view seccion,
                                   std::u16string_view clave) {
  return UnicodeString(QuitaComillas(DameValor(archivo, seccion, clave)));
}

void DameValoresSeccion(std::u16string_view archivo, std::u16string_view seccion, TStringList& lista) {
  std::vector<UnicodeString> lineas;
  for (const auto& [clave, valor] : LeeIni(archivo).Seccion(seccion)) {
    lineas.push_back(UnicodeString(clave).append(u"=").append(QuitaComillas(valor)));
  }
  lista.SetStrings(std::move(lineas));
}

void DameDatosDeSeccion(std::u16string_view archivo, std::u16string_view seccion, TStringList& lista) {
  std::vector<UnicodeString> claves;
  for (auto& [clave, valor] : LeeIni(archivo).Seccion(seccion)) claves.push_back(std::move(clave));
  lista.SetStrings(std::move(claves));
}

bool DameValorBooleano(std::u16string_view texto) {
  const UnicodeString mayusculas = Mayusculas(texto);
  return mayusculas == u"T" || mayusculas == u"TRUE";
}

UnicodeString DameCadena(bool valor) { return valor ? u"T" : u"F"; }

}  // namespace vel

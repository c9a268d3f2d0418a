#include "Uutilext/config/Configuracion.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include "Uutilext/config/ArchivoIni.h"
#include "Uutilext/config/Rutas.h"
#include "Uutilext/diagnostics/Traza.h"
#include "Uutilext/process/Proceso.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "platform/Archivos.h"
#include "platform/Caracteres.h"
#include "platform/Carpetas.h"
#include "version/Version.h"

namespace vel {
namespace {

struct NombreDriver {
  TiposDeDriver tipo;
  std::u16string_view nombre;
};

constexpr NombreDriver kDrivers[] = {
    {TiposDeDriver::DEVARTSQLSERVER, u"DEVARTSQLSERVER"},
    {TiposDeDriver::DEVARTINTERBASE, u"DEVARTINTERBASE"},
    {TiposDeDriver::DEVARTSQLSERVERCOMPACT, u"DEVARTSQLSERVERCOMPACT"},
};

constexpr std::u16string_view kSistema = u"Sistema";
constexpr int kTamPaquete = 50;

UnicodeString SeccionEmpresa(int numEmp) { return u"Empresa" + IntToStr(numEmp); }

// Switches written "true" or "false".
bool LeeInterruptor(std::u16string_view seccion, std::u16string_view clave) {
  return Minusculas(DameValor(seccion, clave)) == u"true";
}

void EscribeInterruptor(std::u16string_view seccion, std::u16string_view clave, bool valor) {
  EscribeValor(seccion, clave, valor ? u"true" : u"false");
}

}  // namespace

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
  const TextoIni texto = LeeIni(archivo);
  return UnicodeString(texto.Valor(seccion, clave).value_or(std::u16string_view()));
}

UnicodeString DameValor(std::u16string_view seccion, std::u16string_view clave) {
  return DameValor(DameArchivoConfig(), seccion, clave);
}

void EscribeValor(std::u16string_view archivo, std::u16string_view seccion, std::u16string_view clave,
                  std::u16string_view valor) {
  CambiaIni(archivo, kNoSePuedeEscribir, [&](TextoIni& texto) { texto.Pon(seccion, clave, valor); });
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

TiposDeDriver DameTipoDriverEnum(std::u16string_view texto) {
  const auto* const it =
      std::find_if(std::begin(kDrivers), std::end(kDrivers),
                   [nombre = Mayusculas(texto)](const NombreDriver& d) { return d.nombre == nombre; });
  return it == std::end(kDrivers) ? TiposDeDriver::DEVARTINTERBASE : it->tipo;
}

UnicodeString DameTipoDriverStr(TiposDeDriver tipo) {
  const auto* const it = std::find_if(std::begin(kDrivers), std::end(kDrivers),
                                      [tipo](const NombreDriver& d) { return d.tipo == tipo; });
  return it == std::end(kDrivers) ? UnicodeString() : UnicodeString(it->nombre);
}

UnicodeString DameDriverDefault() {
  return DameValor(DameRutaVELNG() + u"Alias.ini", u"Estandar", u"DriverName");
}

UnicodeString DameDriver(int numEmp) {
  const UnicodeString driver = DameValor(SeccionEmpresa(numEmp), u"Driver");
  return driver.empty() ? u"PARADOX" : driver;
}

void EscribeDriver(int numEmp, std::u16string_view driver) {
  EscribeValor(SeccionEmpresa(numEmp), u"Driver", driver);
}

void EscribeDirDatos(int numEmp, std::u16string_view carpeta) {
  EscribeValor(SeccionEmpresa(numEmp), u"RutaDatos", carpeta);
}

bool DameTipoAcceso() {
  logInter(u"uUtil::DameTipoAcceso...Inicio");
  const UnicodeString tipo = DameValor(kSistema, u"Acceso");
  logInter(u"uUtil::DameTipoAcceso...strTipoAcceso " + tipo);
  const bool remoto = Mayusculas(tipo) == u"REMOTO";
  logInter(u"uUtil::DameTipoAcceso...Fin");
  return remoto;
}

void EscribeTipoAcceso(ENUM_TIP_ACCESO tipo) {
  switch (tipo) {
    case ENUM_TIP_ACCESO::LOCAL:
      return EscribeValor(kSistema, u"Acceso", u"LOCAL");
    case ENUM_TIP_ACCESO::REMOTO:
      return EscribeValor(kSistema, u"Acceso", u"REMOTO");
  }
  throw Exception(u"Tipo de Acceso Inválido");
}

int DameTamPaquete() {
  std::int32_t registros = 0;
  const bool leido = TryStrToInt(DameValor(u"SISTEMA", u"tamPaquete"), registros);
  return leido && registros != 0 ? registros : kTamPaquete;
}

void EscribeTamPaquete(int registros) { EscribeValor(u"SISTEMA", u"tamPaquete", IntToStr(registros)); }

bool DameRegsXDemanda() { return StrToBool(DameValor(u"SISTEMA", u"RegsXDemanda")); }

void EscribeRegsXDemanda(bool valor) { EscribeValor(u"SISTEMA", u"RegsXDemanda", valor ? u"-1" : u"0"); }

bool DameMultimoneda(int numEmp) { return LeeInterruptor(SeccionEmpresa(numEmp), u"Multimoneda"); }

void EscribeMultimoneda(int numEmp, bool valor) {
  EscribeInterruptor(SeccionEmpresa(numEmp), u"Multimoneda", valor);
}

bool DameValEnLinea() { return LeeInterruptor(kSistema, u"ValEnLinea"); }

void EscribeValEnLinea(bool valor) { EscribeInterruptor(kSistema, u"ValEnLinea", valor); }

bool DameModificaAlmacen() { return LeeInterruptor(kSistema, u"ModificaAlmacen"); }

void EscribeModificaAlmacen(bool valor) { EscribeInterruptor(kSistema, u"ModificaAlmacen", valor); }

bool DameCxCContraDocto(int numEmp) { return LeeInterruptor(SeccionEmpresa(numEmp), u"CxCContraDocto"); }

void EscribeCxCContraDocto(int numEmp, bool valor) {
  EscribeInterruptor(SeccionEmpresa(numEmp), u"CxCContraDocto", valor);
}

bool DameMultiAlmacen(int numEmp) { return LeeInterruptor(SeccionEmpresa(numEmp), u"Multialmacen"); }

void EscribeMultiAlmacen(int numEmp, bool valor) {
  EscribeInterruptor(SeccionEmpresa(numEmp), u"Multialmacen", valor);
}

int DameAlmacenPredeter(int numEmp) {
  return StrToInt(DameValor(SeccionEmpresa(numEmp), u"AlmacenPredeterminado"));
}

void EscribeAlmacenPredeter(int numEmp, int almacen) {
  EscribeValor(SeccionEmpresa(numEmp), u"AlmacenPredeterminado", IntToStr(almacen));
}

}  // namespace vel

#pragma once

#include <cstdint>
#include <string_view>

#include "framework/TStringList.h"
#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// Database driver kind; other values are legal input.
enum class TiposDeDriver : std::int32_t {
  DEVARTSQLSERVER = 2,
  DEVARTINTERBASE = 5,
  DEVARTSQLSERVERCOMPACT = 6
};

/// Where a workstation works; other values are legal input.
enum class ENUM_TIP_ACCESO : std::int32_t { LOCAL = 0, REMOTO = 1 };

/// Settings files. Names of sections and keys match without regard to case. Readers give the empty text for
/// what is missing: file, section or key. Every call reads the file anew.
///
/// Writers keep everything else in the file, and programs that write one file at once lose no change. They
/// raise Exception naming the file when it cannot be written, and EInvalidOperation for a text that an INI
/// file cannot hold (a line break); the file is then as it was.

/// Path of the user's settings file, computed anew at each call: in the user's application data, or beside
/// the library in a process that loaded a server or mobile module. Creates the folder, and outside those
/// processes copies the machine-wide file over when the user has none and the machine-wide path names a file.
UTILVEL90_EXPORT UnicodeString DameArchivoConfig();

/// The value as stored, quotes included; without a file name, of DameArchivoConfig.
UTILVEL90_EXPORT UnicodeString DameValor(std::u16string_view archivo, std::u16string_view seccion,
                                         std::u16string_view clave);
UTILVEL90_EXPORT UnicodeString DameValor(std::u16string_view seccion, std::u16string_view clave);
/// Writes a value; without a file name into that of DameArchivoConfig.
UTILVEL90_EXPORT void EscribeValor(std::u16string_view archivo, std::u16string_view seccion,
                                   std::u16string_view clave, std::u16string_view valor);
UTILVEL90_EXPORT void EscribeValor(std::u16string_view seccion, std::u16string_view clave,
                                   std::u16string_view valor);
/// Erases a section with all its keys.
UTILVEL90_EXPORT void BorraSeccion(std::u16string_view archivo, std::u16string_view seccion);
/// The same as DameValor.
UTILVEL90_EXPORT UnicodeString GetProfileStringW(std::u16string_view archivo, std::u16string_view seccion,
                                                 std::u16string_view clave);

/// The value without one pair of surrounding quotes.
///
///     stored A="uno":   DameValor gives "uno" with its quotes, DameValorSinComillas without
UTILVEL90_EXPORT UnicodeString DameValorSinComillas(std::u16string_view archivo, std::u16string_view seccion,
                                                    std::u16string_view clave);
/// Fill the list with a section's lines, "key=value" (values without their quotes), or with its key names.
UTILVEL90_EXPORT void DameValoresSeccion(std::u16string_view archivo, std::u16string_view seccion,
                                         TStringList& lista);
UTILVEL90_EXPORT void DameDatosDeSeccion(std::u16string_view archivo, std::u16string_view seccion,
                                         TStringList& lista);

/// True for "T" and "TRUE" in any case: the third spelling of a boolean, in texts that programs keep
/// themselves. No setting below is read with it.
UTILVEL90_EXPORT bool DameValorBooleano(std::u16string_view texto);
/// "T" or "F".
UTILVEL90_EXPORT UnicodeString DameCadena(bool valor);
/// By name in any case; an unknown one gives DEVARTINTERBASE.
UTILVEL90_EXPORT TiposDeDriver DameTipoDriverEnum(std::u16string_view texto);
/// The name; empty for a value without one.
UTILVEL90_EXPORT UnicodeString DameTipoDriverStr(TiposDeDriver tipo);
/// "DriverName" of section "Estandar" in "Alias.ini" of the engine folder.
UTILVEL90_EXPORT UnicodeString DameDriverDefault();

/// Settings of the user's file. `numEmp` is the company's number. Each switch keeps the spelling that it was
/// created with, which the suite's other programs read:
///
///     "-1" or "0"        RegsXDemanda
///     "true" or "false"  the others
///
/// A switch of "true" is on for that word in any case and off for anything else, "1" among it.
///
/// An EConvertError names file, section and key.

/// "PARADOX" when empty.
UTILVEL90_EXPORT UnicodeString DameDriver(int numEmp);
/// Name of the database driver.
UTILVEL90_EXPORT void EscribeDriver(int numEmp, std::u16string_view driver);
/// "RutaDatos", which DameValor reads. It is not the local data folder of Rutas.h (DameDirDatosLocal).
UTILVEL90_EXPORT void EscribeDirDatos(int numEmp, std::u16string_view carpeta);
/// True when access is remote ("REMOTO" in any case); anything else is local.
UTILVEL90_EXPORT bool DameTipoAcceso();
/// Writes "LOCAL" or "REMOTO". Another value raises Exception ("Tipo de Acceso Inválido"), and nothing is
/// written.
UTILVEL90_EXPORT void EscribeTipoAcceso(ENUM_TIP_ACCESO tipo);
/// Records per packet; 50 when missing, no integer, or 0. "-7" gives -7, "abc" gives 50.
UTILVEL90_EXPORT int DameTamPaquete();
/// Writes the number as it is given.
UTILVEL90_EXPORT void EscribeTamPaquete(int registros);
/// Written "-1" or "0". Raises EConvertError when missing or malformed.
UTILVEL90_EXPORT bool DameRegsXDemanda();
UTILVEL90_EXPORT void EscribeRegsXDemanda(bool valor);

/// A switch of the program or, with a number, of a company; written "true" or "false".
UTILVEL90_EXPORT bool DameMultimoneda(int numEmp);
UTILVEL90_EXPORT void EscribeMultimoneda(int numEmp, bool valor);
UTILVEL90_EXPORT bool DameValEnLinea();
UTILVEL90_EXPORT void EscribeValEnLinea(bool valor);
UTILVEL90_EXPORT bool DameModificaAlmacen();
UTILVEL90_EXPORT void EscribeModificaAlmacen(bool valor);
UTILVEL90_EXPORT bool DameCxCContraDocto(int numEmp);
UTILVEL90_EXPORT void EscribeCxCContraDocto(int numEmp, bool valor);
UTILVEL90_EXPORT bool DameMultiAlmacen(int numEmp);
UTILVEL90_EXPORT void EscribeMultiAlmacen(int numEmp, bool valor);

/// Raises EConvertError when missing or malformed.
UTILVEL90_EXPORT int DameAlmacenPredeter(int numEmp);
UTILVEL90_EXPORT void EscribeAlmacenPredeter(int numEmp, int almacen);

}  // namespace vel

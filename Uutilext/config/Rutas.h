#pragma once

#include <cstdint>
#include <string_view>

#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// Kind of company folder, by number, 0 to 24; other values are legal input.
enum class ENUM_RUTA : std::int32_t {};

/// Folders of the installation and of its companies. Every function gives a full path that ends in a
/// backslash unless it says otherwise; none keeps anything. Without the registry's common folder paths begin
/// at "Sistemas Tavex\".

/// Folder of this library's own file.
UTILVEL90_EXPORT UnicodeString DameRutaDll();
/// The common files folder that the installation names in the registry; "c:\sistemas\tavex\comunes\" when its
/// key names none, empty when there is no key.
UTILVEL90_EXPORT UnicodeString DameDirectorioArchComun();
/// Names it. Raises Exception when the registry cannot be written.
UTILVEL90_EXPORT void EscribeDirectorioArchComun(std::u16string_view carpeta);
/// A text of the product's registry key; empty when there is none.
UTILVEL90_EXPORT UnicodeString DameValorRegistro(std::u16string_view nombre);
UTILVEL90_EXPORT UnicodeString DameDirArchComunLibrerias();
/// The engine folder: "Sistemas Tavex\" and the product label in the common folder.
UTILVEL90_EXPORT UnicodeString DameRutaVELNG();
UTILVEL90_EXPORT UnicodeString DameRutaDatos();
UTILVEL90_EXPORT UnicodeString DameDirectorioReportes();
/// The company catalog, a file.
UTILVEL90_EXPORT UnicodeString DameRutaArchEmpresas();
UTILVEL90_EXPORT UnicodeString DameRutaPlantillasCorreo();
/// The company's local data folder as the settings name it, else "Ejemplos" in the engine folder, without a
/// trailing backslash.
UTILVEL90_EXPORT UnicodeString DameDirDatosLocal(int numEmp);
UTILVEL90_EXPORT void EscribeDirDatosLocal(int numEmp, std::u16string_view carpeta);
/// The number in decimal, 1 to 9 with a "0" before it.
UTILVEL90_EXPORT UnicodeString DameNumEmpFormat(int numEmp);
/// The company folder of a kind, created with its parents when missing, except data (7) and templates (14 to
/// 17). Empty for a kind that does not exist.
UTILVEL90_EXPORT UnicodeString DameRutaDatosEmpresa(int numEmp, ENUM_RUTA ruta);
UTILVEL90_EXPORT UnicodeString DameRutaRespaldosEmpresa(int numEmp);
UTILVEL90_EXPORT UnicodeString DameRutaCertificados(int numEmp);
UTILVEL90_EXPORT UnicodeString DameRutaAddendas(int numEmp);
UTILVEL90_EXPORT UnicodeString DameRutaNamespaces(int numEmp);

}  // namespace vel

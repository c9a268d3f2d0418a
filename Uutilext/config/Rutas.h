#pragma once

#include <cstdint>
#include <string_view>

#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// Kind of folder, by number; other values are legal input. E is the engine folder, F the company's within it
/// ("Empresa" and its number).
///
///      0, 1  F                           13  F "Reportes SAT\"
///      2  F "Consultas\"                 14  E "Plantillas\" *
///      3  F "Consultas personalizadas\"  15  E "Plantillas\Reportes\" *
///      4  F "Estadisticas\"              16  E "Plantillas\Estadisticas\" *
///      5  F "AyudasF2\"                  17  E "Plantillas\Consultas personalizadas\" *
///      6  F "Reportes\"                  18  E "Respaldos\"
///      7  F "Datos\" *                   19  E "Respaldos\Empresa" and the number
///      8  F "Exportacion\"               20  E "Plantillas\Comprobantes\"
///      9  F "Interfaz Kolo\"             21  F "Comprobantes\"
///     10  F "Interfaz Caudal\"           22  E "LoNuevo\"
///     11  F "Imagenes\"                  23  F "Comprobantes\Plantillas\"
///     12  F "Documentos modelo\"         24  F "Analisis datos\"
enum class ENUM_RUTA : std::int32_t {};

/// Folders of the installation and of its companies. Every function gives a full path that ends in a
/// backslash unless it says otherwise; none keeps anything. Without the registry's common folder paths begin
/// at "Sistemas Tavex\", below whatever folder the process stands in: name one first (facil::Instala).
///
/// Getters that create folders: DameRutaDatosEmpresa here, DameArchivoConfig and DameArchConexUsu for the
/// user's own. The others only give names.

/// Folder of this library's own file. Raises Exception when the system does not tell it.
UTILVEL90_EXPORT UnicodeString DameRutaDll();
/// The common files folder that the installation names in the registry; "c:\sistemas\tavex\comunes\" when its
/// key names none, empty when there is no key. Raises EStreamError when the registry cannot be read, as when
/// too many files are open; so do all functions here that begin at that folder.
UTILVEL90_EXPORT UnicodeString DameDirectorioArchComun();
/// Names it. Raises Exception when the registry cannot be written.
UTILVEL90_EXPORT void EscribeDirectorioArchComun(std::u16string_view carpeta);
/// A text of the product's registry key; empty when there is none.
UTILVEL90_EXPORT UnicodeString DameValorRegistro(std::u16string_view nombre);
/// The same as DameDirectorioArchComun.
UTILVEL90_EXPORT UnicodeString DameDirArchComunLibrerias();
/// The engine folder: "Sistemas Tavex\" and the product label in the common folder.
UTILVEL90_EXPORT UnicodeString DameRutaVELNG();
/// "Datos\" in the engine folder, where the reports stand too.
UTILVEL90_EXPORT UnicodeString DameRutaDatos();
UTILVEL90_EXPORT UnicodeString DameDirectorioReportes();
/// The company catalog, a file.
UTILVEL90_EXPORT UnicodeString DameRutaArchEmpresas();
/// The folder of mail templates, in the engine folder.
UTILVEL90_EXPORT UnicodeString DameRutaPlantillasCorreo();
/// The company's local data folder as the settings name it, else "Ejemplos" in the engine folder, without a
/// trailing backslash.
UTILVEL90_EXPORT UnicodeString DameDirDatosLocal(int numEmp);
UTILVEL90_EXPORT void EscribeDirDatosLocal(int numEmp, std::u16string_view carpeta);
/// The number in decimal, 1 to 9 with a "0" before it.
///
///     DameNumEmpFormat(7) == u"07"    DameNumEmpFormat(12) == u"12"    DameNumEmpFormat(0) == u"0"
UTILVEL90_EXPORT UnicodeString DameNumEmpFormat(int numEmp);
/// The folder of a kind, created with its parents when missing unless it has a star in the table. Empty for a
/// kind that does not exist.
UTILVEL90_EXPORT UnicodeString DameRutaDatosEmpresa(int numEmp, ENUM_RUTA ruta);
/// Folders of a company, none of them created: its backups in the engine folder; its certificates in the
/// common folder ("Empresa 03\Cerficados\" in it: existing installations use this spelling); its addenda and
/// namespaces below its own folder.
UTILVEL90_EXPORT UnicodeString DameRutaRespaldosEmpresa(int numEmp);
UTILVEL90_EXPORT UnicodeString DameRutaCertificados(int numEmp);
UTILVEL90_EXPORT UnicodeString DameRutaAddendas(int numEmp);
UTILVEL90_EXPORT UnicodeString DameRutaNamespaces(int numEmp);

}  // namespace vel

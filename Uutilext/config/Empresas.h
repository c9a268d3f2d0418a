#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "framework/TClientDataSet.h"
#include "framework/TStringList.h"
#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// The company catalog, "Empresas.xml" in the engine folder (DameRutaArchEmpresas): a client data-set XML
/// packet with one record a company and the fields "NumEmp" (integer, the key), "Nombre_Empresa",
/// "RutaDatos", "Driver", "RutaTrabajo", "VersionBD" and "DatosBD". Beside it stand the backup, whose name
/// ends ".bak" instead of ".xml", and the copy of a restored backup, " copia.bak".
///
/// Every change replaces the file in one step, so a reader in another process sees the old catalog or the
/// new one, never part of one; writers wait for each other.

/// Loads the catalog into `empresas`, creating the data set when the pointer is empty. An empty `ruta` means
/// DameRutaArchEmpresas.
///
/// When loading fails: a catalog that is missing while its backup exists is restored from the backup (which
/// is kept as " copia.bak" too); one that exists is given 35 milliseconds, for whoever is writing it. Then
/// it is loaded once more, and a second failure reaches the caller (EStreamError when the file cannot be
/// read, EDatabaseError naming file and line when it is no packet); a data set given is then as it was.
UTILVEL90_EXPORT void AbreArchivoEmpresa(std::unique_ptr<TClientDataSet>& empresas,
                                         std::u16string_view ruta = {});

/// Fills the list with a line for each company, in record order: its number, "=" and its name.
///
///     1=Comercial Peña
UTILVEL90_EXPORT void DameEmpresasVEL(TStringList& lista);

/// Name, driver and database location of a company; empty when the catalog does not hold it.
UTILVEL90_EXPORT UnicodeString DameNombreEmpresa(int numEmp);
UTILVEL90_EXPORT UnicodeString DameDriverBaseDatos(int numEmp);
UTILVEL90_EXPORT UnicodeString DameAliasBaseDatos(int numEmp);

/// Working folder of the company whose number the text gives, or its data folder when that is empty;
/// `datosBD` receives its database information. Both empty when the catalog does not hold it.
UTILVEL90_EXPORT UnicodeString DameRutaTrabajoEmpresa(std::u16string_view numEmp, UnicodeString& datosBD);

/// Appends a company, after copying the catalog as it stands to its backup. A catalog that cannot be loaded
/// raises as AbreArchivoEmpresa does, and neither file is touched.
UTILVEL90_EXPORT void AgregaEmpresaXML(int numEmp, std::u16string_view rutaDatos, std::u16string_view driver,
                                       std::u16string_view nombre, std::u16string_view rutaTrabajo,
                                       std::u16string_view versionBD);

/// Renames a company, after copying the catalog as it stands to its backup. A company that the catalog does
/// not hold raises EInvalidOperation, and nothing is written.
UTILVEL90_EXPORT void ActualizaXMLNombreEmpresa(int numEmp, std::u16string_view nombre);

/// Loads the catalog, lets `cambio` change its records, and saves it after copying the catalog as it stood to
/// its backup, with no other writer in between. What `cambio` throws reaches the caller, and neither file is
/// touched; it must not call the other writers, which would wait for it.
UTILVEL90_EXPORT void CambiaCatalogoEmpresas(const std::function<void(TClientDataSet& empresas)>& cambio);

}  // namespace vel

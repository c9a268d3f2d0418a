#pragma once

#include <cstdint>
#include <vector>

#include "facil/Texto.h"
#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel::facil {

/// What Instala makes or finds.
enum class ENUM_OBRA : std::uint8_t { CARPETA, REGISTRO, AJUSTE, CATALOGO };

/// A piece of the installation, made or found.
struct ObraInstalacion {
  /// What it is.
  ENUM_OBRA clase = ENUM_OBRA::CARPETA;
  /// A folder or a file by its full path in the suite's notation (RutaNativa gives the system's); a setting
  /// as "[Sistema] tamPaquete=50", with the value that it has now.
  UnicodeString nombre;
  /// True when this call made it, false when it was there.
  bool nueva = false;
};

/// What Instala did, and where all lies from then on.
struct InformeInstalacion {
  /// As DameDirectorioArchComun and DameRutaVELNG give them from now on.
  UnicodeString carpetaComun;
  /// The engine folder.
  UnicodeString carpetaMotor;
  /// The settings file of the user who called.
  UnicodeString archivoAjustes;
  /// The company catalog.
  UnicodeString archivoEmpresas;
  /// In the order in which they were made.
  std::vector<ObraInstalacion> obras;

  /// Whether the call changed anything.
  UTILVEL90_EXPORT bool HuboCambios() const noexcept;
  /// A line for each piece of work, "Hecho: " or "Ya estaba: " and its name, ended by "\n".
  UTILVEL90_EXPORT UnicodeString Lineas() const;
};

/// What to do when the registry names another common folder already.
enum class ENUM_OTRA_COMUN : std::uint8_t { SE_RECHAZA, SE_CAMBIA };

/// Sets this machine up for the suite's programs: creates the common files folder, names it in the registry,
/// and creates in it the folders that all companies share, the settings of the user who calls (those that the
/// file does not have: local access, packets of 50 records, none on demand, two switches off) and a company
/// catalog, empty, or restored where only its backup is left. What the getters of Rutas.h create afterwards
/// then lies inside that folder. docs/installation.md tells what each file and folder is for.
///
/// What is there stays as it is, so a second call changes nothing, and one after a failure goes on where that
/// stopped. The settings are each user's own: every user may call it, and whoever finds the machine set up
/// needs no right to write the registry.
///
///     InformeInstalacion informe = Instala("/srv/tavex");
///     informe.carpetaComun        // u"/srv/tavex\\"
///     Instala("/srv/tavex").HuboCambios() == false
///
/// `carpetaComun` is a full path, native or in the suite's notation; separators at its end do not count.
/// Raises EInvalidOperation for one that is not full or has a control character, and when the registry names
/// another folder, unless `otra` says that it is to name this one: nothing is then made, and the tree of the
/// other stays. Raises EStreamError, or Exception from registry and settings, naming what cannot be made or
/// read; a catalog that exists and does not load raises as AbreArchivoEmpresa does and is left alone.
UTILVEL90_EXPORT InformeInstalacion Instala(const Texto& carpetaComun,
                                            ENUM_OTRA_COMUN otra = ENUM_OTRA_COMUN::SE_RECHAZA);

}  // namespace vel::facil

#pragma once

#include <cstddef>
#include <vector>

#include "facil/Texto.h"
#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel::facil {

/// The company catalog of the installation (DameRutaArchEmpresas), by records. Its file, its backup and what
/// readers and writers of it are promised stand in Uutilext/config/Empresas.h.

/// A company as the catalog holds it.
struct Empresa {
  /// The key, 0 or more; the company's folders are named after it.
  int numero = 0;
  /// Its name, for users.
  UnicodeString nombre = {};
  /// Data folder or location of the database.
  UnicodeString rutaDatos = {};
  /// Name of the database driver (DameTipoDriverStr).
  UnicodeString driver = {};
  /// Working folder; the data folder is used where it is empty.
  UnicodeString rutaTrabajo = {};
  /// Version of the structure of the database.
  UnicodeString versionBD = {};
  /// Information on the database, for the programs that open it.
  UnicodeString datosBD = {};
  friend bool operator==(const Empresa&, const Empresa&) = default;
};

/// Creates an empty catalog, and the engine folder when it is missing. False, and nothing is changed, when
/// there is a catalog; where only its backup is left the catalog is restored from it, which gives true. A
/// catalog or a backup that does not load raises as AbreArchivoEmpresa does; EStreamError when the file
/// cannot be written.
UTILVEL90_EXPORT bool CreaCatalogo();

/// The companies of the installation's catalog, or of the one in `archivo`, in its order. Raises as
/// AbreArchivoEmpresa does.
UTILVEL90_EXPORT std::vector<Empresa> ListaEmpresas(const Texto& archivo = u"");

/// Appends a company. Raises EInvalidOperation, and changes nothing, when the catalog holds its number
/// ("El catálogo ya contiene la empresa 3."), or when the number is negative or the name empty.
///
///     AgregaEmpresa({.numero = 3, .nombre = u"Comercial Peña", .rutaDatos = u"C:\\Datos3"});
UTILVEL90_EXPORT void AgregaEmpresa(const Empresa& empresa);

/// Renames the company of that number. Raises EInvalidOperation, and changes nothing, when the catalog does
/// not hold it or the name is empty.
UTILVEL90_EXPORT void RenombraEmpresa(int numero, const Texto& nombre);

/// How the catalog or its backup stands.
struct EstadoCatalogo {
  /// Whether the file is there.
  bool existe = false;
  /// How many companies it holds; 0 when it cannot be read.
  std::size_t empresas = 0;
  /// What is wrong with it, for the user; empty for a sound file and for one that is not there.
  UnicodeString problema;
  /// Whether it is there and sound.
  bool Sirve() const noexcept { return existe && problema.empty(); }
};

/// What RevisaCatalogo finds.
struct RevisionCatalogo {
  /// The catalog itself.
  EstadoCatalogo catalogo;
  /// Its backup, the catalog before the last change.
  EstadoCatalogo respaldo;
};

/// Looks at the catalog and its backup and changes neither: whether each can be read, is a catalog, and has
/// no number twice. Raises nothing for what it finds.
UTILVEL90_EXPORT RevisionCatalogo RevisaCatalogo();

/// Puts the backup in the catalog's place, which takes back the last change too. Besides the " copia.bak"
/// that every restoring leaves, the catalog as it stood, broken or not, is kept as "Empresas anterior.xml".
/// Raises EInvalidOperation, and changes nothing, when there is no backup or it is not sound.
UTILVEL90_EXPORT void RestauraCatalogo();

}  // namespace vel::facil

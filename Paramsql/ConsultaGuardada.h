#pragma once

#include <memory>
#include <string_view>

#include "Paramsql/TParametrosFiltro.h"
#include "utilvel90_export.h"

namespace vel {

/// Saves a definition whole, as the one of number 0 of an INI file, in one step: what SaveToIni keeps, and
/// the order, DISTINCT and how letters count in HAVING. LoadFromIni reads the file too, with all of these but
/// DISTINCT.
///
///     DISTINCT                  "Distinct" of section "SELECT"
///     order of the statement    "OrdenadoPor" and "Descendente" of section "Vista1"
///     of a union's partner      the same keys of its section "SELECT1"...
///     letters in HAVING         "Sensitive0"... of section "HAVING"
///
/// What is saved builds the same statement when it is read: EInvalidOperation for a definition that a file
/// would change (blanks around names, a line break), one without a table, or one that cannot be built;
/// EStreamError, with the reason, when the file cannot be written; else raises as SaveToIni. The file is then
/// as it was.
UTILVEL90_EXPORT void GuardaConsulta(const TParametrosFiltro& definicion, std::u16string_view archivo);

/// The definition that GuardaConsulta saved, or SaveToIni with number 0. A file that is missing or holds none
/// raises EInvalidOperation, naming it; else raises as LoadFromIni.
UTILVEL90_EXPORT std::unique_ptr<TParametrosFiltro> LeeConsulta(std::u16string_view archivo);

}  // namespace vel

#pragma once

#include <memory>
#include <string_view>

#include "framework/TClientDataSet.h"
#include "framework/TStringList.h"
#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// Path of the field-label catalog, "EtiqVEL.xml" in the engine folder. All companies share it; the number
/// is not used.
UTILVEL90_EXPORT UnicodeString DameRutaEtiqVEL(int numEmp);

/// The label catalog (a client data-set XML packet: a record a table, found by "Etiqueta", with a nested
/// data set "Campos" of its fields) opened in a new data set; null when the file does not exist. An empty
/// `ruta` means DameRutaEtiqVEL. A file that cannot be read raises EStreamError, one
/// that is no packet EDatabaseError.
UTILVEL90_EXPORT std::unique_ptr<TClientDataSet> DameCDSEtiqVEL(std::u16string_view ruta, int numEmp);

/// Appends to `lista` a line "Campo=Titulo" for each field of the table labelled `etiqueta`, in record
/// order. Taken are the fields that are available, not computed, and visible; hidden ones too when `ocultos`.
/// False, and nothing is added, when the catalog is missing or does not hold the table.
UTILVEL90_EXPORT bool LeeXMLCamposTablasSistema(std::u16string_view etiqueta, TStringList& lista,
                                                bool ocultos);

}  // namespace vel

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/utilvel/cfdi/Informe.h"

// What is told of a verified invoice. Texts in UTF-8; amounts as they are printed or computed, to the last
// digit.
namespace utilvel::cfdi {

/// A line for the invoice and one for each thing that is wrong, in Spanish.
std::string EnTexto(const std::string& archivo, const Informe& informe);

/// One JSON object on a line (RFC 8259), amounts as texts; what the invoice does not have is null.
std::string EnJson(const std::string& archivo, const Informe& informe);

/// The columns of EnFilas.
std::vector<std::string> NombresColumnas();
/// A row for each difference, and one for an invoice without any.
std::vector<std::vector<std::optional<std::string>>> EnFilas(const std::string& archivo,
                                                             const Informe& informe);

}  // namespace utilvel::cfdi

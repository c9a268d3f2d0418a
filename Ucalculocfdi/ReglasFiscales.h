#pragma once

#include <span>
#include <string_view>

#include "utilvel90_export.h"

namespace vel {

/// A check that certifiers make on the arithmetic of an invoice.
struct TReglaFiscal {
  /// Code of the authority's validation matrix, which certifiers report: CFDV40 for all that the schema
  /// forbids. IMPLOCAL is ours: the complement of local taxes has no code.
  std::u16string_view Codigo;
  /// What must hold: a Spanish clause without capital and point.
  std::u16string_view Regla;
  std::u16string_view Fuente;
  /// First day on which it holds, "yyyy-mm-dd".
  std::u16string_view Desde;
};

/// The rules that TResumenFiscal::Revisa checks.
UTILVEL90_EXPORT std::span<const TReglaFiscal> ReglasFiscales() noexcept;

}  // namespace vel

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
  /// The public document that states it, in Spanish.
  std::u16string_view Fuente;
  /// First and last day on which it holds, "yyyy-mm-dd"; without a last day in the newest edition.
  std::u16string_view Desde;
  /// Last day on which it holds; empty in the newest edition.
  std::u16string_view Hasta = {};

  /// Whether it holds on a day, "yyyy-mm-dd"; without a day, whether it is of the newest edition.
  constexpr bool Rige(std::u16string_view dia) const noexcept {
    if (dia.empty()) return Hasta.empty();
    return Desde <= dia && (Hasta.empty() || dia <= Hasta);
  }
};

/// The rules of every edition; TResumenFiscal::Revisa checks those in force on the document's date. A new
/// edition closes rows and adds others: two of one code follow each other in time.
UTILVEL90_EXPORT std::span<const TReglaFiscal> ReglasFiscales() noexcept;

}  // namespace vel

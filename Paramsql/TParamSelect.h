#pragma once

#include <memory>
#include <vector>

#include "framework/TRemotable.h"
#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// One field of a select list.
/// Threads: one at a time.
class UTILVEL90_EXPORT TParamSelect : public TRemotable {
 public:
  /// Column or expression.
  UnicodeString NombreCampo;
  /// Table of the column, for the caller: the statement does not use it.
  UnicodeString NombreTabla;
  /// Name of the output column; empty for none.
  UnicodeString AliasCampo;
  /// Whether users see the column; the statement selects it all the same.
  bool Visible = false;

  /// The members above, in their order.
  void Propiedades(VisitantePropiedades& visitante) override;
};

/// The list owns its records; entries may be null.
using TParamSelectArray = std::vector<std::unique_ptr<TParamSelect>>;

}  // namespace vel

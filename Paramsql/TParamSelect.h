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
  UnicodeString NombreTabla;
  /// Name of the output column; empty for none.
  UnicodeString AliasCampo;
  bool Visible = false;

  void Propiedades(VisitantePropiedades& visitante) override;
};

/// The list owns its records; entries may be null.
using TParamSelectArray = std::vector<std::unique_ptr<TParamSelect>>;

}  // namespace vel

#pragma once

#include <memory>
#include <vector>

#include "Paramsql/Enumeraciones.h"
#include "framework/TFieldType.h"
#include "framework/TRemotable.h"
#include "framework/Texto.h"
#include "framework/Variant.h"
#include "utilvel90_export.h"

namespace vel {

/// One condition of WHERE, of HAVING, or of the personalised ones.
/// Threads: one at a time.
class UTILVEL90_EXPORT TParamWhereSimple : public TRemotable {
 public:
  /// Column or expression tested.
  UnicodeString NombreCampo;
  /// Decides how the value is written and bound; ftDataSet marks raw SQL text, written as it stands.
  TFieldType TipoCampo = TFieldType::ftUnknown;
  /// One value, or an array: two for BETWEEN, any number for IN.
  Variant ValorCampo;
  ENUM_OPERADOR Operador = ENUM_OPERADOR::IGUAL;
  ENUM_CONECTOR ConectorSigCampo = ENUM_CONECTOR::AND;
  ENUM_GRUPO CharGrupo = ENUM_GRUPO::INICIA;
  /// Compares text as typed; off, without regard to case (LIKE only).
  bool Sensitive = false;

  /// Texts of the record's own operator, connector and group. The operator's differ from those of
  /// TParametrosFiltro: " != ", " MACRO ", and null tests without a trailing blank.
  UnicodeString DameOperador() const;
  UnicodeString DameOperadorUnion() const;
  UnicodeString DameCharGrupo() const;

  void Propiedades(VisitantePropiedades& visitante) override;
};

/// The list owns its records; entries may be null and are skipped.
using TParamWhereSimpleArray = std::vector<std::unique_ptr<TParamWhereSimple>>;

}  // namespace vel

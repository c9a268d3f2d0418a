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
  /// How field and value are compared.
  ENUM_OPERADOR Operador = ENUM_OPERADOR::IGUAL;
  /// How it is joined to the next condition.
  ENUM_CONECTOR ConectorSigCampo = ENUM_CONECTOR::AND;
  /// The parenthesis that it opens or closes.
  ENUM_GRUPO CharGrupo = ENUM_GRUPO::INICIA;
  /// Compares text as typed; off, without regard to case (LIKE only).
  bool Sensitive = false;

  /// Texts of the record's own operator, connector and group. The operator's differ from those of
  /// TParametrosFiltro: " != ", " MACRO ", and null tests without a trailing blank.
  UnicodeString DameOperador() const;
  UnicodeString DameOperadorUnion() const;
  UnicodeString DameCharGrupo() const;

  /// The members above, in their order.
  void Propiedades(VisitantePropiedades& visitante) override;
};

/// The list owns its records; entries may be null and are skipped.
using TParamWhereSimpleArray = std::vector<std::unique_ptr<TParamWhereSimple>>;

}  // namespace vel

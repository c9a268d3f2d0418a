#pragma once

#include <string_view>

#include "Paramsql/TParamWhereSimple.h"
#include "framework/Texto.h"

// Names of the sections and keys that hold a definition.
namespace vel::persistencia {

inline constexpr std::u16string_view kSelect = u"SELECT";
inline constexpr std::u16string_view kTabla = u"TABLAPIV";
inline constexpr std::u16string_view kJoins = u"JOINS";
inline constexpr std::u16string_view kFiltro = u"FILTRO";
inline constexpr std::u16string_view kGroupBy = u"GROUPBY";
inline constexpr std::u16string_view kHaving = u"HAVING";
inline constexpr std::u16string_view kUnion = u"UNION";

// Keys; those of list items are followed by the item's 0-based index.
inline constexpr std::u16string_view kNumCampos = u"NumCampos";
inline constexpr std::u16string_view kAliasCampo = u"AliasCampo";
inline constexpr std::u16string_view kVisible = u"Visible";
inline constexpr std::u16string_view kClaveTabla = u"TABLA";
inline constexpr std::u16string_view kNumJoins = u"NumJoins";
inline constexpr std::u16string_view kJoin = u"Join";
inline constexpr std::u16string_view kClaveGroupBy = u"GroupBy";
inline constexpr std::u16string_view kClaveUnion = u"Filtro";
inline constexpr std::u16string_view kNumFiltros = u"NumFiltros";
inline constexpr std::u16string_view kNumElementos = u"NumElementos";
inline constexpr std::u16string_view kNomCampo = u"NomCampo";
inline constexpr std::u16string_view kTipoCampo = u"TipoCampo";
inline constexpr std::u16string_view kValCampo = u"ValCampo";
inline constexpr std::u16string_view kOpCampo = u"OpCampo";
inline constexpr std::u16string_view kConectCampo = u"ConectCampo";
inline constexpr std::u16string_view kCharGrupCampo = u"CharGrupCampo";
inline constexpr std::u16string_view kSensitive = u"Sensitive";
inline constexpr std::u16string_view kNumFiltrosP = u"NumFiltrosP";
inline constexpr std::u16string_view kTipoPers = u"TipoCampoFilterParamsPers";
inline constexpr std::u16string_view kValorPers = u"ValCampoFilterParamsPers";
inline constexpr std::u16string_view kClasePers = u"TipoVariantParamsPers";
inline constexpr std::u16string_view kSentenciaPers = u"SentenciaSQLPers";
inline constexpr std::u16string_view kActivarPers = u"ActivarFiltroP";
inline constexpr std::u16string_view kCondicionesPers = u"CondicionesPers";

/// More partners than any query has; a bound for a damaged file.
inline constexpr int kUnionesMaximas = 64;

/// A union partner's number is that of its owner plus one; numbers below 1 are the main definition's.
UnicodeString Sufijo(int numero);
int NumeroDeUnion(int numero);

/// The operator whose own text, as a condition says it, was stored. Blanks around it do not count; texts that
/// TParametrosFiltro reads are taken too, and any other is DIFERENTE.
ENUM_OPERADOR OperadorDeTexto(std::u16string_view texto);

/// Stored text of a value of a field type, and the value that such a text means: TParametrosFiltro's
/// DameValorIni and DameValorLstCampos.
UnicodeString TextoDeValor(TFieldType tipo, const Variant& valor);
Variant ValorDeTexto(TFieldType tipo, std::u16string_view texto);

/// Stored text of a condition's value, and the value that such a text means. Where the operator takes the
/// value as a text (patterns, sub-queries) or not at all, the field type says nothing about it.
UnicodeString TextoDeValor(const TParamWhereSimple& condicion);
Variant ValorDeTexto(TFieldType tipo, ENUM_OPERADOR operador, std::u16string_view texto);

}  // namespace vel::persistencia

#pragma once

#include <memory>
#include <string_view>

#include "Paramsql/TParamWhereSimple.h"
#include "Paramsql/TParametrosFiltro.h"
#include "framework/Texto.h"
#include "framework/TextoIni.h"

// Names of the sections and keys that hold a definition.
namespace vel::persistencia {

inline constexpr std::u16string_view kSelect = u"SELECT";
inline constexpr std::u16string_view kTabla = u"TABLAPIV";
inline constexpr std::u16string_view kJoins = u"JOINS";
inline constexpr std::u16string_view kFiltro = u"FILTRO";
inline constexpr std::u16string_view kGroupBy = u"GROUPBY";
inline constexpr std::u16string_view kHaving = u"HAVING";
inline constexpr std::u16string_view kUnion = u"UNION";
inline constexpr std::u16string_view kVista = u"Vista1";

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

inline constexpr std::u16string_view kOrdenadoPor = u"OrdenadoPor";
inline constexpr std::u16string_view kDescendente = u"Descendente";
inline constexpr std::u16string_view kDistinct = u"Distinct";

/// More partners than any query has; a bound for a damaged file.
inline constexpr int kUnionesMaximas = 64;

/// A union partner's number is that of its owner plus one; numbers below 1 are the main definition's.
UnicodeString Sufijo(int numero);
int NumeroDeUnion(int numero);

/// What of a definition is in a file.
enum class Alcance : bool {
  /// What every program of the suite writes.
  Comun,
  /// DISTINCT, order, and Sensitive in HAVING too, in keys that other programs read or pass over. DISTINCT
  /// and
  /// a partner's order stand in a section that SaveToIni erases, so that none outlives its definition.
  Entera,
};

/// Puts a definition and its partners into the text. Raises EInvalidOperation for more than 64 of them.
void PonDefinicion(TextoIni& texto, const TParametrosFiltro& definicion, int numero, Alcance alcance);
/// The definition of that number. Raises EConvertError and EInvalidOperation as LoadFromIni does.
std::unique_ptr<TParametrosFiltro> LeeDefinicion(const TextoIni& texto, int numero, Alcance alcance);

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

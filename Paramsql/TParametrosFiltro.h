#pragma once

#include <concepts>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "Paramsql/Enumeraciones.h"
#include "Paramsql/TParamSelect.h"
#include "Paramsql/TParamWhereSimple.h"
#include "Uutilext/config/Configuracion.h"
#include "framework/TDateTime.h"
#include "framework/TFieldType.h"
#include "framework/TParams.h"
#include "framework/TRemotable.h"
#include "framework/Texto.h"
#include "framework/Variant.h"
#include "utilvel90_export.h"

namespace vel {

/// Definition of one SELECT statement: table, select list, joins, conditions, grouping, union partner and
/// order. Build it, take its text from DameSentenciaSQL, and with it, or afterwards from AsignaParametros,
/// the values to bind.
///
///     TParametrosFiltro filtro(u"CLIENTES");
///     filtro.AgregaFiltro(u"CIUDAD", TFieldType::ftString, Variant(u"Mérida"), ENUM_OPERADOR::IGUAL,
///                         ENUM_CONECTOR::AND, ENUM_GRUPO::NADA, true);
///     filtro.DameSentenciaSQL(true, 0);   // "SELECT  *  from CLIENTES  WHERE (CIUDAD=:var1) "
///
/// Without parameters values are written as literals, texts as they are: embedded quotes are not doubled, a
/// LIKE says no ESCAPE, and a text that begins with "'" is taken for SQL that has its quotes. So a text that
/// a user typed belongs in a statement with parameters, patterns of AgregaFiltroLIKE included. Table,
/// columns, joins and raw SQL values are always written as they are. Literals are for ftInteger, ftFloat,
/// ftString, ftDateTime and ftTimeStamp fields: values of other types are written as nothing. The two values
/// of a BETWEEN are plain text without quotes, but dates.
///
/// Dates in literals are DateTimeToISO's text in quotes, whatever the database: in a BETWEEN every date, and
/// every number of a date field, as the field's type keeps it (an ftDate the day, an ftTime the time). In a
/// text field a date is its plain text, DateTimeToStr's. A date given as text stays the caller's.
///
/// With parameters a text is bound as it is, quotes included: what a user typed is found to the letter. In a
/// date field a text that spells a date ("2024-05-13 14:30" or "13/05/2024 14:30", in single quotes or not)
/// is bound as that moment; any other loses the quotes around it and stays text.
///
/// Nothing is validated but what could not be written at all: a BETWEEN without two values or an IN without
/// any raises EInvalidOperation; a value that does not convert to its field type raises the conversion error.
/// Group marks open and close one parenthesis each. Null entries of the lists are skipped. An operation that
/// throws, also for want of memory, leaves the definition as it was.
///
/// Published properties are public members of the same name.
/// Threads: one at a time.
class UTILVEL90_EXPORT TParametrosFiltro : public TRemotable {
 public:
  /// An empty definition on a table: all its columns, no conditions.
  explicit TParametrosFiltro(std::u16string_view tabla);
  TParametrosFiltro(const TParametrosFiltro&) = delete;
  TParametrosFiltro& operator=(const TParametrosFiltro&) = delete;
  ~TParametrosFiltro() override;

  /// Table of FROM, with its alias if it has one.
  UnicodeString NombreTabla;
  /// The select list; empty for all columns.
  TParamSelectArray ParamSelect;
  /// Conditions of WHERE.
  TParamWhereSimpleArray ParamWhere;
  /// Conditions of HAVING.
  TParamWhereSimpleArray ParamHaving;
  /// Personalised conditions, kept for the caller; FilterTextPers is their SQL.
  TParamWhereSimpleArray ParamPers;
  /// Columns of ORDER BY, without these words; empty for none.
  UnicodeString OrderBy;
  /// Columns of GROUP BY, without these words; empty for none.
  UnicodeString GroupBy;
  /// Descending order.
  bool OrdDesc = false;
  /// Second definition whose statement is appended with UNION; null for none.
  std::unique_ptr<TParametrosFiltro> ParametrosUnion;
  /// Whether the last statement was built with parameters.
  bool ConParametros = false;
  /// SELECT DISTINCT.
  bool Distinct = false;
  /// Source of WHERE: 0 the list, 1 FilterTextPers, any other both joined with AND.
  std::int32_t FiltroPActivo = 0;
  /// Values of the personalised text, for the caller.
  Variant FilterParamsPers;
  /// A ready SQL condition, without the word WHERE.
  UnicodeString FilterTextPers;
  /// The personalised conditions as users see them.
  std::vector<UnicodeString> FilterPersItems;
  /// Parameters of the caller's own, and their number.
  Variant ParamsExternos;
  /// How many parameters of the caller's own there are.
  std::int32_t ParamsExternosCount = 0;
  /// Join clauses, each with one blank on either side.
  std::vector<UnicodeString> Join;
  /// Working date, for the caller.
  TDateTime FechaTrabajo;

  // --- Conditions. Each Agrega appends one.

  /// Note the order: one value stands before the enumerations, several after them.
  ///
  ///     AgregaFiltro(u"CIUDAD", TFieldType::ftString, u"Mérida", ENUM_OPERADOR::IGUAL);
  ///     AgregaFiltro(u"FECHA", TFieldType::ftDateTime, ENUM_OPERADOR::BETWEEN, ENUM_CONECTOR::AND,
  ///                  ENUM_GRUPO::NADA, desde, hasta);
  void AgregaFiltro(std::u16string_view campo, TFieldType tipo, const Variant& valor, ENUM_OPERADOR op,
                    ENUM_CONECTOR con = ENUM_CONECTOR::AND, ENUM_GRUPO grupo = ENUM_GRUPO::NADA,
                    bool sensitive = true);
  /// Two to five values become an array; Sensitive is false.
  void AgregaFiltro(std::u16string_view campo, TFieldType tipo, ENUM_OPERADOR op, ENUM_CONECTOR con,
                    ENUM_GRUPO grupo, const Variant& v1, const Variant& v2);
  void AgregaFiltro(std::u16string_view campo, TFieldType tipo, ENUM_OPERADOR op, ENUM_CONECTOR con,
                    ENUM_GRUPO grupo, const Variant& v1, const Variant& v2, const Variant& v3);
  void AgregaFiltro(std::u16string_view campo, TFieldType tipo, ENUM_OPERADOR op, ENUM_CONECTOR con,
                    ENUM_GRUPO grupo, const Variant& v1, const Variant& v2, const Variant& v3,
                    const Variant& v4);
  void AgregaFiltro(std::u16string_view campo, TFieldType tipo, ENUM_OPERADOR op, ENUM_CONECTOR con,
                    ENUM_GRUPO grupo, const Variant& v1, const Variant& v2, const Variant& v3,
                    const Variant& v4, const Variant& v5);
  /// From texts, as they are stored: `tipo` is the field type's ordinal (raises EConvertError when it is no
  /// integer), `valor` goes through DameValorLstCampos, the others through the exact text converters below.
  void AgregaFiltroStr(std::u16string_view campo, std::u16string_view tipo, std::u16string_view valor,
                       std::u16string_view op, std::u16string_view con, std::u16string_view grupo,
                       bool sensitive);
  /// A LIKE condition on a text that a user typed, for a statement with parameters: "/", "%" and "_" in it
  /// stand for themselves (escaped with "/"), and the wildcards that `donde` asks for are added. Without a
  /// driver it is DEVARTINTERBASE's; SQL Server's two escape "[" too. In a statement with literals nothing
  /// says that "/" escapes, and a database that reads "\" as an escape can be made to end the text early.
  ///
  ///     AgregaFiltroLIKE(u"N", u"50%_a/", ENUM_COINCIDENCIA::CONTIENE, ...);
  ///     // "N LIKE  :var1 ESCAPE '/'", bound to u"%50/%/_a//%"
  void AgregaFiltroLIKE(std::u16string_view campo, std::u16string_view texto, ENUM_COINCIDENCIA donde,
                        ENUM_CONECTOR con = ENUM_CONECTOR::AND, ENUM_GRUPO grupo = ENUM_GRUPO::NADA,
                        bool sensitive = true);
  void AgregaFiltroLIKE(std::u16string_view campo, std::u16string_view texto, ENUM_COINCIDENCIA donde,
                        ENUM_CONECTOR con, ENUM_GRUPO grupo, bool sensitive, TiposDeDriver driver);
  /// A HAVING condition, shaped like AgregaFiltro; several values are given as an array (VarArrayOf).
  void AgregaHaving(std::u16string_view campo, TFieldType tipo, const Variant& valor, ENUM_OPERADOR op,
                    ENUM_CONECTOR con = ENUM_CONECTOR::AND, ENUM_GRUPO grupo = ENUM_GRUPO::NADA,
                    bool sensitive = true);
  /// AgregaFiltroLIKE's twins in HAVING.
  void AgregaHavingLIKE(std::u16string_view campo, std::u16string_view texto, ENUM_COINCIDENCIA donde,
                        ENUM_CONECTOR con = ENUM_CONECTOR::AND, ENUM_GRUPO grupo = ENUM_GRUPO::NADA,
                        bool sensitive = true);
  void AgregaHavingLIKE(std::u16string_view campo, std::u16string_view texto, ENUM_COINCIDENCIA donde,
                        ENUM_CONECTOR con, ENUM_GRUPO grupo, bool sensitive, TiposDeDriver driver);

  /// Removes all conditions of that kind.
  void EliminaFiltros() noexcept;
  void EliminaHaving() noexcept;
  void EliminaParamPers() noexcept;
  /// Removes every condition on exactly this column. When there was one, Sensitive becomes false in all that
  /// stay: callers rely on it.
  void EliminaFiltro(std::u16string_view campo);
  /// Replaces the conditions by copies of origin's from index `desde` on. `origen` may be this object's own
  /// list. Null entries are not copied; a negative `desde` counts as 0.
  void CopiaFiltros(const TParamWhereSimpleArray& origen, int desde = 0);
  /// Appends copies of origin's conditions, with Sensitive false.
  void AgregaFiltros(const TParamWhereSimpleArray& origen);

  // --- Translations.

  /// The text of a member in the statement, and the member of such a text. A value outside the members gives
  /// the empty text; texts compare exactly, blanks and case included, and one that is not listed gives
  /// DIFERENTE, OR or NADA.
  static UnicodeString DameOperador(ENUM_OPERADOR op);
  static ENUM_OPERADOR DameOperador(std::u16string_view texto);
  static UnicodeString DameOperadorUnion(ENUM_CONECTOR con);
  static ENUM_CONECTOR DameOperadorUnion(std::u16string_view texto);
  static void DameCharGrupo(UnicodeString& abre, UnicodeString& cierra, ENUM_GRUPO grupo);
  static ENUM_GRUPO DameCharGrupo(std::u16string_view texto);

  // --- Select list.

  /// Appends a column or expression, with its name in the result when `alias` is not empty.
  void AgregaCampoSelect(std::u16string_view campo, std::u16string_view alias = {}, bool visible = true);
  /// Replaces the select list by a copy of the other's; by none from a null pointer.
  void CopiaCamposSelect(const TParametrosFiltro* origen);
  /// Empties the select list, so that all columns are selected.
  void EliminaCampoSelect() noexcept;
  /// The select list and " from ", the table and a blank; " * " for an empty list.
  UnicodeString DameCamposSelect() const;
  /// Names of the output columns, separated by ",".
  UnicodeString CamposSelect() const;
  /// Visible of the first field of that name (blanks trimmed); false when there is none.
  bool CampoVisible(std::u16string_view campo) const;
  /// Alias of the first field of that name (blanks trimmed), without surrounding double quotes; without an
  /// alias what follows the first "." of `campo`, or all of it. Empty when there is no such field.
  UnicodeString DameAliasCampo(std::u16string_view campo) const;

  // --- Joins, union and order.

  /// Appends a join clause, with one blank on either side.
  void AgregaJoin(std::u16string_view texto);
  /// All join clauses, one after the other.
  UnicodeString DameCadenaJoin() const;
  /// Removes all joins.
  void EliminaJoin() noexcept;
  /// Removes every join added with exactly this text.
  void EliminaJoin(std::u16string_view texto);
  /// Takes a copy of origin's joins; when origin has none the own ones stay.
  void CopiaJoin(const TParametrosFiltro* origen);
  /// Makes a new union partner on `tabla` and returns it, owned by this object. A partner that it replaces
  /// stays valid, though out of the statement, until this object ends.
  TParametrosFiltro* AgregaUnion(std::u16string_view tabla);
  /// Frees the union partner at once.
  void QuitaUnion() noexcept;
  /// Orders by `campo`; a column that occurs in the present order, as part of a longer name too, toggles
  /// OrdDesc, any other resets it.
  void SetOrderBy(std::u16string_view campo);

  // --- The statement.

  /// The whole statement. `numInicial` is the number after which parameters are counted; `num` is too, and
  /// becomes the last one used. All of them set ConParametros. A parameter whose number would be past the
  /// largest int raises EInvalidOperation; on that, as on any fault, object and arguments stay as they were.
  UnicodeString DameSentenciaSQL(bool conParametros, int numInicial = 0);
  /// A number alone is meant for `numInicial`, a text for nothing: neither is a truth value.
  template <typename T>
  requires(!std::same_as<T, bool>) UnicodeString DameSentenciaSQL(T conParametros)
  = delete;
  /// The statement with parameters marked in that style, and its parameters, as AsignaParametros gives them,
  /// whose names are "var1" or "hav1" in every style. Each mark stands once in the text and the list is in
  /// its order, so that values may be bound by position. Raises EInvalidOperation for a style that does not
  /// exist.
  ///
  ///     TParams parametros;
  ///     filtro.DameSentenciaSQL(ENUM_MARCADOR::PESOS, 0, parametros);
  ///     // "SELECT  *  from CLIENTES  WHERE (CIUDAD=$1) ", parametros[0].Value == Variant(u"Mérida")
  UnicodeString DameSentenciaSQL(ENUM_MARCADOR estilo, int numInicial, TParams& parametros);
  /// " WHERE (conditions) ", the conditions alone, and " HAVING conditions". Without conditions " WHERE ",
  /// the empty text and " HAVING ".
  UnicodeString DameWhere(bool conParametros, int& num);
  UnicodeString DameCondWhere(bool conParametros, int& num);
  UnicodeString DameHaving(bool conParametros, int& num);
  /// Fills the list with the parameters of the statement just built: call it after DameSentenciaSQL, on the
  /// unchanged definition and with the same `numInicial`; before it the list is empty. Names without the
  /// colon, in the order of the statement, typed by the conditions' field types. Raw SQL, null tests, EXISTS
  /// and MACRO bind nothing; the value of a LIKE without regard to case is in capitals. Empty when the
  /// statement was built with literals.
  void AsignaParametros(TParams& parametros, int numInicial = 0) const;

  // --- Pieces of conditions.

  /// The text of one condition with an operator of that kind. `indice` is the 0-based index in ParamWhere or
  /// ParamHaving (one out of range raises EInvalidOperation; a null entry gives the empty text), `abre` the
  /// text that opens its group, `conParametros` 0 for literals, `contador` the running parameter number.
  UnicodeString DameWhereDefault(int indice, std::u16string_view abre, int conParametros,
                                 int* contador) const;
  UnicodeString DameWhereLIKE(int indice, std::u16string_view abre, int conParametros, int* contador) const;
  UnicodeString DameWhereINNOTIN(int indice, std::u16string_view abre, int conParametros,
                                 int* contador) const;
  UnicodeString DameWhereISNULLNOTNULL(int indice, std::u16string_view abre, int conParametros,
                                       int* contador) const;
  UnicodeString DameWhereBETWEEN(int indice, std::u16string_view abre, int conParametros,
                                 int* contador) const;
  UnicodeString DameWhereExists(int indice, std::u16string_view abre, int conParametros, int* contador) const;
  UnicodeString DameHavingDefault(int indice, std::u16string_view abre, int conParametros,
                                  int* contador) const;
  UnicodeString DameHavingLIKE(int indice, std::u16string_view abre, int conParametros, int* contador) const;
  UnicodeString DameHavingINNOTIN(int indice, std::u16string_view abre, int conParametros,
                                  int* contador) const;
  UnicodeString DameHavingISNULLNOTNULL(int indice, std::u16string_view abre, int conParametros,
                                        int* contador) const;
  UnicodeString DameHavingBETWEEN(int indice, std::u16string_view abre, int conParametros,
                                  int* contador) const;
  UnicodeString DameHavingExists(int indice, std::u16string_view abre, int conParametros,
                                 int* contador) const;

  // --- Values.

  /// Literal of a value: ftInteger decimal text, ftFloat float text, ftString, ftDateTime and ftTimeStamp in
  /// single quotes (a text that begins with "'" stays as it is, a date is DateTimeToISO's text); empty for
  /// any other type, and for texts and dates when `conParametros`. Of an array the literals of its elements,
  /// joined by ", ".
  ///
  ///     DameValorCampoStr(TFieldType::ftString, Variant(u"Peña"), false) == u"'Peña'"
  ///     ... ftDateTime, Variant(TDateTime(45425.5)) gives u"'2024-05-13 12:00:00'"
  static UnicodeString DameValorCampoStr(TFieldType tipo, const Variant& valor, bool conParametros);
  /// The value that a stored text means, by type: a number, date or truth value where the type says so and
  /// the text is written as this library would ("7", not "007"), one of these in a field of another of them
  /// too ("True" in an ftInteger), nothing for an empty one, else text.
  /// Surrounding double quotes are dropped, and braces, which make an array of any list; then a list of
  /// elements in single quotes (a quote inside stands twice) separated by "," gives an array, one such
  /// element a single value, and NULL without quotes a null. Any other text is the value itself. Raw SQL only
  /// loses its own outer quotes. Raises EConvertError when an element does not convert to its type.
  static Variant DameValorLstCampos(TFieldType tipo, std::u16string_view texto);

  // --- Definitions kept in INI files.

  /// Saves the whole definition. It has sections of its own for each part, their names followed by `numero`
  /// (nothing for 0 or less); a union partner has the next number. Each call replaces
  /// what the file held of the definition, in one step: on a fault (Exception when the file cannot be
  /// written, EInvalidOperation for a text with a line break, a number that is not finite or more than 64
  /// partners) the file is as it was. A reloaded definition builds the same statement and binds the same
  /// parameters; dates keep their milliseconds. What the file does not keep: blanks around names; Sensitive
  /// in HAVING, so that a LIKE there comes back without regard to case; and that a text spelled a value of
  /// another kind ("7", "True", "15/05/2024"): it becomes that value in a field whose type says nothing of it
  /// (ftUnknown), as a bound of a BETWEEN in a field that holds no text, and, for a date, in a date field.
  /// Order, DISTINCT and ParamPers are not part of it: a caller keeps the order in section "Vista1"
  /// ("OrdenadoPor", and "Descendente" as "TRUE" or "FALSE"), which the reader of number 0 applies; or saves
  /// the definition with GuardaConsulta (ConsultaGuardada.h), which keeps order, DISTINCT and HAVING's
  /// Sensitive as well.
  void SaveToIni(std::u16string_view archivo, int numero = 0) const;
  /// The WHERE conditions and the personalised ones into one section.
  void SaveToIni(std::u16string_view archivo, std::u16string_view seccion) const;
  /// Missing keys and files leave their part empty. A file that cannot be read raises Exception, a value that
  /// does not convert to its type EConvertError, a union partner whose number does not grow
  /// EInvalidOperation; after these, or when memory is short, the definition is as it was.
  void LoadFromIni(std::u16string_view archivo, int numero = 0);
  void LoadFromIni(std::u16string_view archivo, std::u16string_view seccion);
  /// The personalised conditions (FiltroPActivo, FilterTextPers, FilterPersItems, FilterParamsPers) in a
  /// section, which is erased first when `borra`.
  void SaveParamPersToIni(std::u16string_view archivo, std::u16string_view seccion, bool borra) const;
  void LoadParamPersFromIni(std::u16string_view archivo, std::u16string_view seccion);
  /// Stored text of an array of raw SQL: its elements in single quotes, those inside doubled, between braces.
  UnicodeString SaveToExistsInn(const Variant& valor) const;
  /// Stored text of a value, which DameValorLstCampos reads back: its own text in single quotes, whatever the
  /// type, and all of it between double quotes; NULL for a null. In a date field it is the date's text.
  /// Quotes inside are doubled in text fields and lists, elsewhere where it would not read back without. An
  /// unassigned value is '', or nothing where that is a text. An array of one element, or of none, is between
  /// braces.
  static UnicodeString DameValorIni(TFieldType tipo, const Variant& valor);

  /// The published properties, in their order.
  void Propiedades(VisitantePropiedades& visitante) override;

 private:
  /// Partners that AgregaUnion replaced; callers may still hold them.
  std::vector<std::unique_ptr<TParametrosFiltro>> retirados_;
};

/// A new definition on `tabla`; the caller owns it and frees it with delete.
UTILVEL90_EXPORT TParametrosFiltro* CreaParametrosFiltro(std::u16string_view tabla);

}  // namespace vel

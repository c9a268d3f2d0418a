// Operators, connectors and groups, and the texts that stand for them.

#include <algorithm>
#include <iterator>

#include "Paramsql/Redactor.h"
#include "Paramsql/TParamWhereSimple.h"
#include "Paramsql/TParametrosFiltro.h"

namespace vel {
namespace {

struct TextosOperador {
  /// What statements are written with.
  std::u16string_view filtro;
  /// What a condition says of itself; stored definitions hold it.
  std::u16string_view condicion;
  /// What is read as this operator; empty for none.
  std::u16string_view leido;
};

// By ordinal.
constexpr TextosOperador kOperadores[] = {
    {u"=", u"=", u"="},
    {u"<", u"<", u"<"},
    {u"<=", u"<=", u"<="},
    {u">", u">", u">"},
    {u">=", u">=", u">="},
    {u" <> ", u" != ", u""},
    {u" LIKE ", u" LIKE ", u"LIKE"},
    {u" IN ", u" IN ", u"IN"},
    {u" NOT IN ", u" NOT IN ", u"NOT IN"},
    {u" IS NOT NULL ", u" IS NOT NULL", u"IS NOT NULL"},
    {u" IS NULL ", u" IS NULL", u"IS NULL"},
    {u" BETWEEN ", u" BETWEEN ", u"BETWEEN"},
    {u" EXISTS ", u" EXISTS ", u"EXISTS"},
    {u" NINGUNO ", u" MACRO ", u"NINGUNO"},
};

const TextosOperador* Busca(ENUM_OPERADOR op) noexcept {
  const auto ordinal = static_cast<std::size_t>(op);
  return ordinal < std::size(kOperadores) ? &kOperadores[ordinal] : nullptr;
}

}  // namespace

std::u16string_view TextoOperador(ENUM_OPERADOR op) noexcept {
  const TextosOperador* const operador = Busca(op);
  return operador == nullptr ? std::u16string_view() : operador->filtro;
}

std::u16string_view TextoConector(ENUM_CONECTOR con) noexcept {
  switch (con) {
    case ENUM_CONECTOR::AND:
      return u" AND ";
    case ENUM_CONECTOR::OR:
      return u" OR ";
  }
  return {};
}

UnicodeString TParametrosFiltro::DameOperador(ENUM_OPERADOR op) { return UnicodeString(TextoOperador(op)); }

UnicodeString TParamWhereSimple::DameOperador() const {
  const TextosOperador* const operador = Busca(Operador);
  return operador == nullptr ? UnicodeString() : UnicodeString(operador->condicion);
}

ENUM_OPERADOR TParametrosFiltro::DameOperador(std::u16string_view texto) {
  const auto* const it =
      std::find_if(std::begin(kOperadores), std::end(kOperadores),
                   [texto](const TextosOperador& o) { return !o.leido.empty() && o.leido == texto; });
  return it == std::end(kOperadores) ? ENUM_OPERADOR::DIFERENTE
                                     : static_cast<ENUM_OPERADOR>(it - std::begin(kOperadores));
}

UnicodeString TParametrosFiltro::DameOperadorUnion(ENUM_CONECTOR con) {
  return UnicodeString(TextoConector(con));
}

UnicodeString TParamWhereSimple::DameOperadorUnion() const {
  return TParametrosFiltro::DameOperadorUnion(ConectorSigCampo);
}

ENUM_CONECTOR TParametrosFiltro::DameOperadorUnion(std::u16string_view texto) {
  return texto == u"AND" ? ENUM_CONECTOR::AND : ENUM_CONECTOR::OR;
}

void TParametrosFiltro::DameCharGrupo(UnicodeString& abre, UnicodeString& cierra, ENUM_GRUPO grupo) {
  abre = grupo == ENUM_GRUPO::INICIA ? u"(" : u"";
  cierra = grupo == ENUM_GRUPO::TERMINA ? u")" : u"";
}

ENUM_GRUPO TParametrosFiltro::DameCharGrupo(std::u16string_view texto) {
  if (texto == u"(") return ENUM_GRUPO::INICIA;
  return texto == u")" ? ENUM_GRUPO::TERMINA : ENUM_GRUPO::NADA;
}

UnicodeString TParamWhereSimple::DameCharGrupo() const {
  UnicodeString abre;
  UnicodeString cierra;
  TParametrosFiltro::DameCharGrupo(abre, cierra, CharGrupo);
  return abre + cierra;
}

}  // namespace vel

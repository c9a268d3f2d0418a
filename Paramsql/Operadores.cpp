// Operators, connectors and groups, and the texts that stand for them.

#include <cstddef>
#include <span>

#include "Paramsql/Persistencia.h"
#include "Paramsql/Redactor.h"
#include "Paramsql/TParamWhereSimple.h"
#include "Paramsql/TParametrosFiltro.h"
#include "Paramsql/TablaOperadores.h"

namespace vel {
namespace {

// The first operator whose row is the one sought; any other text is DIFERENTE's.
template <typename EsLaFila>
ENUM_OPERADOR Busca(EsLaFila esLaFila) {
  const std::span<const FilaOperador> tabla = TablaOperadores();
  for (std::size_t i = 0; i < tabla.size(); ++i)
    if (esLaFila(tabla[i])) return static_cast<ENUM_OPERADOR>(i);
  return ENUM_OPERADOR::DIFERENTE;
}

bool SeLee(const FilaOperador& fila, std::u16string_view texto) noexcept {
  return !fila.leido.empty() && fila.leido == texto;
}

}  // namespace

std::u16string_view TextoConector(ENUM_CONECTOR con) noexcept {
  switch (con) {
    case ENUM_CONECTOR::AND:
      return u" AND ";
    case ENUM_CONECTOR::OR:
      return u" OR ";
  }
  return {};
}

UnicodeString TParametrosFiltro::DameOperador(ENUM_OPERADOR op) { return UnicodeString(FilaDe(op).filtro); }

UnicodeString TParamWhereSimple::DameOperador() const { return UnicodeString(FilaDe(Operador).condicion); }

ENUM_OPERADOR TParametrosFiltro::DameOperador(std::u16string_view texto) {
  return Busca([texto](const FilaOperador& fila) { return SeLee(fila, texto); });
}

ENUM_OPERADOR persistencia::OperadorDeTexto(std::u16string_view texto) {
  texto = TrimView(texto);
  return Busca(
      [texto](const FilaOperador& fila) { return TrimView(fila.condicion) == texto || SeLee(fila, texto); });
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

#pragma once

#include <string_view>

#include "Paramsql/TParamWhereSimple.h"
#include "Paramsql/TParametrosFiltro.h"
#include "framework/TParams.h"
#include "framework/Texto.h"

namespace vel {

struct FilaOperador;

/// Writes the text of a definition and, when a list is given, collects the parameters on the way: one walk
/// for both, so that placeholders and bound values cannot disagree.
class Redactor {
 public:
  enum class Clausula : bool { Where, Having };

  /// `numero` is the running parameter number; `parametros` may be null. `estilo` is one of the members.
  Redactor(UnicodeString& salida, bool conParametros, int& numero, TParams* parametros = nullptr,
           ENUM_MARCADOR estilo = ENUM_MARCADOR::DOSPUNTOS)
      : salida_(salida),
        conParametros_(conParametros),
        numero_(numero),
        parametros_(parametros),
        estilo_(estilo) {}

  void Sentencia(const TParametrosFiltro& filtro);
  void CamposSelect(const TParametrosFiltro& filtro);
  void Where(const TParamWhereSimpleArray& condiciones);
  void CondicionesWhere(const TParamWhereSimpleArray& condiciones);
  void Having(const TParamWhereSimpleArray& condiciones);

  using Pieza = void (Redactor::*)(const TParamWhereSimple&, std::u16string_view, Clausula);
  // One condition, without the parenthesis that closes its group.
  void Comparacion(const TParamWhereSimple& c, std::u16string_view abre, Clausula clausula);
  void Patron(const TParamWhereSimple& c, std::u16string_view abre, Clausula clausula);
  void Pertenencia(const TParamWhereSimple& c, std::u16string_view abre, Clausula clausula);
  void PruebaNulo(const TParamWhereSimple& c, std::u16string_view abre, Clausula clausula);
  void Intervalo(const TParamWhereSimple& c, std::u16string_view abre, Clausula clausula);
  void Existencia(const TParamWhereSimple& c, std::u16string_view abre, Clausula clausula);

 private:
  void Condicion(const FilaOperador& fila, const TParamWhereSimple& c, Clausula clausula);
  void Filtro(const TParametrosFiltro& filtro);
  /// Marca and, when there is a list, Liga.
  void Marcador(Clausula clausula, TFieldType tipo, const Variant& valor);
  /// The mark of the next parameter. Raises EInvalidOperation when the numbers are used up.
  void Marca(Clausula clausula);
  /// Gives the list the value of the parameter marked last.
  void Liga(Clausula clausula, TFieldType tipo, const Variant& valor);

  UnicodeString& salida_;
  bool conParametros_;
  int& numero_;
  TParams* parametros_;
  ENUM_MARCADOR estilo_;
};

/// The text that statements are written with; empty for a value outside the members.
std::u16string_view TextoConector(ENUM_CONECTOR con) noexcept;

}  // namespace vel

// The statement, its clauses and its parameters.

#include <utility>

#include "Paramsql/Redactor.h"
#include "Paramsql/TParametrosFiltro.h"
#include "framework/Excepciones.h"

namespace vel {
namespace {

using Parte = void (Redactor::*)(const TParamWhereSimpleArray&);

// A clause alone; the number is as it was when the clause cannot be written.
UnicodeString Clausula(Parte parte, const TParamWhereSimpleArray& condiciones, bool conParametros, int& num) {
  UnicodeString texto;
  int numero = num;
  (Redactor(texto, conParametros, numero).*parte)(condiciones);
  num = numero;
  return texto;
}

void PonConParametros(TParametrosFiltro* filtro, bool conParametros) noexcept {
  for (; filtro != nullptr; filtro = filtro->ParametrosUnion.get()) filtro->ConParametros = conParametros;
}

}  // namespace

UnicodeString TParametrosFiltro::DameSentenciaSQL(bool conParametros, int numInicial) {
  UnicodeString texto;
  int numero = numInicial;
  Redactor(texto, conParametros, numero).Sentencia(*this);
  PonConParametros(this, conParametros);
  return texto;
}

UnicodeString TParametrosFiltro::DameSentenciaSQL(ENUM_MARCADOR estilo, int numInicial, TParams& parametros) {
  if (estilo > ENUM_MARCADOR::ARROBA) throw EInvalidOperation(u"El estilo de los parámetros no existe");
  UnicodeString texto;
  TParams nuevos;
  int numero = numInicial;
  Redactor(texto, true, numero, &nuevos, estilo).Sentencia(*this);
  parametros = std::move(nuevos);
  PonConParametros(this, true);
  return texto;
}

UnicodeString TParametrosFiltro::DameWhere(bool conParametros, int& num) {
  UnicodeString texto = Clausula(&Redactor::Where, ParamWhere, conParametros, num);
  ConParametros = conParametros;
  return texto;
}

UnicodeString TParametrosFiltro::DameCondWhere(bool conParametros, int& num) {
  UnicodeString texto = Clausula(&Redactor::CondicionesWhere, ParamWhere, conParametros, num);
  ConParametros = conParametros;
  return texto;
}

UnicodeString TParametrosFiltro::DameHaving(bool conParametros, int& num) {
  UnicodeString texto = Clausula(&Redactor::Having, ParamHaving, conParametros, num);
  ConParametros = conParametros;
  return texto;
}

UnicodeString TParametrosFiltro::DameCamposSelect() const {
  UnicodeString texto;
  int numero = 0;
  Redactor(texto, false, numero).CamposSelect(*this);
  return texto;
}

void TParametrosFiltro::AsignaParametros(TParams& parametros, int numInicial) const {
  TParams nuevos;
  if (ConParametros) {
    UnicodeString texto;
    int numero = numInicial;
    Redactor(texto, true, numero, &nuevos).Sentencia(*this);
  }
  parametros = std::move(nuevos);
}

}  // namespace vel

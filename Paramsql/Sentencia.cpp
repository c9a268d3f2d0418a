// The statement, its clauses and its parameters.

#include "Paramsql/Redactor.h"
#include "Paramsql/TParametrosFiltro.h"

namespace vel {

UnicodeString TParametrosFiltro::DameSentenciaSQL(bool conParametros, int numInicial) {
  UnicodeString texto;
  int numero = numInicial;
  Redactor(texto, conParametros, numero).Sentencia(*this);
  for (TParametrosFiltro* f = this; f != nullptr; f = f->ParametrosUnion.get())
    f->ConParametros = conParametros;
  return texto;
}

UnicodeString TParametrosFiltro::DameWhere(bool conParametros, int& num) {
  UnicodeString texto;
  int numero = num;
  Redactor(texto, conParametros, numero).Where(ParamWhere);
  ConParametros = conParametros;
  num = numero;
  return texto;
}

UnicodeString TParametrosFiltro::DameCondWhere(bool conParametros, int& num) {
  UnicodeString texto;
  int numero = num;
  Redactor(texto, conParametros, numero).CondicionesWhere(ParamWhere);
  ConParametros = conParametros;
  num = numero;
  return texto;
}

UnicodeString TParametrosFiltro::DameHaving(bool conParametros, int& num) {
  UnicodeString texto;
  int numero = num;
  Redactor(texto, conParametros, numero).Having(ParamHaving);
  ConParametros = conParametros;
  num = numero;
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

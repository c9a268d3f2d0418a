// The statement, its clauses and its parameters.

#include "Paramsql/Redactor.h"
#include "Paramsql/TParametrosFiltro.h"

namespace vel {

UnicodeString TParametrosFiltro::DameSentenciaSQL(bool conParametros, int numInicial) {
  for (TParametrosFiltro* f = this; f != nullptr; f = f->ParametrosUnion.get())
    f->ConParametros = conParametros;
  UnicodeString texto;
  int numero = numInicial;
  Redactor(texto, conParametros, numero).Sentencia(*this);
  return texto;
}

UnicodeString TParametrosFiltro::DameWhere(bool conParametros, int& num) {
  ConParametros = conParametros;
  UnicodeString texto;
  Redactor(texto, conParametros, num).Where(ParamWhere);
  return texto;
}

UnicodeString TParametrosFiltro::DameCondWhere(bool conParametros, int& num) {
  ConParametros = conParametros;
  UnicodeString texto;
  Redactor(texto, conParametros, num).CondicionesWhere(ParamWhere);
  return texto;
}

UnicodeString TParametrosFiltro::DameHaving(bool conParametros, int& num) {
  ConParametros = conParametros;
  UnicodeString texto;
  Redactor(texto, conParametros, num).Having(ParamHaving);
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

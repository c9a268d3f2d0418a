// The operator functions: pieces of WHERE and of HAVING from the same code.

#include "Paramsql/Redactor.h"
#include "Paramsql/TParametrosFiltro.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel {
namespace {

using Clausula = Redactor::Clausula;
using Pieza = Redactor::Pieza;

UnicodeString Escribe(const TParamWhereSimpleArray& lista, int indice, std::u16string_view abre,
                      int conParametros, int* contador, Clausula clausula, Pieza pieza) {
  if (indice < 0 || static_cast<std::size_t>(indice) >= lista.size()) {
    throw EInvalidOperation(u"La condición " + IntToStr(indice) + u" no existe");
  }
  UnicodeString texto;
  const TParamWhereSimple* const condicion = lista[static_cast<std::size_t>(indice)].get();
  if (condicion == nullptr) return texto;
  int numero = contador != nullptr ? *contador : 0;
  Redactor redactor(texto, conParametros != 0, numero);
  (redactor.*pieza)(*condicion, abre, clausula);
  if (contador != nullptr) *contador = numero;
  return texto;
}

}  // namespace

UnicodeString TParametrosFiltro::DameWhereDefault(int indice, std::u16string_view abre, int conParametros,
                                                  int* contador) const {
  return Escribe(ParamWhere, indice, abre, conParametros, contador, Clausula::Where, &Redactor::Comparacion);
}

UnicodeString TParametrosFiltro::DameWhereLIKE(int indice, std::u16string_view abre, int conParametros,
                                               int* contador) const {
  return Escribe(ParamWhere, indice, abre, conParametros, contador, Clausula::Where, &Redactor::Patron);
}

UnicodeString TParametrosFiltro::DameWhereINNOTIN(int indice, std::u16string_view abre, int conParametros,
                                                  int* contador) const {
  return Escribe(ParamWhere, indice, abre, conParametros, contador, Clausula::Where, &Redactor::Pertenencia);
}

UnicodeString TParametrosFiltro::DameWhereISNULLNOTNULL(int indice, std::u16string_view abre,
                                                        int conParametros, int* contador) const {
  return Escribe(ParamWhere, indice, abre, conParametros, contador, Clausula::Where, &Redactor::PruebaNulo);
}

UnicodeString TParametrosFiltro::DameWhereBETWEEN(int indice, std::u16string_view abre, int conParametros,
                                                  int* contador) const {
  return Escribe(ParamWhere, indice, abre, conParametros, contador, Clausula::Where, &Redactor::Intervalo);
}

UnicodeString TParametrosFiltro::DameWhereExists(int indice, std::u16string_view abre, int conParametros,
                                                 int* contador) const {
  return Escribe(ParamWhere, indice, abre, conParametros, contador, Clausula::Where, &Redactor::Existencia);
}

UnicodeString TParametrosFiltro::DameHavingDefault(int indice, std::u16string_view abre, int conParametros,
                                                   int* contador) const {
  return Escribe(ParamHaving, indice, abre, conParametros, contador, Clausula::Having,
                 &Redactor::Comparacion);
}

UnicodeString TParametrosFiltro::DameHavingLIKE(int indice, std::u16string_view abre, int conParametros,
                                                int* contador) const {
  return Escribe(ParamHaving, indice, abre, conParametros, contador, Clausula::Having, &Redactor::Patron);
}

UnicodeString TParametrosFiltro::DameHavingINNOTIN(int indice, std::u16string_view abre, int conParametros,
                                                   int* contador) const {
  return Escribe(ParamHaving, indice, abre, conParametros, contador, Clausula::Having,
                 &Redactor::Pertenencia);
}

UnicodeString TParametrosFiltro::DameHavingISNULLNOTNULL(int indice, std::u16string_view abre,
                                                         int conParametros, int* contador) const {
  return Escribe(ParamHaving, indice, abre, conParametros, contador, Clausula::Having, &Redactor::PruebaNulo);
}

UnicodeString TParametrosFiltro::DameHavingBETWEEN(int indice, std::u16string_view abre, int conParametros,
                                                   int* contador) const {
  return Escribe(ParamHaving, indice, abre, conParametros, contador, Clausula::Having, &Redactor::Intervalo);
}

UnicodeString TParametrosFiltro::DameHavingExists(int indice, std::u16string_view abre, int conParametros,
                                                  int* contador) const {
  return Escribe(ParamHaving, indice, abre, conParametros, contador, Clausula::Having, &Redactor::Existencia);
}

}  // namespace vel

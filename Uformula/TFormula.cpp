#include "Uformula/TFormula.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <new>
#include <utility>
#include <vector>

#include "Uformula/Arbol.h"
#include "Uformula/Evaluador.h"
#include "Uformula/FuncionesInternas.h"
#include "Uformula/Operadores.h"
#include "Uformula/Variables.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel {

/// A formula is built beside the present one, which stays when memory runs out: there are two of each.
struct TFormula::Interior {
  void CambiaArbol() noexcept {
    std::swap(arbol, otro);
    evaluador.Usa(*arbol);
  }

  UnicodeString texto;
  UnicodeString otroTexto;
  std::array<formula::Arbol, 2> arboles;
  formula::Arbol* arbol = &arboles[0];
  formula::Arbol* otro = &arboles[1];
  formula::Variables variables;
  formula::Enlazadas enlazadas;
  formula::Evaluador evaluador{*arbol, variables, enlazadas};
};

namespace {

const formula::Paso& PasoNumero(const formula::Arbol& arbol, const formula::Serie<std::uint32_t>& pasos,
                                std::size_t numero) {
  if (numero >= pasos.Cuenta()) throw EInvalidOperation(u"La fórmula no tiene ese elemento");
  return arbol.Pasos()[pasos[numero]];
}

}  // namespace

TFormula::TFormula() : interior_(std::make_unique<Interior>()) {}

TFormula::~TFormula() = default;

bool TFormula::NewFormula(std::u16string_view formula) {
  Interior& i = *interior_;
  i.otroTexto = formula;
  std::swap(i.texto, i.otroTexto);
  try {
    return FormateaFormula(i.texto);
  } catch (const std::bad_alloc&) {
    std::swap(i.texto, i.otroTexto);
    throw;
  }
}

bool TFormula::FormateaFormula(std::u16string_view formula) {
  Interior& i = *interior_;
  try {
    i.otro->Construye(formula);
  } catch (const Exception&) {
    // One that cannot be built leaves none.
    i.arbol->Vacia();
    throw;
  }
  i.CambiaArbol();
  try {
    Execute();
  } catch (const std::bad_alloc&) {
    i.CambiaArbol();
    throw;
  }
  return true;
}

void TFormula::SetVariables(const TStringList& lista) { interior_->variables.Pon(lista); }

TVariableEnlazada TFormula::EnlazaVariable(std::u16string_view nombre) {
  double numero = 0;
  if (nombre.empty() || nombre.find(u' ') != std::u16string_view::npos || TryStrToFloat(nombre, numero)) {
    throw EInvalidOperation(u"'" + UnicodeString(nombre) + u"' no puede ser el nombre de una variable");
  }
  return TVariableEnlazada(&interior_->enlazadas.Enlaza(nombre).valor);
}

double TFormula::Execute() { return interior_->evaluador.Ejecuta(); }

std::vector<TFallaRenglon> TFormula::Ejecuta(std::span<const TColumnaFormula> columnas,
                                             std::span<double> salida) {
  std::vector<formula::Evaluador::Columna> propias;
  for (const TColumnaFormula& c : columnas) {
    const auto falla = [&propias](std::u16string_view que) {
      throw EInvalidOperation(u"La columna " + IntToStr(static_cast<std::int64_t>(propias.size()) + 1) +
                              u" de la fórmula " + UnicodeString(que));
    };
    formula::Enlazada* const variable = interior_->enlazadas.De(c.Variable.valor_);
    if (variable == nullptr) falla(u"no es de una variable suya");
    if (c.Valores.size() != salida.size()) falla(u"no tiene tantos valores como la salida");
    for (const auto& otra : propias) {
      if (otra.variable == variable) falla(u"es de una variable que ya tiene otra");
    }
    propias.push_back({variable, c.Valores.data()});
  }
  return interior_->evaluador.Ejecuta(propias, salida);
}

bool TFormula::EsOperador(std::u16string_view texto) noexcept {
  return !texto.empty() && formula::EsOperador(texto.front());
}

bool TFormula::EsFuncionInterna(std::u16string_view nombre) noexcept {
  return formula::BuscaInterna(nombre) != nullptr;
}

void TFormula::ConfigList(TStringList& lista) { formula::OrdenaSinRepetir(lista); }

std::int32_t TFormula::Redondea(double valor) {
  const double entero = formula::RedondeaMedio(valor);
  if (std::isnan(entero)) formula::LanzaNoCabe(valor);
  return static_cast<std::int32_t>(entero);
}

UnicodeString TFormula::DameFuncionN(std::u16string_view operando) {
  return interior_->arbol->DameFuncionN(operando);
}

void TFormula::CreaFuncionN(std::u16string_view expresion) { interior_->arbol->CreaFuncionN(expresion); }

void TFormula::CreaFunciones(std::u16string_view operador) {
  const auto it = std::find(formula::kOperadores.begin(), formula::kOperadores.end(), operador);
  if (it == formula::kOperadores.end()) return;
  interior_->arbol->CreaFunciones(static_cast<formula::Operador>(it - formula::kOperadores.begin()));
}

std::size_t TFormula::CreaFuncionInterna(std::u16string_view nombre, std::u16string_view argumentos) {
  return interior_->arbol->CreaFuncionInterna(nombre, argumentos);
}

UnicodeString TFormula::RemplazaVariables(std::u16string_view operando) {
  double numero = 0;
  if (TryStrToFloat(operando, numero)) return UnicodeString(operando);
  if (const formula::Enlazada* const enlazada = interior_->enlazadas.Busca(operando)) {
    if (!std::isnan(enlazada->valor)) return FloatToStr(enlazada->valor);
  } else if (const std::ptrdiff_t variable = interior_->variables.Busca(operando); variable >= 0) {
    return UnicodeString(interior_->variables[static_cast<std::size_t>(variable)].Valor());
  }
  const std::uint32_t paso = interior_->arbol->BuscaPaso(operando);
  if (paso != formula::kNinguno) return FloatToStr(interior_->evaluador.Evalua(paso));
  return UnicodeString(operando);
}

double TFormula::Result(const FUNCTION_SIMPLE* funcion) {
  const FUNCTION_SIMPLE resuelta{funcion->operador, RemplazaVariables(funcion->izquierdo),
                                 RemplazaVariables(funcion->derecho)};
  return ResuelveFuncion(&resuelta);
}

double TFormula::ResuelveFuncion(const FUNCTION_SIMPLE* funcion) const {
  const double izquierdo = StrToFloat(funcion->izquierdo);
  const double derecho = StrToFloat(funcion->derecho);
  const auto it = std::find(formula::kOperadores.begin(), formula::kOperadores.end(), funcion->operador);
  const auto operador = static_cast<formula::Operador>(it - formula::kOperadores.begin());
  if (it != formula::kOperadores.end() && operador != formula::Operador::igual) {
    return formula::Aplica(operador, izquierdo, derecho);
  }
  if (funcion->operador.size() == 2) return 0;
  formula::LanzaOperadorDesconocido();
}

double TFormula::ResuelveFuncionIn(const FUNCTION_INTERNA* funcion) {
  const formula::FuncionInterna* interna = formula::BuscaInterna(funcion->nombre);
  if (interna == nullptr) formula::LanzaFuncionDesconocida(funcion->nombre);
  std::vector<double> argumentos;
  for (std::size_t i = 0; i < funcion->argumentos.Count(); ++i) {
    argumentos.push_back(StrToFloat(RemplazaVariables(funcion->argumentos[i])));
  }
  return formula::Llama(*interna, argumentos);
}

const UnicodeString& TFormula::Texto() const noexcept { return interior_->texto; }

std::size_t TFormula::Nodos() const noexcept { return interior_->arbol->Nodos().Cuenta(); }

std::size_t TFormula::Internas() const noexcept { return interior_->arbol->Llamadas().Cuenta(); }

FUNCTION_SIMPLE TFormula::Nodo(std::size_t numero) const {
  const formula::Arbol& arbol = *interior_->arbol;
  const formula::Paso& p = PasoNumero(arbol, arbol.Nodos(), numero);
  return {UnicodeString(formula::Texto(p.operador)), arbol.Texto(arbol.Operandos()[p.primero]),
          arbol.Texto(arbol.Operandos()[p.primero + 1])};
}

FUNCTION_INTERNA TFormula::Interna(std::size_t numero) const {
  const formula::Arbol& arbol = *interior_->arbol;
  const formula::Paso& p = PasoNumero(arbol, arbol.Llamadas(), numero);
  FUNCTION_INTERNA interna{UnicodeString(arbol.Vista(p.nombre)), {}};
  for (std::uint32_t j = 0; j < p.cuenta; ++j) {
    interna.argumentos.Add(arbol.Texto(arbol.Operandos()[p.primero + j]));
  }
  return interna;
}

TStringList TFormula::Tokens() const {
  TStringList lista;
  for (const UnicodeString& token : interior_->arbol->Tokens()) lista.Add(token);
  return lista;
}

}  // namespace vel

#include <bit>

#include "Uformula/Arbol.h"
#include "framework/Numeros.h"

namespace vel::formula {
namespace {

constexpr std::uint32_t kComparaciones = Bit(Operador::menor) | Bit(Operador::mayor);
constexpr std::uint32_t kSignos = Bit(Operador::mas) | Bit(Operador::menos);
constexpr std::uint32_t kDobles =
    Bit(Operador::distinto) | Bit(Operador::menorIgual) | Bit(Operador::mayorIgual);

}  // namespace

// Folds a flat expression whose operators are the topmost noted. True when it became a node, which is then
// the unit at its beginning; false when it is a single token, left as it stands.
bool Arbol::Pliega(Tramo expresion) {
  if (operadores_.EstaVacia() || operadores_.Ultimo() >= expresion.fin) return false;
  Tokeniza(expresion);
  if (tokens_.Cuenta() < 2) return false;
  PliegaTodos();
  return true;
}

// A token begins at each operator, but for one that the operator before it takes in: what follows a sign, or,
// once the expression holds a two-character comparison, any operator, belongs to that operator's token.
void Arbol::Tokeniza(Tramo expresion) {
  tokens_.Vacia();
  presentes_ = 0;
  std::size_t base = operadores_.Cuenta();
  while (base > 0 && operadores_[base - 1] < expresion.fin) presentes_ |= banda_[operadores_[--base]].Bit();
  if ((presentes_ & kComparaciones) != 0) {
    for (std::size_t i = base; i < operadores_.Cuenta(); ++i) {
      if (operadores_[i] + 1 < expresion.fin) presentes_ |= BitDoble(operadores_[i]);
    }
  }
  // Operators that take the next unit in.
  const std::uint32_t toman = (presentes_ & kDobles) != 0 ? presentes_ : kSignos;
  std::uint32_t inicio = expresion.inicio;
  std::uint32_t tomado = kNinguno;
  for (std::size_t i = operadores_.Cuenta(); i-- > base;) {
    const std::uint32_t lugar = operadores_[i];
    if (lugar == tomado) continue;
    if (lugar > inicio) tokens_.Agrega({inicio, lugar});
    inicio = lugar;
    tomado = (banda_[lugar].Bit() & toman) != 0 ? lugar + 1 : kNinguno;
  }
  if (inicio < expresion.fin) tokens_.Agrega({inicio, expresion.fin});
}

// Bit of the two-character comparison that the unit and the next one make; 0 when they make none.
std::uint32_t Arbol::BitDoble(std::uint32_t lugar) const {
  for (const Operador o : {Operador::distinto, Operador::menorIgual, Operador::mayorIgual}) {
    const std::u16string_view simbolo = formula::Texto(o);
    if (banda_[lugar].Es(simbolo[0]) && banda_[lugar + 1].Es(simbolo[1])) return Bit(o);
  }
  return 0;
}

// Every token but the first begins with an operator, and each operator has its turn: one token is left.
void Arbol::PliegaTodos() {
  for (std::uint32_t faltan = presentes_; faltan != 0; faltan &= faltan - 1) {
    PliegaOperador(static_cast<Operador>(std::countr_zero(faltan)));
  }
}

// By definition the leftmost match is folded and the search starts again from the beginning. The folded token
// keeps the first character of the one on its left, which did not match, and those before it did not either:
// one sweep from left to right folds the same tokens in the same order.
void Arbol::PliegaOperador(Operador operador) {
  if (tokens_.Cuenta() < 2) return;
  const std::u16string_view simbolo = formula::Texto(operador);
  std::size_t hechos = 1;
  for (std::size_t i = 1; i < tokens_.Cuenta(); ++i) {
    const Tramo& t = tokens_[i];
    const bool coincide =
        banda_[t.inicio].Es(simbolo[0]) &&
        (simbolo.size() == 1 || (t.inicio + 1 < t.fin && banda_[t.inicio + 1].Es(simbolo[1])));
    if (coincide) {
      CreaNodo(operador, tokens_[hechos - 1], hechos == 1, t);
    } else {
      tokens_[hechos++] = t;
    }
  }
  tokens_.Recorta(hechos);
}

// Makes the node and leaves the left token as its unit, behind the operator that the token began with unless
// it is the first of the list.
void Arbol::CreaNodo(Operador operador, Tramo& izquierdo, bool primero, const Tramo& derecho) {
  const std::u16string_view simbolo = formula::Texto(operador);
  // The right operand loses every occurrence of the operator; only the two first units of a token can be
  // operators.
  Tramo sinOperador = derecho;
  sinOperador.inicio += static_cast<std::uint32_t>(simbolo.size());
  const bool repetido = simbolo.size() == 1 && sinOperador.inicio < sinOperador.fin;
  if (repetido && banda_[sinOperador.inicio].Es(simbolo[0])) ++sinOperador.inicio;
  const std::uint32_t prefijo = !primero && banda_[izquierdo.inicio].Bit() != 0 ? 1 : 0;
  izquierdo.inicio += prefijo;

  const auto paso = static_cast<std::uint32_t>(pasos_.Cuenta());
  Paso& p = pasos_.Agrega();
  p.primero = static_cast<std::uint32_t>(operandos_.Cuenta());
  p.cuenta = 2;
  p.numero = static_cast<std::uint32_t>(nodos_.Cuenta());
  p.esLlamada = false;
  p.operador = operador;
  p.funcion = nullptr;
  LeeOperando(operandos_.Agrega(), izquierdo);
  LeeOperando(operandos_.Agrega(), sinOperador);
  nodos_.Agrega(paso);

  // There is room: a left token that is only its prefix stands directly before the right one, now used up.
  banda_[izquierdo.inicio] = Unidad::Paso(paso);
  izquierdo.fin = izquierdo.inicio + 1;
  izquierdo.inicio -= prefijo;
}

void Arbol::LeeOperando(Operando& o, const Tramo& t) {
  const Unidad u = t.fin - t.inicio == 1 ? banda_[t.inicio] : Unidad::Signo(u' ');
  o.esNumero = false;
  o.paso = kNinguno;
  if (u.EsPaso()) {
    o.paso = u.Valor();
    return;
  }
  o.texto = u.EsTrozo() ? u.ComoTrozo() : Guarda(TextoTramo(t));
  // No number begins with a letter.
  const std::u16string_view texto = Vista(o.texto);
  o.esNumero = !texto.empty() && texto.front() <= u'9' && TryStrToFloat(texto, o.numero);
}

UnicodeString Arbol::TextoTramo(const Tramo& t) const {
  UnicodeString texto;
  for (std::uint32_t i = t.inicio; i < t.fin; ++i) {
    const Unidad u = banda_[i];
    if (u.EsTrozo()) {
      texto += Vista(u.ComoTrozo());
    } else if (u.EsPaso()) {
      texto += NombrePaso(u.Valor());
    } else if (!u.EsHueco()) {
      texto += static_cast<char16_t>(u.Valor());
    }
  }
  return texto;
}

std::vector<UnicodeString> Arbol::Tokens() const {
  std::vector<UnicodeString> textos;
  for (std::size_t i = 0; i < tokens_.Cuenta(); ++i) textos.push_back(TextoTramo(tokens_[i]));
  return textos;
}

}  // namespace vel::formula

#include <algorithm>
#include <array>

#include "Uformula/Arbol.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel::formula {
namespace {

// Characters that are units by themselves, and the blank; all others are parts of operands.
constexpr auto kSignos = []() {
  std::array<bool, 128> signos{};
  for (const char16_t c : std::u16string_view(u" *+-/<=>(),")) signos[c] = true;
  return signos;
}();

constexpr bool EsSigno(char16_t c) noexcept { return c < kSignos.size() && kSignos[c]; }

// Positions in the text, which the names of steps spelled in it lengthen, stay within 32 bits.
constexpr std::size_t kMaxFormula = std::size_t{1} << 30;

[[noreturn]] void LanzaParentesis(std::u16string_view falta, std::uint32_t posicion) {
  throw EInvalidOperation(UnicodeString(falta) + IntToStr(posicion) +
                          u" de la fórmula, contada sin los espacios en blanco");
}

}  // namespace

void Arbol::Vacia() noexcept {
  ++version_;
  pasos_.Vacia();
  operandos_.Vacia();
  nodos_.Vacia();
  llamadas_.Vacia();
  raiz_ = kNinguno;
  texto_.clear();
  banda_.Vacia();
  operadores_.Vacia();
  comas_.Vacia();
  cierres_.Vacia();
  tokens_.Vacia();
}

void Arbol::Construye(std::u16string_view formula) {
  Vacia();
  if (formula.size() > kMaxFormula) throw EInvalidOperation(u"La fórmula es demasiado larga");
  Lee(formula);
  Reduce();
  if (!nodos_.EstaVacia()) raiz_ = nodos_.Ultimo();
  tokens_.Vacia();
  banda_.Vacia();
  operadores_.Vacia();
}

// Cuts the formula into the tape, with what every formula gets: a "0" before a leading "-", and "+0" at the
// end, so that the top level always holds an operator.
void Arbol::Lee(std::u16string_view formula) {
  texto_ = formula;
  const auto n = static_cast<std::uint32_t>(texto_.size());
  const Unidad cero(Trozo{n, 1});
  texto_ += u'0';

  std::uint32_t largo = 0;  // Of the text without blanks, which takes its place as it is read.
  std::uint32_t inicio = 0;
  std::uint32_t abiertos = 0;
  std::uint32_t primeroAbierto = 0;
  std::uint32_t primeroVacio = 0;
  char16_t* const texto = texto_.data();
  for (std::uint32_t i = 0; i < n; ++i) {
    const char16_t c = texto[i];
    if (!EsSigno(c)) {
      texto[largo++] = c;
      continue;
    }
    if (c == u' ') continue;
    const auto antes = static_cast<std::uint32_t>(banda_.Cuenta());
    if (largo > inicio) banda_.Agrega(Unidad(Trozo{inicio, largo - inicio}));
    if (c == u'-' && largo == 0) banda_.Agrega(cero);
    if (c == u'(' && abiertos++ == 0) primeroAbierto = largo + 1;
    if (c == u')') {
      if (abiertos-- == 0) {
        LanzaParentesis(u"No se abrió el paréntesis que se cierra en la posición ", largo + 1);
      }
      const bool vacio = texto[inicio - 1] == u'(' && TrimView({texto + inicio, largo - inicio}).empty();
      if (vacio && primeroVacio == 0 && InternaAntes(antes - 1) == nullptr) primeroVacio = inicio;
    }
    texto[largo++] = c;
    inicio = largo;
    banda_.Agrega(Unidad::Signo(c));
  }
  if (abiertos > 0) LanzaParentesis(u"No se cerró el paréntesis que se abre en la posición ", primeroAbierto);
  if (primeroVacio > 0)
    LanzaParentesis(u"No hay nada en el paréntesis que se abre en la posición ", primeroVacio);
  if (largo > inicio) banda_.Agrega(Unidad(Trozo{inicio, largo - inicio}));
  banda_.Agrega(Unidad::Signo(u'+'));
  banda_.Agrega(cero);
}

Trozo Arbol::Guarda(std::u16string_view texto) {
  const Trozo t{static_cast<std::uint32_t>(texto_.size()), static_cast<std::uint32_t>(texto.size())};
  texto_ += texto;
  return t;
}

// What is reduced stands from inicio_ on, in the same tape: it never takes more room than what was read.
void Arbol::Reduce() {
  inicio_ = static_cast<std::uint32_t>(banda_.Cuenta());
  const std::uint32_t fin = inicio_;
  for (std::uint32_t i = fin; i-- > 0;) {
    const Unidad u = banda_[i];
    if (u.Es(u')')) {
      cierres_.Agrega(inicio_);
      continue;
    }
    if (!u.Es(u'(')) {
      banda_[--inicio_] = u;
      if (u.Bit() != 0) operadores_.Agrega(inicio_);
      if (u.Es(u',')) comas_.Agrega(inicio_);
      continue;
    }
    const std::uint32_t cierre = cierres_.Saca();
    if (const FuncionInterna* funcion = InternaAntes(i)) {
      --i;
      CierraInterna(banda_[i].ComoTrozo(), funcion, cierre);
    } else {
      CierraGrupo(cierre);
    }
  }
  Pliega({inicio_, fin});
}

// The built-in that the "(" at a place of the tape calls; null when it opens a group. A built-in's name
// stands alone: "(2)SUMA(1)" calls nothing.
const FuncionInterna* Arbol::InternaAntes(std::uint32_t abre) const noexcept {
  const bool conNombre = abre > 0 && banda_[abre - 1].EsTrozo() && (abre == 1 || !banda_[abre - 2].Es(u')'));
  return conNombre ? BuscaInterna(Vista(banda_[abre - 1].ComoTrozo())) : nullptr;
}

void Arbol::CierraGrupo(std::uint32_t fin) {
  if (!Pliega({inicio_, fin})) {
    Recorta(fin);
    return;
  }
  Descarta(fin);
  banda_[fin - 1] = banda_[inicio_];
  inicio_ = fin - 1;
}

// Forgets the operators and commas before `fin`: they are inside a step.
void Arbol::Descarta(std::uint32_t fin) {
  while (!operadores_.EstaVacia() && operadores_.Ultimo() < fin) operadores_.Saca();
  while (!comas_.EstaVacia() && comas_.Ultimo() < fin) comas_.Saca();
}

Trozo Arbol::Recortado(Trozo t, std::u16string_view (*recorta)(std::u16string_view) noexcept) const noexcept {
  const std::u16string_view antes = Vista(t);
  const std::u16string_view despues = recorta(antes);
  return {t.inicio + static_cast<std::uint32_t>(despues.data() - antes.data()),
          static_cast<std::uint32_t>(despues.size())};
}

// Trims the control characters around the single token of a group that ends at `fin`; something is left of
// it. Units emptied at its end become a gap, so that a long token need not move at every level of its
// nesting. A short one moves: a sign must stand directly before what it takes in, and only short tokens end
// in a sign.
void Arbol::Recorta(std::uint32_t fin) {
  const auto seVacia = [this](std::uint32_t lugar, auto recorta) {
    Unidad& u = banda_[lugar];
    if (!u.EsTrozo()) return false;
    u = Unidad(Recortado(u.ComoTrozo(), recorta));
    return u.ComoTrozo().largo == 0;
  };
  while (inicio_ < fin && seVacia(inicio_, TrimLeftView)) ++inicio_;
  std::uint32_t queda = fin;
  while (queda > inicio_) {
    if (banda_[queda - 1].EsHueco()) {
      queda -= banda_[queda - 1].Valor();
    } else if (seVacia(queda - 1, TrimRightView)) {
      banda_[--queda] = Unidad::Hueco(1);
    } else {
      break;
    }
  }
  const std::uint32_t sobran = fin - queda;
  if (sobran == 0) return;
  constexpr std::uint32_t kCorto = 2;
  if (queda - inicio_ > kCorto) {
    banda_[fin - 1] = Unidad::Hueco(sobran);
    return;
  }
  for (std::uint32_t i = queda; i-- > inicio_;) banda_[i + sobran] = banda_[i];
  inicio_ += sobran;
  for (auto* lugares : {&operadores_, &comas_}) {
    for (std::size_t i = lugares->Cuenta(); i-- > 0 && (*lugares)[i] < fin;) (*lugares)[i] += sobran;
  }
}

// Whether a token holds an operator besides a "-" at its beginning.
bool Arbol::TieneSigno(const Tramo& token) const noexcept {
  std::size_t i = operadores_.Cuenta();
  if (i > 0 && operadores_[i - 1] == token.inicio && banda_[token.inicio].Es(u'-')) --i;
  return i > 0 && operadores_[i - 1] < token.fin;
}

// The units up to `fin` are the arguments, reduced from left to right.
void Arbol::CierraInterna(Trozo nombre, const FuncionInterna* funcion, std::uint32_t fin) {
  argumentos_.Vacia();
  while (true) {
    const std::uint32_t corte = comas_.EstaVacia() ? fin : std::min(comas_.Ultimo(), fin);
    while (inicio_ < corte && banda_[inicio_].EsHueco()) ++inicio_;
    Tramo argumento{inicio_, corte};
    const bool plegado = Pliega(argumento);
    if (plegado) argumento.fin = argumento.inicio + 1;
    Operando& o = argumentos_.Agrega();
    LeeOperando(o, argumento);
    // What goes through the folding comes out trimmed.
    if (!plegado && TieneSigno(argumento)) o.texto = Recortado(o.texto, TrimView);
    Descarta(corte);
    if (corte == fin) break;
    comas_.Saca();
    inicio_ = corte + 1;
  }
  inicio_ = fin - 1;
  banda_[inicio_] = Unidad::Paso(AgregaLlamada(nombre, funcion));
}

// Takes the gathered arguments; returns the step.
std::uint32_t Arbol::AgregaLlamada(Trozo nombre, const FuncionInterna* funcion) {
  const auto paso = static_cast<std::uint32_t>(pasos_.Cuenta());
  Paso& p = pasos_.Agrega();
  p.primero = static_cast<std::uint32_t>(operandos_.Cuenta());
  p.cuenta = static_cast<std::uint32_t>(argumentos_.Cuenta());
  p.numero = static_cast<std::uint32_t>(llamadas_.Cuenta());
  p.esLlamada = true;
  p.nombre = nombre;
  p.funcion = funcion;
  for (std::size_t i = 0; i < argumentos_.Cuenta(); ++i) operandos_.Agrega(argumentos_[i]);
  llamadas_.Agrega(paso);
  return paso;
}

}  // namespace vel::formula

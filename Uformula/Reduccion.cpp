#include <algorithm>
#include <array>

#include "Uformula/Arbol.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel::formula {
namespace {

// Characters that are units by themselves, and the blank; all others are parts of operands.
constexpr auto kSignos = [] {
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

void Arbol::Vacia() {
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
  char16_t* const texto = texto_.data();
  for (std::uint32_t i = 0; i < n; ++i) {
    const char16_t c = texto[i];
    if (!EsSigno(c)) {
      texto[largo++] = c;
      continue;
    }
    if (c == u' ') continue;
    if (largo > inicio) banda_.Agrega(Unidad(Trozo{inicio, largo - inicio}));
    if (c == u'-' && largo == 0) banda_.Agrega(cero);
    texto[largo++] = c;
    inicio = largo;
    if (c == u'(' && abiertos++ == 0) primeroAbierto = largo;
    if (c == u')' && abiertos-- == 0) {
      LanzaParentesis(u"No se abrió el paréntesis que se cierra en la posición ", largo);
    }
    banda_.Agrega(Unidad::Signo(c));
  }
  if (abiertos > 0) LanzaParentesis(u"No se cerró el paréntesis que se abre en la posición ", primeroAbierto);
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
    // A built-in's name stands alone: "(2)SUMA(1)" calls nothing.
    const bool conNombre = i > 0 && banda_[i - 1].EsTrozo() && (i == 1 || !banda_[i - 2].Es(u')'));
    const Trozo nombre = conNombre ? banda_[i - 1].ComoTrozo() : Trozo{};
    if (const FuncionInterna* funcion = conNombre ? BuscaInterna(Vista(nombre)) : nullptr) {
      CierraInterna(nombre, funcion, cierre);
      --i;
    } else {
      CierraGrupo(cierre);
    }
  }
  Pliega({inicio_, fin});
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

// Trims the control characters around the single token of a group that ends at `fin`.
void Arbol::Recorta(std::uint32_t fin) {
  const auto queda = [this](std::uint32_t lugar, auto recorta) {
    Unidad& u = banda_[lugar];
    if (!u.EsTrozo()) return true;
    const std::u16string_view antes = Vista(u.ComoTrozo());
    const std::u16string_view despues = recorta(antes);
    u = Unidad(Trozo{u.Valor() + static_cast<std::uint32_t>(despues.data() - antes.data()),
                     static_cast<std::uint32_t>(despues.size())});
    return !despues.empty();
  };
  while (inicio_ < fin && !queda(inicio_, TrimLeftView)) ++inicio_;
  std::uint32_t sobran = 0;
  while (inicio_ < fin - sobran && !queda(fin - sobran - 1, TrimRightView)) ++sobran;
  if (sobran == 0) return;
  for (std::uint32_t i = fin - sobran; i-- > inicio_;) banda_[i + sobran] = banda_[i];
  inicio_ += sobran;
  for (auto* lugares : {&operadores_, &comas_}) {
    for (std::size_t i = lugares->Cuenta(); i-- > 0 && (*lugares)[i] < fin;) (*lugares)[i] += sobran;
  }
}

// The units up to `fin` are the arguments, reduced from left to right.
void Arbol::CierraInterna(Trozo nombre, const FuncionInterna* funcion, std::uint32_t fin) {
  argumentos_.Vacia();
  while (true) {
    const std::uint32_t corte = comas_.EstaVacia() ? fin : std::min(comas_.Ultimo(), fin);
    Tramo argumento{inicio_, corte};
    if (Pliega(argumento)) argumento.fin = argumento.inicio + 1;
    LeeOperando(argumentos_.Agrega(), argumento);
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

void Arbol::CreaFuncionN(std::u16string_view expresion) {
  ++version_;
  banda_.Vacia();
  operadores_.Vacia();
  while (!expresion.empty()) {
    const bool operador = EsOperador(expresion.front());
    const auto fin =
        std::find_if(expresion.begin(), expresion.end(), [](char16_t c) { return EsOperador(c); });
    const std::size_t largo = operador ? 1 : static_cast<std::size_t>(fin - expresion.begin());
    if (operador) {
      banda_.Agrega(Unidad::Signo(expresion.front()));
    } else {
      banda_.Agrega(Unidad(Guarda(expresion.substr(0, largo))));
    }
    expresion.remove_prefix(largo);
  }
  // The leftmost on top.
  for (std::uint32_t i = static_cast<std::uint32_t>(banda_.Cuenta()); i-- > 0;) {
    if (banda_[i].Bit() != 0) operadores_.Agrega(i);
  }
  Tokeniza({0, static_cast<std::uint32_t>(banda_.Cuenta())});
  PliegaTodos();
}

UnicodeString Arbol::DameFuncionN(std::u16string_view operando) {
  const std::u16string_view prueba = operando.substr(operando.starts_with(u'-') ? 1 : 0);
  if (std::none_of(prueba.begin(), prueba.end(), [](char16_t c) { return EsOperador(c); })) {
    return UnicodeString(operando);
  }
  CreaFuncionN(operando);
  return Trim(TextoTramo(tokens_[0]));
}

std::uint32_t Arbol::CreaFuncionInterna(std::u16string_view nombre, std::u16string_view argumentos) {
  ++version_;
  argumentos_.Vacia();
  while (true) {
    const std::size_t coma = argumentos.find(u',');
    Operando& o = argumentos_.Agrega();
    o = {};
    o.texto = Guarda(argumentos.substr(0, coma));
    o.esNumero = TryStrToFloat(Vista(o.texto), o.numero);
    if (coma == std::u16string_view::npos) break;
    argumentos.remove_prefix(coma + 1);
  }
  return pasos_[AgregaLlamada(Guarda(nombre), BuscaInterna(nombre))].numero;
}

}  // namespace vel::formula

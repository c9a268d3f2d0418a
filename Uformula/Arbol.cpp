#include "Uformula/Arbol.h"

#include <algorithm>
#include <utility>

#include "framework/Numeros.h"

namespace vel::formula {
namespace {

constexpr std::u16string_view kNodo = u"FUN";

}  // namespace

UnicodeString Arbol::NombrePaso(std::uint32_t paso) const {
  const Paso& p = pasos_[paso];
  UnicodeString nombre(p.esLlamada ? Vista(p.nombre) : kNodo);
  AppendInt(nombre, p.numero);
  return nombre;
}

UnicodeString Arbol::Texto(const Operando& o) const {
  return o.paso == kNinguno ? UnicodeString(Vista(o.texto)) : NombrePaso(o.paso);
}

// A name ends in its number, written without leading zeros. Where the name itself ends in digits, every way
// to part them is tried.
std::uint32_t Arbol::BuscaPaso(std::u16string_view nombre) const noexcept {
  constexpr std::size_t kMaxDigitos = 10;
  const std::size_t previo = nombre.find_last_not_of(u"0123456789");
  std::size_t corte = previo == std::u16string_view::npos ? 0 : previo + 1;
  if (nombre.size() > kMaxDigitos) corte = std::max(corte, nombre.size() - kMaxDigitos);
  for (; corte < nombre.size(); ++corte) {
    if (nombre[corte] == u'0' && corte + 1 < nombre.size()) continue;
    std::int64_t leido = 0;
    if (!TryStrToInt64(nombre.substr(corte), leido)) continue;
    const auto numero = static_cast<std::size_t>(leido);
    const std::u16string_view raiz = nombre.substr(0, corte);
    if (numero < nodos_.Cuenta() && SameText(raiz, kNodo)) return nodos_[numero];
    if (numero < llamadas_.Cuenta() && SameText(raiz, Vista(pasos_[llamadas_[numero]].nombre))) {
      return llamadas_[numero];
    }
  }
  return kNinguno;
}

// Does a piece of work of which nothing stays when it throws.
template <class Trabajo>
auto Arbol::Entero(const Trabajo& trabajo) {
  ++version_;
  const std::size_t pasos = pasos_.Cuenta();
  const std::size_t operandos = operandos_.Cuenta();
  const std::size_t nodos = nodos_.Cuenta();
  const std::size_t llamadas = llamadas_.Cuenta();
  const std::size_t texto = texto_.size();
  Serie<Unidad> banda(banda_);
  Serie<std::uint32_t> operadores(operadores_);
  Serie<Tramo> tokens(tokens_);
  try {
    return trabajo();
  } catch (...) {
    pasos_.Recorta(pasos);
    operandos_.Recorta(operandos);
    nodos_.Recorta(nodos);
    llamadas_.Recorta(llamadas);
    texto_.resize(texto);
    banda_ = std::move(banda);
    operadores_ = std::move(operadores);
    tokens_ = std::move(tokens);
    throw;
  }
}

void Arbol::CreaFunciones(Operador operador) {
  Entero([&] { PliegaOperador(operador); });
}

void Arbol::CreaFuncionN(std::u16string_view expresion) {
  Entero([&] { PonExpresion(expresion); });
}

// Folds an expression given as text: its tape takes the place of the present one.
void Arbol::PonExpresion(std::u16string_view expresion) {
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
  return Entero([&] {
    PonExpresion(operando);
    return Trim(TextoTramo(tokens_[0]));
  });
}

std::uint32_t Arbol::CreaFuncionInterna(std::u16string_view nombre, std::u16string_view argumentos) {
  return Entero([&] {
    argumentos_.Vacia();
    std::u16string_view resto = argumentos;
    while (true) {
      const std::size_t coma = resto.find(u',');
      Operando& o = argumentos_.Agrega();
      o = {};
      o.texto = Guarda(resto.substr(0, coma));
      o.esNumero = TryStrToFloat(Vista(o.texto), o.numero);
      if (coma == std::u16string_view::npos) break;
      resto.remove_prefix(coma + 1);
    }
    return pasos_[AgregaLlamada(Guarda(nombre), BuscaInterna(nombre))].numero;
  });
}

}  // namespace vel::formula

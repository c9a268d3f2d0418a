#include "Uformula/FuncionesInternas.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <iterator>
#include <limits>
#include <numeric>

#include "Uformula/Potencia.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "framework/Texto.h"

namespace vel::formula {
namespace {

using Argumentos = std::span<const double>;

double Entero32(double valor) noexcept {
  const double entero = std::trunc(valor);
  const bool cabe = entero >= std::numeric_limits<std::int32_t>::min() &&
                    entero <= std::numeric_limits<std::int32_t>::max();
  return cabe ? entero : std::numeric_limits<double>::quiet_NaN();
}

constexpr auto kInternas = std::to_array<FuncionInterna>({
    {u"SUMA", 1, [](Argumentos a) { return std::accumulate(a.begin(), a.end(), 0.0); }},
    {u"PRODCTO", 1,
     [](Argumentos a) { return std::accumulate(a.begin(), a.end(), 1.0, std::multiplies<>()); }},
    {u"ABS", 1, [](Argumentos a) { return std::abs(Entero32(a[0])); }, true},
    {u"PTENCIA", 2, [](Argumentos a) { return Potencia(a[0], a[1]); }},
    {u"CUBO", 1, [](Argumentos a) { return Potencia(a[0], 3.0); }},
    {u"QADRADO", 1, [](Argumentos a) { return a[0] * a[0]; }},
    {u"MIN", 1, [](Argumentos a) { return *std::min_element(a.begin(), a.end()); }},
    {u"MAX", 1, [](Argumentos a) { return *std::max_element(a.begin(), a.end()); }},
    {u"RAIZ", 1, [](Argumentos a) { return std::sqrt(a[0]); }},
    {u"RDONDEA", 1, [](Argumentos a) { return RedondeaMedio(a[0]); }, true},
    {u"TRUNCAR", 1, [](Argumentos a) { return std::floor(a[0]); }},
    {u"FRACC", 1, [](Argumentos a) { return a[0] - std::trunc(a[0]); }},
    {u"SIGNO", 1, [](Argumentos a) { return static_cast<double>((a[0] > 0) - (a[0] < 0)); }},
    {u"INVERSO", 1, [](Argumentos a) { return a[0] * -1; }},
    {u"SI", 3, [](Argumentos a) { return a[0] != 0 ? a[1] : a[2]; }},
    {u"NO", 1, [](Argumentos a) { return static_cast<double>(a[0] == 0); }},
});

// A call goes by its name and a number, "SUMA0", so that a name ends in no digit and is not that of the
// nodes.
constexpr bool EsNombre(std::u16string_view nombre) noexcept {
  return !nombre.empty() && nombre != u"FUN" &&
         std::all_of(nombre.begin(), nombre.end(), [](char16_t c) { return c >= u'A' && c <= u'Z'; });
}

constexpr bool SeDistinguen() noexcept {
  for (std::size_t i = 0; i < kInternas.size(); ++i) {
    if (!EsNombre(kInternas[i].nombre) || kInternas[i].valor == nullptr) return false;
    for (std::size_t j = 0; j < i; ++j)
      if (kInternas[i].nombre == kInternas[j].nombre) return false;
  }
  return true;
}
static_assert(SeDistinguen(), "a built-in has no function, another's name, or one that formulas cannot tell");

}  // namespace

const FuncionInterna* BuscaInterna(std::u16string_view nombre) noexcept {
  const auto* const it =
      std::find_if(std::begin(kInternas), std::end(kInternas),
                   [nombre](const FuncionInterna& f) { return SameText(f.nombre, nombre); });
  return it == std::end(kInternas) ? nullptr : it;
}

double Llama(const FuncionInterna& funcion, Argumentos argumentos) {
  if (argumentos.size() < funcion.argumentos) {
    throw EInvalidOperation(u"Faltan argumentos en la función [" + UnicodeString(funcion.nombre) + u"]");
  }
  const double valor = funcion.valor(argumentos);
  if (funcion.entero32 && std::isnan(valor)) LanzaNoCabe(argumentos[0]);
  return valor;
}

double RedondeaMedio(double valor) noexcept { return Entero32(valor + 0.5); }

void LanzaNoCabe(double valor) {
  throw EInvalidOperation(u"El valor " + FloatToStr(valor) + u" no cabe en un entero de 32 bits");
}

}  // namespace vel::formula

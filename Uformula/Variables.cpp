#include "Uformula/Variables.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

#include "Uformula/FuncionesInternas.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel::formula {
namespace {

// Names that match without regard to case give the same number.
std::size_t Dispersa(std::u16string_view nombre) noexcept {
  std::uint32_t h = 0;
  for (const char16_t c : nombre) h = h * 31 + (c < 0x80 ? c | 0x20u : FoldCase(c));
  return h ^ (h >> 7);
}

// "FUN12", "suma3": a node's or a call's name, whether there is such a one or not.
bool NombraPaso(std::u16string_view nombre) noexcept {
  const std::size_t fin = nombre.find_last_not_of(u"0123456789");
  if (fin == std::u16string_view::npos || fin + 1 == nombre.size()) return false;
  const std::u16string_view raiz = nombre.substr(0, fin + 1);
  return SameText(raiz, u"FUN") || BuscaInterna(raiz) != nullptr;
}

}  // namespace

void OrdenaSinRepetir(TStringList& lista) {
  lista.SetSorted(true);
  lista.SetDuplicates(TDuplicates::dupError);
}

void Variables::Pon(const TStringList& lista) {
  if (PonValores(lista)) return;
  Variables nuevas;
  try {
    nuevas.Lee(lista);
  } catch (const EStringListError&) {
    // A list that is refused leaves no variables.
    *this = Variables(version_ + 1, versionValores_ + 1);
    throw;
  }
  nuevas.version_ = version_ + 1;
  nuevas.versionValores_ = versionValores_ + 1;
  *this = std::move(nuevas);
}

// Fills a new object.
void Variables::Lee(const TStringList& lista) {
  TStringList pares;
  for (std::size_t i = 0; i < lista.Count(); ++i) {
    if (lista[i].find(u'=') != UnicodeString::npos) pares.Add(lista[i]);
  }
  TStringList ordenada;
  OrdenaSinRepetir(ordenada);
  ordenada.AddStrings(pares);
  const std::size_t n = ordenada.Count();
  casillas_.resize(std::bit_ceil(2 * n + 1));
  variables_.reserve(n);
  for (std::size_t i = 0; i < n; ++i) {
    const UnicodeString& linea = ordenada[i];
    const std::size_t igual = linea.find(u'=');
    const std::size_t casilla = Casilla(std::u16string_view(linea).substr(0, igual));
    if (casillas_[casilla] != 0) continue;
    Variable& v = variables_.emplace_back(Variable{linea, igual});
    v.esNumero = TryStrToFloat(v.Valor(), v.numero);
    casillas_[casilla] = static_cast<std::uint32_t>(variables_.size());
    nombranPasos_ = nombranPasos_ || NombraPaso(v.Nombre());
  }
  // The places are kept for lists that are all pairs, each of a name of its own.
  if (variables_.size() < lista.Count()) return;
  for (std::size_t i = 0; i < n; ++i) {
    const std::u16string_view linea = lista[i];
    orden_.push_back(casillas_[Casilla(linea.substr(0, linea.find(u'=')))] - 1);
  }
  leidos_.resize(n);
}

// True when the lines have the names that stand, in the same order, and the same ones have a value. All are
// read, and have room, before the first is set.
bool Variables::PonValores(const TStringList& lista) {
  if (orden_.empty() || lista.Count() != orden_.size()) return false;
  for (std::size_t i = 0; i < orden_.size(); ++i) {
    const std::u16string_view linea = lista[i];
    Variable& v = variables_[orden_[i]];
    const std::size_t cabeza = v.largoNombre + 1;
    if (linea.substr(0, cabeza) != std::u16string_view(v.linea).substr(0, cabeza)) return false;
    if ((linea.size() == cabeza) != v.Vacia()) return false;
    Leido& l = leidos_[i];
    l.cambia = linea != v.linea;
    l.esNumero = v.esNumero;
    if (l.cambia) {
      v.linea.reserve(linea.size());
      l.esNumero = TryStrToFloat(linea.substr(cabeza), l.numero);
    }
  }
  for (std::size_t i = 0; i < orden_.size(); ++i) {
    if (!leidos_[i].cambia) continue;
    Variable& v = variables_[orden_[i]];
    v.linea = std::u16string_view(lista[i]);
    v.numero = leidos_[i].numero;
    v.esNumero = leidos_[i].esNumero;
  }
  ++versionValores_;
  return true;
}

std::size_t Variables::Casilla(std::u16string_view nombre) const noexcept {
  const std::size_t mascara = casillas_.size() - 1;
  std::size_t i = Dispersa(nombre) & mascara;
  const auto esta = [nombre](std::u16string_view otro) {
    // Most names are spelled alike.
    return otro.size() == nombre.size() &&
           (std::memcmp(otro.data(), nombre.data(), nombre.size() * sizeof(char16_t)) == 0 ||
            SameText(otro, nombre));
  };
  while (casillas_[i] != 0 && !esta(variables_[casillas_[i] - 1].Nombre())) i = (i + 1) & mascara;
  return i;
}

std::ptrdiff_t Variables::Busca(std::u16string_view nombre) const noexcept {
  if (casillas_.empty()) return -1;
  const std::uint32_t lugar = casillas_[Casilla(nombre)];
  if (lugar == 0 || variables_[lugar - 1].Vacia()) return -1;
  return static_cast<std::ptrdiff_t>(lugar) - 1;
}

Enlazada& Enlazadas::Enlaza(std::u16string_view nombre) {
  if (Enlazada* esta = Busca(nombre)) return *esta;
  Enlazada& nueva = enlazadas_.emplace(nombre, Enlazada()).first->second;
  nombranPasos_ = nombranPasos_ || NombraPaso(nombre);
  return nueva;
}

Enlazada* Enlazadas::Busca(std::u16string_view nombre) noexcept {
  const auto it = enlazadas_.find(nombre);
  return it == enlazadas_.end() ? nullptr : &it->second;
}

Enlazada* Enlazadas::De(const double* valor) noexcept {
  const auto it = std::find_if(enlazadas_.begin(), enlazadas_.end(),
                               [valor](const auto& e) { return &e.second.valor == valor; });
  return it == enlazadas_.end() ? nullptr : &it->second;
}

}  // namespace vel::formula

#include "framework/TStringList.h"

#include <algorithm>
#include <utility>

#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel {
namespace {

[[noreturn]] void FallaDuplicado(std::u16string_view texto) {
  throw EStringListError(u"La lista de cadenas no admite duplicados: " + UnicodeString(texto));
}

// Length of the name of a name=value text; npos when it holds no "=".
std::size_t LargoNombre(std::u16string_view texto) noexcept { return texto.find(u'='); }

}  // namespace

const TStringList::Entrada& TStringList::En(std::size_t indice) const {
  if (indice < entradas_.size()) return entradas_[indice];
  throw EStringListError(u"Índice de la lista fuera de rango (" +
                         IntToStr(static_cast<std::int64_t>(indice)) + u")");
}

void TStringList::ExigeSinOrden() const {
  if (ordenada_) throw EStringListError(u"La operación no se permite en una lista ordenada");
}

std::size_t TStringList::CotaInferior(std::u16string_view texto) const noexcept {
  const auto menor = [](const Entrada& e, std::u16string_view t) { return CompareText(e.texto, t) < 0; };
  const auto it = std::lower_bound(entradas_.begin(), entradas_.end(), texto, menor);
  return static_cast<std::size_t>(it - entradas_.begin());
}

const UnicodeString& TStringList::Strings(std::size_t indice) const { return En(indice).texto; }

TObject* TStringList::Objects(std::size_t indice) const { return En(indice).objeto.get(); }

std::size_t TStringList::AddObject(std::u16string_view texto, std::unique_ptr<TObject> objeto) {
  std::size_t lugar = entradas_.size();
  if (ordenada_) {
    lugar = CotaInferior(texto);
    if (lugar < entradas_.size() && SameText(entradas_[lugar].texto, texto)) {
      if (duplicados_ == TDuplicates::dupIgnore) return lugar;
      if (duplicados_ == TDuplicates::dupError) {
        FallaDuplicado(texto);
      }
    }
  }
  entradas_.insert(entradas_.begin() + static_cast<std::ptrdiff_t>(lugar),
                   Entrada{UnicodeString(texto), std::move(objeto)});
  return lugar;
}

void TStringList::Insert(std::size_t indice, std::u16string_view texto) {
  ExigeSinOrden();
  if (indice != entradas_.size()) En(indice);
  entradas_.insert(entradas_.begin() + static_cast<std::ptrdiff_t>(indice),
                   Entrada{UnicodeString(texto), nullptr});
}

void TStringList::Put(std::size_t indice, std::u16string_view texto) {
  ExigeSinOrden();
  En(indice);
  entradas_[indice].texto = texto;
}

void TStringList::Delete(std::size_t indice) {
  En(indice);
  entradas_.erase(entradas_.begin() + static_cast<std::ptrdiff_t>(indice));
}

void TStringList::AddStrings(const TStringList& otra) {
  if (ordenada_ && entradas_.empty() && duplicados_ == TDuplicates::dupError) {
    // Sorted at once: one by one each would move those behind it.
    std::vector<Entrada> todas;
    for (const Entrada& e : otra.entradas_) todas.push_back(Entrada{e.texto, nullptr});
    std::stable_sort(todas.begin(), todas.end(),
                     [](const Entrada& a, const Entrada& b) { return CompareText(a.texto, b.texto) < 0; });
    const auto repetida =
        std::adjacent_find(todas.begin(), todas.end(),
                           [](const Entrada& a, const Entrada& b) { return SameText(a.texto, b.texto); });
    if (repetida != todas.end()) FallaDuplicado(repetida->texto);
    entradas_ = std::move(todas);
    return;
  }
  // By index: a list may be added to itself.
  const std::size_t n = otra.Count();
  for (std::size_t i = 0; i < n; ++i) Add(UnicodeString(otra.Strings(i)));
}

std::ptrdiff_t TStringList::IndexOf(std::u16string_view texto) const noexcept {
  if (ordenada_) {
    const std::size_t lugar = CotaInferior(texto);
    const bool esta = lugar < entradas_.size() && SameText(entradas_[lugar].texto, texto);
    return esta ? static_cast<std::ptrdiff_t>(lugar) : -1;
  }
  const auto it = std::find_if(entradas_.begin(), entradas_.end(),
                               [texto](const Entrada& e) { return SameText(e.texto, texto); });
  return it == entradas_.end() ? -1 : it - entradas_.begin();
}

std::ptrdiff_t TStringList::IndexOfName(std::u16string_view nombre) const noexcept {
  const auto it = std::find_if(entradas_.begin(), entradas_.end(), [nombre](const Entrada& e) {
    const std::size_t largo = LargoNombre(e.texto);
    return largo == nombre.size() && SameText(std::u16string_view(e.texto).substr(0, largo), nombre);
  });
  return it == entradas_.end() ? -1 : it - entradas_.begin();
}

UnicodeString TStringList::Names(std::size_t indice) const {
  const UnicodeString& texto = Strings(indice);
  const std::size_t largo = LargoNombre(texto);
  return largo == UnicodeString::npos ? UnicodeString() : texto.substr(0, largo);
}

UnicodeString TStringList::ValueFromIndex(std::size_t indice) const {
  const UnicodeString& texto = Strings(indice);
  const std::size_t largo = LargoNombre(texto);
  return largo == UnicodeString::npos ? UnicodeString() : texto.substr(largo + 1);
}

UnicodeString TStringList::Values(std::u16string_view nombre) const {
  const std::ptrdiff_t indice = IndexOfName(nombre);
  return indice < 0 ? UnicodeString() : ValueFromIndex(static_cast<std::size_t>(indice));
}

void TStringList::SetValue(std::u16string_view nombre, std::u16string_view valor) {
  UnicodeString texto(nombre);
  texto.append(u"=").append(valor);
  const std::ptrdiff_t indice = IndexOfName(nombre);
  if (indice < 0) {
    Add(texto);
  } else {
    Put(static_cast<std::size_t>(indice), texto);
  }
}

void TStringList::SetSorted(bool ordenada) {
  if (ordenada && !ordenada_) {
    std::stable_sort(entradas_.begin(), entradas_.end(),
                     [](const Entrada& a, const Entrada& b) { return CompareText(a.texto, b.texto) < 0; });
  }
  ordenada_ = ordenada;
}

UnicodeString TStringList::Text() const {
  UnicodeString texto;
  for (const Entrada& e : entradas_) texto.append(e.texto).append(u"\r\n");
  return texto;
}

void TStringList::SetText(std::u16string_view texto) {
  // The text may be one of this list's own.
  const UnicodeString copia(texto);
  texto = copia;
  Clear();
  while (!texto.empty()) {
    const std::size_t fin = texto.find_first_of(u"\r\n");
    Add(texto.substr(0, fin));
    if (fin == std::u16string_view::npos) return;
    texto.remove_prefix(fin + (texto.substr(fin, 2) == u"\r\n" ? 2 : 1));
  }
}

}  // namespace vel

#include "framework/TStringList.h"

#include <algorithm>
#include <iterator>
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
  return Coloca({UnicodeString(texto), std::move(objeto)});
}

std::size_t TStringList::Coloca(Entrada entrada) {
  std::size_t lugar = entradas_.size();
  if (ordenada_) {
    lugar = CotaInferior(entrada.texto);
    if (lugar < entradas_.size() && SameText(entradas_[lugar].texto, entrada.texto)) {
      if (duplicados_ == TDuplicates::dupIgnore) return lugar;
      if (duplicados_ == TDuplicates::dupError) {
        FallaDuplicado(entrada.texto);
      }
    }
  }
  entradas_.insert(entradas_.begin() + static_cast<std::ptrdiff_t>(lugar), std::move(entrada));
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
  TStringList copia;
  for (const Entrada& e : otra.entradas_) copia.entradas_.push_back({e.texto, nullptr});
  AddStrings(std::move(copia));
}

void TStringList::AddStrings(TStringList&& otra) {
  if (&otra == this) return;
  std::vector<Entrada>& nuevas = otra.entradas_;
  const auto menor = [](const Entrada& a, const Entrada& b) { return CompareText(a.texto, b.texto) < 0; };
  const bool sinRepetidas = ordenada_ && duplicados_ == TDuplicates::dupError;
  if (sinRepetidas) {
    // Sorted at once: one by one each would move those behind it.
    std::stable_sort(nuevas.begin(), nuevas.end(), menor);
    const auto repetida = std::adjacent_find(nuevas.begin(), nuevas.end(), [](const auto& a, const auto& b) {
      return SameText(a.texto, b.texto);
    });
    if (repetida != nuevas.end()) FallaDuplicado(repetida->texto);
    for (const Entrada& e : nuevas) {
      if (IndexOf(e.texto) >= 0) FallaDuplicado(e.texto);
    }
  }
  // From here on nothing throws: entries only move, into room that is there.
  const auto antes = static_cast<std::ptrdiff_t>(entradas_.size());
  if (!ordenada_ || sinRepetidas) {
    entradas_.insert(entradas_.end(), std::make_move_iterator(nuevas.begin()),
                     std::make_move_iterator(nuevas.end()));
    if (sinRepetidas)
      std::inplace_merge(entradas_.begin(), entradas_.begin() + antes, entradas_.end(), menor);
  } else {
    entradas_.reserve(entradas_.size() + nuevas.size());
    for (Entrada& e : nuevas) Coloca(std::move(e));
  }
  nuevas.clear();
}

void TStringList::SetStrings(std::vector<UnicodeString> textos) {
  TStringList nueva;
  nueva.ordenada_ = ordenada_;
  nueva.duplicados_ = duplicados_;
  nueva.SetCapacity(textos.size());
  for (UnicodeString& texto : textos) nueva.Coloca({std::move(texto), nullptr});
  *this = std::move(nueva);
}

void TStringList::Swap(std::size_t indice, UnicodeString& texto) {
  ExigeSinOrden();
  En(indice);
  entradas_[indice].texto.swap(texto);
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
  std::vector<UnicodeString> lineas;
  while (!texto.empty()) {
    const std::size_t fin = texto.find_first_of(u"\r\n");
    lineas.emplace_back(texto.substr(0, fin));
    if (fin == std::u16string_view::npos) break;
    texto.remove_prefix(fin + (texto.substr(fin, 2) == u"\r\n" ? 2 : 1));
  }
  SetStrings(std::move(lineas));
}

}  // namespace vel

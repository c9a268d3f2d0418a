#include "framework/TParams.h"

#include <algorithm>
#include <utility>

#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel {

TParam& TParams::Add(TParam parametro) { return parametros_.emplace_back(std::move(parametro)); }

const TParam& TParams::operator[](std::size_t indice) const {
  if (indice < parametros_.size()) return parametros_[indice];
  throw EDatabaseError(u"Índice de parámetro fuera de rango (" + IntToStr(static_cast<std::int64_t>(indice)) +
                       u")");
}

const TParam* TParams::FindParam(std::u16string_view nombre) const noexcept {
  const auto it = std::find_if(parametros_.begin(), parametros_.end(),
                               [nombre](const TParam& p) { return SameText(p.Name, nombre); });
  return it == parametros_.end() ? nullptr : &*it;
}

TParam* TParams::FindParam(std::u16string_view nombre) noexcept {
  // The const twin does the search; the list itself is not const.
  return const_cast<TParam*>(std::as_const(*this).FindParam(nombre));
}

const TParam& TParams::ParamByName(std::u16string_view nombre) const {
  const TParam* const parametro = FindParam(nombre);
  if (parametro == nullptr) throw EDatabaseError(u"El parámetro '" + UnicodeString(nombre) + u"' no existe");
  return *parametro;
}

TParam& TParams::ParamByName(std::u16string_view nombre) {
  return const_cast<TParam&>(std::as_const(*this).ParamByName(nombre));
}

}  // namespace vel

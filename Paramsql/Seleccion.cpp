// Select list, joins, union and order.

#include <algorithm>
#include <utility>

#include "Paramsql/TParametrosFiltro.h"

namespace vel {
namespace {

std::unique_ptr<TParamSelect> CreaCampo(std::u16string_view campo, std::u16string_view alias, bool visible) {
  auto nuevo = std::make_unique<TParamSelect>();
  nuevo->NombreCampo = campo;
  nuevo->AliasCampo = alias;
  nuevo->Visible = visible;
  return nuevo;
}

UnicodeString ConBlancos(std::u16string_view texto) { return UnicodeString(u" ").append(texto).append(u" "); }

const TParamSelect* BuscaCampo(const TParamSelectArray& lista, std::u16string_view campo) {
  const auto it = std::find_if(lista.begin(), lista.end(), [nombre = TrimView(campo)](const auto& c) {
    return c != nullptr && c->NombreCampo == nombre;
  });
  return it == lista.end() ? nullptr : it->get();
}

}  // namespace

void TParametrosFiltro::AgregaCampoSelect(std::u16string_view campo, std::u16string_view alias,
                                          bool visible) {
  ParamSelect.push_back(CreaCampo(campo, alias, visible));
}

void TParametrosFiltro::CopiaCamposSelect(const TParametrosFiltro* origen) {
  if (origen == this) return;
  // Before the own list is emptied, so that it stays when there is no memory for the copies.
  TParamSelectArray copias;
  if (origen != nullptr) {
    for (const auto& campo : origen->ParamSelect) {
      if (campo != nullptr)
        copias.push_back(CreaCampo(campo->NombreCampo, campo->AliasCampo, campo->Visible));
    }
  }
  EliminaCampoSelect();
  ParamSelect = std::move(copias);
}

void TParametrosFiltro::EliminaCampoSelect() noexcept {
  while (!ParamSelect.empty()) ParamSelect.pop_back();
}

UnicodeString TParametrosFiltro::CamposSelect() const {
  UnicodeString lista;
  std::u16string_view separador;
  for (const auto& campo : ParamSelect) {
    if (campo == nullptr) continue;
    lista.append(separador).append(campo->AliasCampo.empty() ? campo->NombreCampo : campo->AliasCampo);
    separador = u",";
  }
  return lista;
}

bool TParametrosFiltro::CampoVisible(std::u16string_view campo) const {
  const TParamSelect* const encontrado = BuscaCampo(ParamSelect, campo);
  return encontrado != nullptr && encontrado->Visible;
}

UnicodeString TParametrosFiltro::DameAliasCampo(std::u16string_view campo) const {
  const TParamSelect* const encontrado = BuscaCampo(ParamSelect, campo);
  if (encontrado == nullptr) return {};
  const std::u16string_view alias = encontrado->AliasCampo;
  if (!TrimView(alias).empty()) {
    if (alias.front() != u'"' || alias.back() != u'"') return UnicodeString(alias);
    // One quote alone both begins and ends the alias, and nothing is left.
    return alias.size() == 1 ? UnicodeString() : UnicodeString(alias.substr(1, alias.size() - 2));
  }
  // Without a point find gives npos, and npos + 1 is the whole text.
  return UnicodeString(campo.substr(campo.find(u'.') + 1));
}

void TParametrosFiltro::AgregaJoin(std::u16string_view texto) { Join.push_back(ConBlancos(texto)); }

UnicodeString TParametrosFiltro::DameCadenaJoin() const {
  UnicodeString cadena(u" ");
  for (const UnicodeString& join : Join) cadena += join;
  return cadena;
}

void TParametrosFiltro::EliminaJoin() noexcept { Join.clear(); }

void TParametrosFiltro::EliminaJoin(std::u16string_view texto) { std::erase(Join, ConBlancos(texto)); }

void TParametrosFiltro::CopiaJoin(const TParametrosFiltro* origen) {
  if (origen == nullptr || origen->Join.empty() || origen == this) return;
  std::vector<UnicodeString> copia = origen->Join;
  Join = std::move(copia);
}

TParametrosFiltro* TParametrosFiltro::AgregaUnion(std::u16string_view tabla) {
  auto nuevo = std::make_unique<TParametrosFiltro>(tabla);
  nuevo->FechaTrabajo = FechaTrabajo;
  if (ParametrosUnion != nullptr) retirados_.push_back(std::move(ParametrosUnion));
  ParametrosUnion = std::move(nuevo);
  return ParametrosUnion.get();
}

void TParametrosFiltro::QuitaUnion() noexcept { ParametrosUnion.reset(); }

void TParametrosFiltro::SetOrderBy(std::u16string_view campo) {
  const bool descendente = Pos(campo, OrderBy) != 0 && !OrdDesc;
  OrderBy = campo;
  OrdDesc = descendente;
}

}  // namespace vel

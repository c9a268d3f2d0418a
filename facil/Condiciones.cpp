#include "facil/Condiciones.h"

#include <algorithm>
#include <iterator>
#include <span>

#include "Paramsql/TParametrosFiltro.h"
#include "framework/Excepciones.h"

namespace vel::facil {

namespace {

std::unique_ptr<TParamWhereSimple> Registro(UnicodeString&& campo, TFieldType tipo, Variant&& valor,
                                            ENUM_OPERADOR op, ENUM_GRUPO grupo, bool sensitive) {
  auto condicion = std::make_unique<TParamWhereSimple>();
  condicion->NombreCampo = std::move(campo);
  condicion->TipoCampo = tipo;
  condicion->ValorCampo = std::move(valor);
  condicion->Operador = op;
  condicion->CharGrupo = grupo;
  condicion->Sensitive = sensitive;
  return condicion;
}

// "1=0", which binds nothing: among alternatives it changes nothing.
std::unique_ptr<TParamWhereSimple> Neutra(ENUM_GRUPO grupo) {
  auto condicion =
      Registro(UnicodeString(u"1"), TFieldType::ftDataSet, Variant(u"0"), ENUM_OPERADOR::IGUAL, grupo, true);
  condicion->ConectorSigCampo = ENUM_CONECTOR::OR;
  return condicion;
}

// Puts parentheses around the alternatives that stand from `inicio` to the end of the list. The first of them
// may open a parenthesis already, and the last one may close one.
void Encierra(TParamWhereSimpleArray& lista, std::size_t inicio) {
  if (lista[inicio]->CharGrupo == ENUM_GRUPO::NADA) {
    lista[inicio]->CharGrupo = ENUM_GRUPO::INICIA;
  } else {
    lista.insert(lista.begin() + static_cast<std::ptrdiff_t>(inicio), Neutra(ENUM_GRUPO::INICIA));
  }
  if (lista.back()->CharGrupo == ENUM_GRUPO::NADA) {
    lista.back()->CharGrupo = ENUM_GRUPO::TERMINA;
  } else {
    lista.back()->ConectorSigCampo = ENUM_CONECTOR::OR;
    lista.push_back(Neutra(ENUM_GRUPO::TERMINA));
  }
}

// What it takes to close conditions of others, so that what follows is joined to all of them.
struct Cierre {
  int abren = 0;
  int cierran = 0;
  /// The last one; null when there is none.
  TParamWhereSimple* ultima = nullptr;
};

Cierre CierreDe(std::span<const std::unique_ptr<TParamWhereSimple>> ajenas) {
  const auto paso = [](const auto& c) {
    if (c == nullptr) return 0;
    return c->CharGrupo == ENUM_GRUPO::INICIA ? 1 : c->CharGrupo == ENUM_GRUPO::TERMINA ? -1 : 0;
  };
  Cierre cierre;
  int balance = 0;
  for (const auto& c : ajenas) {
    if (c != nullptr) cierre.ultima = c.get();
    balance += paso(c);
  }
  // The builder opens at the beginning and closes at the end what the marks leave out.
  cierre.abren = std::max(-balance, 0);
  cierre.cierran = std::max(balance, 0);
  int profundidad = cierre.abren;
  bool alternativas = false;
  for (const auto& c : ajenas) {
    profundidad += paso(c);
    const bool sigue = c != nullptr && c.get() != cierre.ultima && c->Operador != ENUM_OPERADOR::MACRO;
    if (sigue && profundidad == 0 && c->ConectorSigCampo == ENUM_CONECTOR::OR) alternativas = true;
  }
  if (alternativas) {
    ++cierre.abren;
    ++cierre.cierran;
  }
  return cierre;
}

// Closes what others put into the first `cuantas` places.
void Aparta(TParamWhereSimpleArray& lista, std::size_t cuantas) {
  auto [abren, cierran, ultima] = CierreDe(std::span(lista).first(cuantas));
  if (ultima == nullptr) return;
  TParamWhereSimpleArray neutras;
  for (int i = 0; i < cierran; ++i) neutras.push_back(Neutra(ENUM_GRUPO::TERMINA));
  for (int i = 0; i < abren; ++i) neutras.push_back(Neutra(ENUM_GRUPO::INICIA));
  lista.reserve(lista.size() + neutras.size());
  // From here on nothing can fail.
  const auto corte = neutras.begin() + cierran;
  if (cierran > 0) {
    ultima->ConectorSigCampo = ENUM_CONECTOR::OR;
    ultima = std::prev(corte)->get();
  }
  ultima->ConectorSigCampo = ENUM_CONECTOR::AND;
  lista.insert(lista.begin() + static_cast<std::ptrdiff_t>(cuantas), std::move_iterator(neutras.begin()),
               std::move_iterator(corte));
  lista.insert(lista.begin(), std::move_iterator(corte), std::move_iterator(neutras.end()));
}

}  // namespace

TParamWhereSimpleArray& Grupo::Abierta() {
  if (llenandoOtro_) {
    throw EInvalidOperation(u"Mientras se llena un grupo, las condiciones se agregan a ese grupo");
  }
  return clausula_ == Clausula::Having ? filtro_->ParamHaving : filtro_->ParamWhere;
}

void Grupo::Junta(TParamWhereSimpleArray& lista, std::size_t inicio) {
  if (!esRaiz_ || cuenta_ > 0 || inicio == 0) return;
  try {
    Aparta(lista, inicio);
  } catch (...) {
    lista.resize(inicio);
    throw;
  }
}

void Grupo::Agrega(std::unique_ptr<TParamWhereSimple> condicion) {
  condicion->ConectorSigCampo = conector_;
  TParamWhereSimpleArray& lista = Abierta();
  lista.push_back(std::move(condicion));
  Junta(lista, lista.size() - 1);
  ++cuenta_;
}

void Grupo::AgregaPatron(const UnicodeString& campo, ENUM_COINCIDENCIA donde, const Texto& texto,
                         Letras letras) {
  TParamWhereSimpleArray& lista = Abierta();
  // The builder knows what to escape for which database.
  const bool sensitive = letras == Letras::ComoEstan;
  if (clausula_ == Clausula::Having) {
    filtro_->AgregaHavingLIKE(campo, texto, donde, conector_, ENUM_GRUPO::NADA, sensitive, driver_);
  } else {
    filtro_->AgregaFiltroLIKE(campo, texto, donde, conector_, ENUM_GRUPO::NADA, sensitive, driver_);
  }
  Junta(lista, lista.size() - 1);
  ++cuenta_;
}

void Grupo::Subgrupo(ENUM_CONECTOR conector, const void* llama, void (*llena)(const void*, Grupo&)) {
  TParamWhereSimpleArray& lista = Abierta();
  const std::size_t inicio = lista.size();
  Grupo hijo(*this, conector);
  llenandoOtro_ = true;
  try {
    llena(llama, hijo);
    const bool alternativas = conector == ENUM_CONECTOR::OR && hijo.cuenta_ > 1;
    if (alternativas && conector_ == ENUM_CONECTOR::AND) Encierra(lista, inicio);
    if (hijo.cuenta_ > 0) Junta(lista, inicio);
  } catch (...) {
    lista.resize(std::min(inicio, lista.size()));
    llenandoOtro_ = false;
    throw;
  }
  llenandoOtro_ = false;
  if (hijo.cuenta_ == 0) return;
  lista.back()->ConectorSigCampo = conector_;
  cuenta_ += conector == conector_ ? hijo.cuenta_ : 1;
}

Grupo& Grupo::existe(const Sql& subconsulta) {
  Agrega(Registro({}, TFieldType::ftDataSet, Variant(subconsulta.texto), ENUM_OPERADOR::EXISTS,
                  ENUM_GRUPO::NADA, true));
  return *this;
}

CondicionAbierta::CondicionAbierta(Grupo& grupo, const Texto& campo) : grupo_(grupo), campo_(campo.Vista()) {
  if (TrimLeftView(campo_).empty()) throw EInvalidOperation(u"Falta el campo de una condición");
}

void CondicionAbierta::Agrega(TFieldType tipo, Variant&& valor, ENUM_OPERADOR op, bool sensitive) {
  grupo_.Agrega(Registro(std::move(campo_), tipo, std::move(valor), op, ENUM_GRUPO::NADA, sensitive));
}

// As AgregaFiltro has it, Sensitive is set by one value and not by several.

void CondicionAbierta::Compara(ENUM_OPERADOR op, Valor&& valor) {
  if (hay_ && valor.Hay()) Agrega(valor.Tipo(), valor.Saca(), op, true);
}

void CondicionAbierta::Limita(Valor&& bajo, Valor&& alto) {
  if (!bajo.Hay()) return Compara(ENUM_OPERADOR::MENOR_IGUAL, std::move(alto));
  if (!alto.Hay()) return Compara(ENUM_OPERADOR::MAYOR_IGUAL, std::move(bajo));
  if (!hay_) return;
  const TFieldType tipo = Valor::TipoComun(bajo.Tipo(), alto.Tipo());
  std::vector<Variant> limites;
  limites.reserve(2);
  limites.push_back(bajo.Saca());
  limites.push_back(alto.Saca());
  Agrega(tipo, VarArrayOf(std::move(limites)), ENUM_OPERADOR::BETWEEN, false);
}

void CondicionAbierta::Busca(ENUM_OPERADOR op, Valores&& valores) {
  if (!hay_ || valores.TodosFaltan()) return;
  if (valores.Vacia()) throw EInvalidOperation(u"La condición sobre '" + campo_ + u"' no tiene valores");
  const TFieldType tipo = valores.Tipo();
  Variant valor = valores.Saca();
  const bool sensitive = !valor.IsArray();
  Agrega(tipo, std::move(valor), op, sensitive);
}

void CondicionAbierta::PruebaNulo(ENUM_OPERADOR op) {
  if (hay_) Agrega(TFieldType::ftString, {}, op, true);
}

void CondicionAbierta::CoincideTexto(ENUM_COINCIDENCIA donde, const Texto& texto, Letras letras) {
  if (hay_) grupo_.AgregaPatron(campo_, donde, texto, letras);
}

}  // namespace vel::facil

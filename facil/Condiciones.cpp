#include "facil/Condiciones.h"

#include <algorithm>
#include <iterator>

#include "framework/Excepciones.h"

namespace vel::facil {

namespace {

std::unique_ptr<TParamWhereSimple> Registro(UnicodeString campo, TFieldType tipo, Variant valor,
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
  auto condicion = Registro(u"1", TFieldType::ftDataSet, Variant(u"0"), ENUM_OPERADOR::IGUAL, grupo, true);
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

// Closes what others put into the list, so that what is added now is joined to all of it.
void Aparta(TParamWhereSimpleArray& lista) {
  std::erase(lista, nullptr);
  if (lista.empty()) return;
  const auto paso = [](const auto& c) {
    return c->CharGrupo == ENUM_GRUPO::INICIA ? 1 : c->CharGrupo == ENUM_GRUPO::TERMINA ? -1 : 0;
  };
  std::ptrdiff_t balance = 0;
  for (const auto& c : lista) balance += paso(c);
  // The builder opens at the beginning and closes at the end what the marks leave out.
  std::ptrdiff_t abren = std::max<std::ptrdiff_t>(-balance, 0);
  std::ptrdiff_t cierran = std::max<std::ptrdiff_t>(balance, 0);
  bool alternativas = false;
  std::ptrdiff_t profundidad = abren;
  for (const auto& c : lista) {
    profundidad += paso(c);
    const bool sigue = &c != &lista.back() && c->Operador != ENUM_OPERADOR::MACRO;
    alternativas = alternativas || (sigue && profundidad == 0 && c->ConectorSigCampo == ENUM_CONECTOR::OR);
  }
  if (alternativas) {
    ++abren;
    ++cierran;
  }
  TParamWhereSimpleArray neutras;
  for (std::ptrdiff_t i = 0; i < abren + cierran; ++i) {
    neutras.push_back(Neutra(i < abren ? ENUM_GRUPO::INICIA : ENUM_GRUPO::TERMINA));
  }
  lista.reserve(lista.size() + neutras.size());
  if (cierran > 0) lista.back()->ConectorSigCampo = ENUM_CONECTOR::OR;
  std::move(neutras.begin() + abren, neutras.end(), std::back_inserter(lista));
  lista.insert(lista.begin(), std::move_iterator(neutras.begin()),
               std::move_iterator(neutras.begin() + abren));
  lista.back()->ConectorSigCampo = ENUM_CONECTOR::AND;
}

}  // namespace

TParamWhereSimpleArray& Grupo::Abierta() {
  if (llenandoOtro_) {
    throw EInvalidOperation(u"Mientras se llena un grupo, las condiciones se agregan a ese grupo");
  }
  TParamWhereSimpleArray& lista = clausula_ == Clausula::Having ? filtro_->ParamHaving : filtro_->ParamWhere;
  if (esRaiz_ && cuenta_ == 0 && !lista.empty()) Aparta(lista);
  return lista;
}

void Grupo::Agrega(std::unique_ptr<TParamWhereSimple> condicion) {
  condicion->ConectorSigCampo = conector_;
  Abierta().push_back(std::move(condicion));
  ++cuenta_;
}

void Grupo::AgregaPatron(const UnicodeString& campo, ENUM_COINCIDENCIA donde, const Texto& texto,
                         Letras letras) {
  Abierta();
  // The builder knows what to escape for which database.
  const bool sensitive = letras == Letras::ComoEstan;
  if (clausula_ == Clausula::Having) {
    filtro_->AgregaHavingLIKE(campo, texto, donde, conector_, ENUM_GRUPO::NADA, sensitive, driver_);
  } else {
    filtro_->AgregaFiltroLIKE(campo, texto, donde, conector_, ENUM_GRUPO::NADA, sensitive, driver_);
  }
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

void CondicionAbierta::Agrega(TFieldType tipo, Variant valor, ENUM_OPERADOR op, bool sensitive) {
  grupo_.Agrega(Registro(std::move(campo_), tipo, std::move(valor), op, ENUM_GRUPO::NADA, sensitive));
}

// As AgregaFiltro has it, Sensitive is set by one value and not by several.

void CondicionAbierta::Compara(ENUM_OPERADOR op, Valor valor) {
  if (hay_ && valor.Hay()) Agrega(valor.Tipo(), valor.Saca(), op, true);
}

void CondicionAbierta::Limita(Valor bajo, Valor alto) {
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

void CondicionAbierta::Busca(ENUM_OPERADOR op, Valores valores) {
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

void CondicionAbierta::Coincide(ENUM_COINCIDENCIA donde, const Texto& texto, Letras letras) {
  if (hay_) grupo_.AgregaPatron(campo_, donde, texto, letras);
}

}  // namespace vel::facil

// Adding, copying and removing conditions.

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <utility>

#include "Paramsql/TParametrosFiltro.h"
#include "Uutilext/diagnostics/Traza.h"
#include "framework/Numeros.h"

namespace vel {
namespace {

// A trace line that ends in a number. Made without memory: whoever removes and destroys must not fail.
void Traza(std::u16string_view texto, std::size_t numero) noexcept {
  std::array<char16_t, 128> linea;
  std::array<char, 20> cifras;
  const char* const inicio = cifras.data();
  const char* const fin = std::to_chars(cifras.data(), cifras.data() + cifras.size(), numero).ptr;
  const auto cuenta = static_cast<std::size_t>(fin - inicio);
  texto = texto.substr(0, linea.size() - cuenta);
  std::copy(inicio, fin, std::copy(texto.begin(), texto.end(), linea.data()));
  logInter({linea.data(), texto.size() + cuenta}, true);
}

// A copy of every property.
std::unique_ptr<TParamWhereSimple> Copia(const TParamWhereSimple& origen) {
  return std::make_unique<TParamWhereSimple>(origen);
}

std::unique_ptr<TParamWhereSimple> CopiaSinSensitive(const TParamWhereSimple& origen) {
  auto copia = Copia(origen);
  copia->Sensitive = false;
  return copia;
}

void Agrega(TParamWhereSimpleArray& lista, std::u16string_view campo, TFieldType tipo, const Variant& valor,
            ENUM_OPERADOR op, ENUM_CONECTOR con, ENUM_GRUPO grupo, bool sensitive) {
  auto condicion = std::make_unique<TParamWhereSimple>();
  condicion->NombreCampo = campo;
  condicion->TipoCampo = tipo;
  condicion->ValorCampo = valor;
  condicion->Operador = op;
  condicion->ConectorSigCampo = con;
  condicion->CharGrupo = grupo;
  condicion->Sensitive = sensitive;
  lista.push_back(std::move(condicion));
}

template <typename Lista>
void Vacia(Lista& lista) noexcept {
  while (!lista.empty()) lista.pop_back();
}

// The pattern of a typed text, in which the driver's wildcards stand for themselves. "[" is one on SQL Server
// only, and Firebird refuses an escape before anything else than "%", "_" and the escape itself.
Variant PatronDe(std::u16string_view texto, ENUM_COINCIDENCIA donde, TiposDeDriver driver) {
  const bool conCorchetes =
      driver == TiposDeDriver::DEVARTSQLSERVER || driver == TiposDeDriver::DEVARTSQLSERVERCOMPACT;
  const std::u16string_view comodines = conCorchetes ? u"/%_[" : u"/%_";
  UnicodeString patron;
  if (donde == ENUM_COINCIDENCIA::CONTIENE || donde == ENUM_COINCIDENCIA::TERMINA) patron += u'%';
  for (const char16_t c : texto) {
    if (comodines.find(c) != std::u16string_view::npos) patron += u'/';
    patron += c;
  }
  if (donde == ENUM_COINCIDENCIA::CONTIENE || donde == ENUM_COINCIDENCIA::EMPIEZA) patron += u'%';
  return Variant(std::move(patron));
}

}  // namespace

void TParametrosFiltro::AgregaFiltro(std::u16string_view campo, TFieldType tipo, const Variant& valor,
                                     ENUM_OPERADOR op, ENUM_CONECTOR con, ENUM_GRUPO grupo, bool sensitive) {
  Agrega(ParamWhere, campo, tipo, valor, op, con, grupo, sensitive);
}

void TParametrosFiltro::AgregaFiltro(std::u16string_view campo, TFieldType tipo, ENUM_OPERADOR op,
                                     ENUM_CONECTOR con, ENUM_GRUPO grupo, const Variant& v1,
                                     const Variant& v2) {
  AgregaFiltro(campo, tipo, VarArrayOf({v1, v2}), op, con, grupo, false);
}

void TParametrosFiltro::AgregaFiltro(std::u16string_view campo, TFieldType tipo, ENUM_OPERADOR op,
                                     ENUM_CONECTOR con, ENUM_GRUPO grupo, const Variant& v1,
                                     const Variant& v2, const Variant& v3) {
  AgregaFiltro(campo, tipo, VarArrayOf({v1, v2, v3}), op, con, grupo, false);
}

void TParametrosFiltro::AgregaFiltro(std::u16string_view campo, TFieldType tipo, ENUM_OPERADOR op,
                                     ENUM_CONECTOR con, ENUM_GRUPO grupo, const Variant& v1,
                                     const Variant& v2, const Variant& v3, const Variant& v4) {
  AgregaFiltro(campo, tipo, VarArrayOf({v1, v2, v3, v4}), op, con, grupo, false);
}

void TParametrosFiltro::AgregaFiltro(std::u16string_view campo, TFieldType tipo, ENUM_OPERADOR op,
                                     ENUM_CONECTOR con, ENUM_GRUPO grupo, const Variant& v1,
                                     const Variant& v2, const Variant& v3, const Variant& v4,
                                     const Variant& v5) {
  AgregaFiltro(campo, tipo, VarArrayOf({v1, v2, v3, v4, v5}), op, con, grupo, false);
}

void TParametrosFiltro::AgregaFiltroStr(std::u16string_view campo, std::u16string_view tipo,
                                        std::u16string_view valor, std::u16string_view op,
                                        std::u16string_view con, std::u16string_view grupo, bool sensitive) {
  // The record's field holds one byte; a larger ordinal keeps its low one, as the stored property does.
  const auto tipoCampo = static_cast<TFieldType>(static_cast<std::uint8_t>(StrToInt(tipo)));
  AgregaFiltro(campo, tipoCampo, DameValorLstCampos(tipoCampo, valor), DameOperador(op),
               DameOperadorUnion(con), DameCharGrupo(grupo), sensitive);
}

void TParametrosFiltro::AgregaFiltroLIKE(std::u16string_view campo, std::u16string_view texto,
                                         ENUM_COINCIDENCIA donde, ENUM_CONECTOR con, ENUM_GRUPO grupo,
                                         bool sensitive) {
  AgregaFiltroLIKE(campo, texto, donde, con, grupo, sensitive, TiposDeDriver::DEVARTINTERBASE);
}

void TParametrosFiltro::AgregaFiltroLIKE(std::u16string_view campo, std::u16string_view texto,
                                         ENUM_COINCIDENCIA donde, ENUM_CONECTOR con, ENUM_GRUPO grupo,
                                         bool sensitive, TiposDeDriver driver) {
  AgregaFiltro(campo, TFieldType::ftString, PatronDe(texto, donde, driver), ENUM_OPERADOR::LIKE, con, grupo,
               sensitive);
}

void TParametrosFiltro::AgregaHaving(std::u16string_view campo, TFieldType tipo, const Variant& valor,
                                     ENUM_OPERADOR op, ENUM_CONECTOR con, ENUM_GRUPO grupo, bool sensitive) {
  Agrega(ParamHaving, campo, tipo, valor, op, con, grupo, sensitive);
}

void TParametrosFiltro::AgregaHavingLIKE(std::u16string_view campo, std::u16string_view texto,
                                         ENUM_COINCIDENCIA donde, ENUM_CONECTOR con, ENUM_GRUPO grupo,
                                         bool sensitive) {
  AgregaHavingLIKE(campo, texto, donde, con, grupo, sensitive, TiposDeDriver::DEVARTINTERBASE);
}

void TParametrosFiltro::AgregaHavingLIKE(std::u16string_view campo, std::u16string_view texto,
                                         ENUM_COINCIDENCIA donde, ENUM_CONECTOR con, ENUM_GRUPO grupo,
                                         bool sensitive, TiposDeDriver driver) {
  AgregaHaving(campo, TFieldType::ftString, PatronDe(texto, donde, driver), ENUM_OPERADOR::LIKE, con, grupo,
               sensitive);
}

void TParametrosFiltro::EliminaFiltros() noexcept {
  Traza(u"TParametrosFiltro::EliminaFiltros Inicia: FParamWhere.Length= ", ParamWhere.size());
  while (!ParamWhere.empty()) {
    logInter(u"TParametrosFiltro::EliminaFiltros Entra While ", true);
    ParamWhere.pop_back();
  }
  Traza(u"TParametrosFiltro::EliminaFiltros Termina: FParamWhere.Length= ", ParamWhere.size());
}

void TParametrosFiltro::EliminaHaving() noexcept { Vacia(ParamHaving); }

void TParametrosFiltro::EliminaParamPers() noexcept { Vacia(ParamPers); }

void TParametrosFiltro::EliminaFiltro(std::u16string_view campo) {
  TParamWhereSimpleArray quedan;
  bool hubo = false;
  for (const auto& condicion : ParamWhere) {
    if (condicion == nullptr) continue;
    if (condicion->NombreCampo == campo) {
      hubo = true;
    } else {
      quedan.push_back(CopiaSinSensitive(*condicion));
    }
  }
  if (hubo) CopiaFiltros(quedan, 0);
}

void TParametrosFiltro::CopiaFiltros(const TParamWhereSimpleArray& origen, int desde) {
  // Copied before the own list is emptied: origin may be that list.
  TParamWhereSimpleArray copias;
  for (std::size_t i = static_cast<std::size_t>(std::max(desde, 0)); i < origen.size(); ++i) {
    if (origen[i] != nullptr) copias.push_back(Copia(*origen[i]));
  }
  EliminaFiltros();
  ParamWhere = std::move(copias);
}

void TParametrosFiltro::AgregaFiltros(const TParamWhereSimpleArray& origen) {
  TParamWhereSimpleArray copias;
  for (const auto& condicion : origen) {
    if (condicion != nullptr) copias.push_back(CopiaSinSensitive(*condicion));
  }
  ParamWhere.insert(ParamWhere.end(), std::make_move_iterator(copias.begin()),
                    std::make_move_iterator(copias.end()));
}

}  // namespace vel

// Reading definitions back from INI files.

#include <algorithm>
#include <map>
#include <type_traits>
#include <utility>

#include "Paramsql/Persistencia.h"
#include "Paramsql/TParametrosFiltro.h"
#include "Uutilext/config/ArchivoIni.h"
#include "Uutilext/config/Configuracion.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel {
namespace {

using namespace persistencia;  // the names of sections and keys

/// The keys of one section, read once. Of equal keys the first counts; a missing one is empty.
class Seccion {
 public:
  Seccion(const TextoIni& texto, const UnicodeString& nombre) {
    for (auto& [clave, valor] : texto.Seccion(nombre)) valores_.emplace(std::move(clave), std::move(valor));
  }
  UnicodeString Valor(std::u16string_view clave) const {
    const auto it = valores_.find(UnicodeString(clave));
    return it == valores_.end() ? UnicodeString() : it->second;
  }
  UnicodeString Valor(std::u16string_view clave, std::int32_t indice) const {
    return Valor(UnicodeString(clave) + IntToStr(indice));
  }
  /// A whole number; 0 when it is missing or no number.
  std::int32_t Numero(std::u16string_view clave) const { return EnNumero(Valor(clave)); }
  std::int32_t Numero(std::u16string_view clave, std::int32_t indice) const {
    return EnNumero(Valor(clave, indice));
  }
  /// A count: no more than there are keys, so that a damaged one ends.
  std::int32_t Cuenta(std::u16string_view clave) const {
    return std::clamp(Numero(clave), 0, static_cast<std::int32_t>(valores_.size()));
  }

 private:
  static std::int32_t EnNumero(const UnicodeString& texto) {
    std::int32_t numero = 0;
    TryStrToInt(texto, numero);
    return numero;
  }

  std::map<UnicodeString, UnicodeString, LessText> valores_;
};

ENUM_CONECTOR Conector(std::u16string_view texto) {
  texto = TrimView(texto);
  return texto.empty() ? ENUM_CONECTOR::AND : TParametrosFiltro::DameOperadorUnion(texto);
}

TParamWhereSimpleArray LeeCondiciones(const Seccion& s, std::u16string_view cuenta) {
  TParamWhereSimpleArray condiciones;
  for (std::int32_t i = 0; i < s.Cuenta(cuenta); ++i) {
    auto c = std::make_unique<TParamWhereSimple>();
    const UnicodeString tipo = s.Valor(kTipoCampo, i);
    c->NombreCampo = s.Valor(kNomCampo, i);
    c->TipoCampo = static_cast<TFieldType>(static_cast<std::uint8_t>(tipo.empty() ? 0 : StrToInt(tipo)));
    c->Operador = OperadorDeTexto(s.Valor(kOpCampo, i));
    c->ValorCampo = ValorDeTexto(c->TipoCampo, c->Operador, s.Valor(kValCampo, i));
    c->ConectorSigCampo = Conector(s.Valor(kConectCampo, i));
    c->CharGrupo = TParametrosFiltro::DameCharGrupo(TrimView(s.Valor(kCharGrupCampo, i)));
    c->Sensitive = DameValorBooleano(s.Valor(kSensitive, i));
    condiciones.push_back(std::move(c));
  }
  return condiciones;
}

// The value in the kind that it had, which the field type alone does not tell.
Variant EnClase(const Variant& valor, std::int32_t clase) {
  switch (static_cast<Variant::Kind>(clase)) {
    case Variant::Kind::Null:
      return Variant::Null();
    case Variant::Kind::Integer:
      return Variant(valor.AsInteger());
    case Variant::Kind::Int64:
      return Variant(valor.AsInt64());
    case Variant::Kind::Double:
      return Variant(valor.AsDouble());
    case Variant::Kind::Date:
      return Variant(valor.AsDateTime());
    case Variant::Kind::Boolean:
      return Variant(valor.AsBoolean());
    default:
      return valor;
  }
}

/// The personalised conditions of a definition, read aside so that they enter it at once.
struct Personalizadas {
  Variant valores;
  UnicodeString sentencia;
  std::vector<UnicodeString> textos;
  std::int32_t activo = 0;

  explicit Personalizadas(const Seccion& s);
  static_assert(std::is_nothrow_move_assignable_v<Variant>);
  void Entran(TParametrosFiltro& f) noexcept {
    f.FilterParamsPers = std::move(valores);
    f.FilterTextPers = std::move(sentencia);
    f.FilterPersItems = std::move(textos);
    f.FiltroPActivo = activo;
  }
};

Personalizadas::Personalizadas(const Seccion& s)
    : sentencia(s.Valor(kSentenciaPers)), activo(s.Numero(kActivarPers)) {
  std::vector<Variant> leidos;
  for (std::int32_t i = 0; i < s.Cuenta(kNumFiltrosP); ++i) {
    const auto tipo = static_cast<TFieldType>(static_cast<std::uint8_t>(s.Numero(kTipoPers, i)));
    const Variant valor = ValorDeTexto(tipo, s.Valor(kValorPers, i));
    leidos.push_back(EnClase(valor, s.Numero(kClasePers, i)));
  }
  if (!leidos.empty()) valores = VarArrayOf(std::move(leidos));
  if (sentencia.size() > 1 && sentencia.front() == u'"' && sentencia.back() == u'"') {
    sentencia = sentencia.substr(1, sentencia.size() - 2);
  }
  const Variant guardados = ValorDeTexto(TFieldType::ftString, s.Valor(kCondicionesPers));
  if (guardados.IsArray()) {
    for (const Variant& v : guardados.AsArray().items) textos.push_back(v.AsString());
  } else if (!guardados.IsEmpty()) {
    textos.push_back(guardados.AsString());
  }
}

// A join is stored with a blank on either side, which the file's reader trims: it gets one again.
UnicodeString LeeJoin(const UnicodeString& texto) { return u" " + Trim(texto) + u" "; }

// The order that a section says, on a definition without one; false when it names no column.
bool LeeOrden(const Seccion& s, TParametrosFiltro& f) {
  const UnicodeString orden = s.Valor(kOrdenadoPor);
  const UnicodeString descendente = s.Valor(kDescendente);
  // Set on the new definition, so that loading twice does not turn the order around.
  if (!orden.empty()) f.SetOrderBy(orden);
  if (!descendente.empty())
    f.OrdDesc = DameValorBooleano(descendente) || descendente == u"1" || descendente == u"-1";
  return !orden.empty();
}

std::unique_ptr<TParametrosFiltro> LeeDefinicion(const TextoIni& texto, int numero, Alcance alcance,
                                                 int nivel) {
  const auto seccion = [&](std::u16string_view nombre) {
    return Seccion(texto, UnicodeString(nombre) + Sufijo(numero));
  };
  auto f = std::make_unique<TParametrosFiltro>(seccion(kTabla).Valor(kClaveTabla));
  const Seccion campos = seccion(kSelect);
  for (std::int32_t i = 0; i < campos.Cuenta(kNumCampos); ++i) {
    f->AgregaCampoSelect(campos.Valor(kNomCampo, i), campos.Valor(kAliasCampo, i),
                         DameValorBooleano(campos.Valor(kVisible, i)));
  }
  const Seccion joins = seccion(kJoins);
  for (std::int32_t i = 0; i < joins.Cuenta(kNumJoins); ++i)
    f->Join.push_back(LeeJoin(joins.Valor(kJoin, i)));
  const Seccion filtro = seccion(kFiltro);
  f->ParamWhere = LeeCondiciones(filtro, kNumFiltros);
  Personalizadas(filtro).Entran(*f);
  f->GroupBy = seccion(kGroupBy).Valor(kClaveGroupBy);
  f->ParamHaving = LeeCondiciones(seccion(kHaving), kNumElementos);
  const UnicodeString unida = seccion(kUnion).Valor(kClaveUnion);
  if (!unida.empty()) {
    const int siguiente = StrToInt(unida);
    // A partner that leads back would never end.
    if (siguiente <= std::max(numero, 0) || nivel == kUnionesMaximas) {
      throw EInvalidOperation(u"La unión " + unida + u" de la consulta no es válida");
    }
    f->ParametrosUnion = LeeDefinicion(texto, siguiente, alcance, nivel + 1);
  }
  if (alcance == Alcance::Entera) {
    f->Distinct = DameValorBooleano(campos.Valor(kDistinct));
    LeeOrden(numero <= 0 ? seccion(kVista) : campos, *f);
  }
  return f;
}

}  // namespace

std::unique_ptr<TParametrosFiltro> persistencia::LeeDefinicion(const TextoIni& texto, int numero,
                                                               Alcance alcance) {
  return vel::LeeDefinicion(texto, numero, alcance, 0);
}

void TParametrosFiltro::LoadFromIni(std::u16string_view archivo, int numero) {
  const TextoIni texto = LeeIniEntero(archivo);
  const std::unique_ptr<TParametrosFiltro> leido = persistencia::LeeDefinicion(texto, numero, Alcance::Comun);
  for (TParametrosFiltro* f = leido->ParametrosUnion.get(); f != nullptr; f = f->ParametrosUnion.get()) {
    f->FechaTrabajo = FechaTrabajo;
  }
  leido->OrdDesc = OrdDesc;
  const bool conOrden = numero <= 0 && LeeOrden(Seccion(texto, UnicodeString(kVista)), *leido);
  if (ParametrosUnion != nullptr) retirados_.emplace_back();
  // Everything is at hand; from here on nothing can fail.
  NombreTabla = std::move(leido->NombreTabla);
  ParamSelect = std::move(leido->ParamSelect);
  Join = std::move(leido->Join);
  ParamWhere = std::move(leido->ParamWhere);
  ParamHaving = std::move(leido->ParamHaving);
  GroupBy = std::move(leido->GroupBy);
  FiltroPActivo = leido->FiltroPActivo;
  FilterTextPers = std::move(leido->FilterTextPers);
  FilterPersItems = std::move(leido->FilterPersItems);
  FilterParamsPers = std::move(leido->FilterParamsPers);
  if (ParametrosUnion != nullptr) retirados_.back() = std::move(ParametrosUnion);
  ParametrosUnion = std::move(leido->ParametrosUnion);
  if (conOrden) OrderBy = std::move(leido->OrderBy);
  OrdDesc = leido->OrdDesc;
}

void TParametrosFiltro::LoadFromIni(std::u16string_view archivo, std::u16string_view seccion) {
  const Seccion s(LeeIniEntero(archivo), UnicodeString(seccion));
  TParamWhereSimpleArray condiciones = LeeCondiciones(s, kNumFiltros);
  Personalizadas(s).Entran(*this);
  ParamWhere = std::move(condiciones);
}

void TParametrosFiltro::LoadParamPersFromIni(std::u16string_view archivo, std::u16string_view seccion) {
  Personalizadas(Seccion(LeeIniEntero(archivo), UnicodeString(seccion))).Entran(*this);
}

}  // namespace vel

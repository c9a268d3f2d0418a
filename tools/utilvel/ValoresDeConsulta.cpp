#include "tools/utilvel/ValoresDeConsulta.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "framework/TDateTime.h"
#include "tools/utilvel/Errores.h"
#include "tools/utilvel/Textos.h"

namespace utilvel {
namespace {

using Tipo = vel::TFieldType;

// A parameter's place in the definition.
struct Hueco {
  vel::Variant* valor;
  Tipo tipo;
};

// How many parameters a condition has: those of a statement with it alone.
std::size_t CuantosTiene(const vel::TParamWhereSimple& condicion) {
  vel::TParametrosFiltro sola(u"T");
  auto copia = std::make_unique<vel::TParamWhereSimple>();
  copia->NombreCampo = condicion.NombreCampo;
  copia->TipoCampo = condicion.TipoCampo;
  copia->ValorCampo = condicion.ValorCampo;
  copia->Operador = condicion.Operador;
  copia->CharGrupo = vel::ENUM_GRUPO::NADA;
  sola.ParamWhere.push_back(std::move(copia));
  vel::TParams parametros;
  sola.DameSentenciaSQL(vel::ENUM_MARCADOR::DOSPUNTOS, 0, parametros);
  return parametros.Count();
}

void Junta(vel::TParamWhereSimpleArray& condiciones, std::vector<Hueco>& huecos) {
  for (const auto& c : condiciones) {
    if (c == nullptr) continue;
    const std::size_t cuantos = CuantosTiene(*c);
    // A pattern is text whatever the column holds.
    const Tipo tipo = c->Operador == vel::ENUM_OPERADOR::LIKE ? Tipo::ftString : c->TipoCampo;
    for (std::size_t i = 0; i < cuantos; ++i) {
      huecos.push_back({c->ValorCampo.IsArray() ? &c->ValorCampo.AsArray().items[i] : &c->ValorCampo, tipo});
    }
  }
}

// The places of all parameters, in the order of the statement.
std::vector<Hueco> Huecos(vel::TParametrosFiltro& definicion) {
  std::vector<Hueco> huecos;
  for (auto* d = &definicion; d != nullptr; d = d->ParametrosUnion.get()) {
    // With 1 the statement has the personalised text alone.
    if (d->FiltroPActivo != 1) Junta(d->ParamWhere, huecos);
    Junta(d->ParamHaving, huecos);
  }
  return huecos;
}

vel::Variant Entero(const vel::UnicodeString& texto) {
  const std::int64_t valor = vel::StrToInt64(texto);
  const bool corto =
      valor >= std::numeric_limits<std::int32_t>::min() && valor <= std::numeric_limits<std::int32_t>::max();
  return corto ? vel::Variant(static_cast<std::int32_t>(valor)) : vel::Variant(valor);
}

vel::Variant Momento(const vel::UnicodeString& texto) {
  vel::TDateTime momento;
  if (!vel::TryISOToDateTime(texto, momento)) momento = vel::StrToDateTime(texto);
  return momento;
}

vel::Variant Logico(const vel::UnicodeString& texto) {
  if (vel::SameText(texto, u"sí") || vel::SameText(texto, u"si")) return true;
  if (vel::SameText(texto, u"no")) return false;
  return vel::StrToBool(texto);
}

vel::Variant Lee(Tipo tipo, const vel::UnicodeString& texto) {
  switch (tipo) {
    case Tipo::ftSmallint:
    case Tipo::ftInteger:
    case Tipo::ftWord:
    case Tipo::ftAutoInc:
    case Tipo::ftLargeint:
    case Tipo::ftLongWord:
    case Tipo::ftShortint:
    case Tipo::ftByte:
      return Entero(texto);
    case Tipo::ftFloat:
    case Tipo::ftCurrency:
    case Tipo::ftBCD:
    case Tipo::ftFMTBcd:
    case Tipo::ftExtended:
    case Tipo::ftSingle:
      return vel::StrToFloat(texto);
    case Tipo::ftDate:
    case Tipo::ftTime:
    case Tipo::ftDateTime:
    case Tipo::ftTimeStamp:
      return Momento(texto);
    case Tipo::ftBoolean:
      return Logico(texto);
    default:
      return texto;
  }
}

}  // namespace

void PonValor(vel::TParametrosFiltro& definicion, const vel::TParams& parametros, std::string_view nombre,
              const std::string& texto) {
  const vel::UnicodeString buscado = ATexto(nombre);
  const std::vector<Hueco> huecos = Huecos(definicion);
  std::size_t lugar = 0;
  while (lugar < parametros.Count() && !vel::SameText(parametros[lugar].Name, buscado)) ++lugar;
  if (lugar == parametros.Count() || lugar >= huecos.size()) {
    throw Falla(Codigo::Uso, "La consulta no tiene el parámetro :" + std::string(nombre));
  }
  try {
    *huecos[lugar].valor = Lee(huecos[lugar].tipo, ATexto(texto));
  } catch (const vel::Exception& error) {
    throw Falla(Codigo::Datos, "El valor de :" + std::string(nombre) + " no sirve: " + error.what());
  }
}

std::string_view NombreDeTipo(const vel::TParam& parametro) {
  switch (parametro.Value.GetKind()) {
    case vel::Variant::Kind::Integer:
    case vel::Variant::Kind::Int64:
      return "entero";
    case vel::Variant::Kind::Double:
      return "número";
    case vel::Variant::Kind::Boolean:
      return "lógico";
    case vel::Variant::Kind::Date:
      return parametro.DataType == Tipo::ftDate   ? "fecha"
             : parametro.DataType == Tipo::ftTime ? "hora"
                                                  : "fecha y hora";
    default:
      return "texto";
  }
}

std::string TextoDeValor(const vel::TParam& parametro) {
  const bool esFecha = parametro.Value.GetKind() == vel::Variant::Kind::Date;
  return vel::UTF8Encode(esFecha ? vel::DateTimeToISO(parametro.Value.AsDateTime(), parametro.DataType)
                                 : parametro.Value.AsString());
}

}  // namespace utilvel

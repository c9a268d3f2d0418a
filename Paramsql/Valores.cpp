// Values: their literals and what is bound.

#include "Paramsql/Valores.h"

#include <utility>

#include "Paramsql/TParametrosFiltro.h"
#include "framework/Numeros.h"

namespace vel {

using conjunto::Clase;

namespace {

UnicodeString EntreApostrofos(const UnicodeString& texto) {
  return !texto.empty() && texto.front() == u'\'' ? texto : u"'" + texto + u"'";
}

Variant Entero(std::int64_t valor) {
  return std::in_range<std::int32_t>(valor) ? Variant(static_cast<std::int32_t>(valor)) : Variant(valor);
}

}  // namespace

Clase ClaseDeValor(TFieldType tipo) noexcept {
  Clase clase = Clase::Anidado;
  return conjunto::ClaseDe(tipo, clase) ? clase : Clase::Anidado;
}

UnicodeString TextoCrudo(const Variant& valor) {
  if (!valor.IsArray()) return valor.AsString();
  return Une(valor.AsArray().items, u", ", [](const Variant& v) { return v.AsString(); });
}

Variant ConvierteAClase(Clase clase, const Variant& valor) {
  switch (clase) {
    case Clase::Texto:
      return Variant(valor.AsString());
    case Clase::Entero:
      return Entero(valor.AsInt64());
    case Clase::Real:
      return Variant(valor.AsDouble());
    case Clase::Booleano:
      return Variant(valor.AsBoolean());
    case Clase::Fecha: {
      if (valor.TextPtr() == nullptr) return Variant(valor.AsDateTime());
      // A date that a user wrote in the database's own notation stays text.
      TDateTime momento;
      return TryStrToDateTime(*valor.TextPtr(), momento) ? Variant(momento) : valor;
    }
    case Clase::Anidado:
      break;
  }
  return valor;
}

Variant ConvierteATipo(TFieldType tipo, const Variant& valor) {
  if (valor.IsEmpty() || valor.IsNull()) return Variant::Null();
  return ConvierteAClase(ClaseDeValor(tipo), valor);
}

UnicodeString TParametrosFiltro::DameValorCampoStr(TFieldType tipo, const Variant& valor,
                                                   bool conParametros) {
  if (valor.IsArray()) {
    return Une(valor.AsArray().items, u", ",
               [&](const Variant& v) { return DameValorCampoStr(tipo, v, conParametros); });
  }
  switch (tipo) {
    case TFieldType::ftInteger:
      return IntToStr(valor.AsInt64());
    case TFieldType::ftFloat:
      return FloatToStr(valor.AsDouble());
    case TFieldType::ftString:
      return conParametros ? UnicodeString() : EntreApostrofos(valor.AsString());
    case TFieldType::ftDateTime:
    case TFieldType::ftTimeStamp:
      if (conParametros) return {};
      return EntreApostrofos(valor.TextPtr() != nullptr ? *valor.TextPtr()
                                                        : DateTimeToStr(valor.AsDateTime()));
    default:
      return {};
  }
}

}  // namespace vel

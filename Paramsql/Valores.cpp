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

// The single quotes that a text for a literal has around it, dropped.
std::u16string_view SinApostrofos(std::u16string_view texto) noexcept {
  const bool entre = texto.size() > 1 && texto.front() == u'\'' && texto.back() == u'\'';
  return entre ? texto.substr(1, texto.size() - 2) : texto;
}

// The part of a moment that a field of the type keeps.
TDateTime Parte(TFieldType tipo, TDateTime momento) {
  if (tipo == TFieldType::ftDate) return EncodeDate(DecodeDate(momento));
  if (tipo != TFieldType::ftTime) return momento;
  TDateTime hora;
  TryEncodeTime(DecodeTime(momento), hora);
  return hora;
}

UnicodeString LiteralDeFecha(TFieldType tipo, TDateTime momento) {
  return u"'" + DateTimeToISO(momento, tipo) + u"'";
}

}  // namespace

Clase ClaseDeValor(TFieldType tipo) noexcept { return conjunto::TipoDe(tipo).clase.value_or(Clase::Anidado); }

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

Variant ValorDeParametro(TFieldType tipo, const Variant& valor) {
  const Clase clase = ClaseDeValor(tipo);
  if (clase != Clase::Fecha || valor.IsEmpty() || valor.IsNull()) return ConvierteATipo(tipo, valor);
  TDateTime momento;
  if (valor.TextPtr() == nullptr) {
    momento = valor.AsDateTime();
  } else {
    const std::u16string_view texto = SinApostrofos(*valor.TextPtr());
    // What is written in a database's own notation is left to that database.
    if (!TryISOToDateTime(texto, momento) && !TryStrToDateTime(texto, momento)) return Variant(texto);
  }
  return Variant(Parte(tipo, momento));
}

UnicodeString LimiteLiteral(TFieldType tipo, const Variant& valor) {
  using Kind = Variant::Kind;
  const Kind kind = valor.GetKind();
  const Clase clase = ClaseDeValor(tipo);
  const bool esFecha = kind == Kind::Date && clase != Clase::Texto;
  const bool esNumero = kind == Kind::Integer || kind == Kind::Int64 || kind == Kind::Double;
  if (esFecha || (esNumero && clase == Clase::Fecha)) return LiteralDeFecha(tipo, valor.AsDateTime());
  return valor.AsString();
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
      return valor.TextPtr() != nullptr ? EntreApostrofos(*valor.TextPtr())
                                        : LiteralDeFecha(tipo, valor.AsDateTime());
    default:
      return {};
  }
}

}  // namespace vel

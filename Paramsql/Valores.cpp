// Values: their literals, what stored texts mean, and what is bound.

#include <array>
#include <charconv>
#include <utility>
#include <vector>

#include "Paramsql/Persistencia.h"
#include "Paramsql/Redactor.h"
#include "Paramsql/TParametrosFiltro.h"
#include "framework/Columnas.h"
#include "framework/Numeros.h"

namespace vel {

using conjunto::Clase;

namespace {

// Stands for a null value in a stored text.
constexpr std::u16string_view kNulo = u"NULL";

// The class by which a field type takes values. Data sets, whose values are raw SQL here, stand for all the
// types that say nothing of theirs too.
Clase ClaseDeValor(TFieldType tipo) noexcept {
  Clase clase = Clase::Anidado;
  return conjunto::ClaseDe(tipo, clase) ? clase : Clase::Anidado;
}

Variant Entero(std::int64_t valor) {
  return std::in_range<std::int32_t>(valor) ? Variant(static_cast<std::int32_t>(valor)) : Variant(valor);
}

// The text of a value that reads back to it: a number that its general text would round keeps all its digits.
UnicodeString TextoIda(const Variant& valor) {
  if (valor.GetKind() != Variant::Kind::Double || RoundToText(valor.AsDouble()) == valor.AsDouble()) {
    return valor.AsString();
  }
  std::array<char, 40> buf;
  const auto r = std::to_chars(buf.data(), buf.data() + buf.size(), valor.AsDouble());
  return UnicodeString(buf.data(), r.ptr);
}

Variant Convierte(Clase clase, const Variant& valor) {
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

// What a stored text of the field type means. A text that is not written as the library would ("007",
// "12:30") stays one, so that a literal made of it is the same again.
Variant DeTexto(TFieldType tipo, std::u16string_view texto) {
  const Clase clase = ClaseDeValor(tipo);
  const bool sinVacio = clase == Clase::Entero || clase == Clase::Real || clase == Clase::Booleano;
  if (texto.empty() && sinVacio) return Variant();
  const Variant valor(texto);
  const Variant convertido = Convierte(clase, valor);
  return TextoIda(convertido) == texto ? convertido : valor;
}

bool EntreComillas(std::u16string_view texto, char16_t comilla) {
  return texto.size() > 1 && texto.front() == comilla && texto.back() == comilla;
}

// Reads one element of a list: in single quotes, where a quote stands twice, or the word NULL.
bool LeeElemento(std::u16string_view& resto, TFieldType tipo, std::vector<Variant>& elementos) {
  if (resto.substr(0, kNulo.size()) == kNulo) {
    resto.remove_prefix(kNulo.size());
    elementos.push_back(Variant::Null());
    return true;
  }
  if (resto.empty() || resto.front() != u'\'') return false;
  UnicodeString texto;
  for (std::size_t i = 1; i < resto.size(); ++i) {
    if (resto[i] != u'\'') {
      texto.push_back(resto[i]);
    } else if (i + 1 < resto.size() && resto[i + 1] == u'\'') {
      texto.push_back(resto[i++]);
    } else {
      resto.remove_prefix(i + 1);
      elementos.push_back(DeTexto(tipo, texto));
      return true;
    }
  }
  return false;
}

// A list of elements separated by "," with blanks around them; false when the text is no such list.
bool LeeLista(std::u16string_view resto, TFieldType tipo, std::vector<Variant>& elementos) {
  for (;;) {
    resto = TrimLeftView(resto);
    if (!LeeElemento(resto, tipo, elementos)) return false;
    resto = TrimLeftView(resto);
    if (resto.empty()) return true;
    if (resto.front() != u',') return false;
    resto.remove_prefix(1);
  }
}

UnicodeString EntreApostrofos(const UnicodeString& texto) {
  return !texto.empty() && texto.front() == u'\'' ? texto : u"'" + texto + u"'";
}

template <typename Texto>
UnicodeString Une(const std::vector<Variant>& elementos, std::u16string_view separador, Texto texto) {
  UnicodeString unidos;
  for (const Variant& elemento : elementos) {
    if (&elemento != &elementos.front()) unidos += separador;
    unidos += texto(elemento);
  }
  return unidos;
}

}  // namespace

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

Variant TParametrosFiltro::DameValorLstCampos(TFieldType tipo, std::u16string_view texto) {
  if (EntreComillas(texto, u'"')) texto = texto.substr(1, texto.size() - 2);
  std::vector<Variant> elementos;
  if (texto.size() > 1 && texto.front() == u'{' && texto.back() == u'}') {
    const std::u16string_view lista = texto.substr(1, texto.size() - 2);
    if (lista.empty() || LeeLista(lista, tipo, elementos)) return VarArrayOf(std::move(elementos));
    elementos.clear();
  }
  const std::u16string_view sinApostrofos =
      EntreComillas(texto, u'\'') ? texto.substr(1, texto.size() - 2) : texto;
  if (tipo == TFieldType::ftDataSet) return texto == kNulo ? Variant::Null() : Variant(sinApostrofos);
  if (LeeLista(texto, tipo, elementos)) {
    return elementos.size() == 1 ? std::move(elementos.front()) : VarArrayOf(std::move(elementos));
  }
  return texto.empty() ? Variant() : DeTexto(tipo, sinApostrofos);
}

UnicodeString TParametrosFiltro::DameValorIni(TFieldType tipo, const Variant& valor) {
  // As its type has it, which is what the statement shows; a text stays as it was given.
  const auto texto = [tipo](const Variant& v) {
    return v.TextPtr() != nullptr ? *v.TextPtr() : TextoIda(Convierte(ClaseDeValor(tipo), v));
  };
  const auto elemento = [&texto](const Variant& v) {
    const bool nulo = v.IsEmpty() || v.IsNull();
    return nulo ? UnicodeString(kNulo) : u"'" + StringReplace(texto(v), u"'", u"''") + u"'";
  };
  if (valor.IsEmpty()) return {};
  if (!valor.IsArray()) return u"\"" + elemento(valor) + u"\"";
  const std::vector<Variant>& elementos = valor.AsArray().items;
  const UnicodeString lista = Une(elementos, u",", elemento);
  return elementos.empty() ? UnicodeString(u"\"{}\"") : u"\"" + lista + u"\"";
}

UnicodeString TParametrosFiltro::SaveToExistsInn(const Variant& valor) const {
  const UnicodeString lista = valor.IsArray() ? DameValorIni(TFieldType::ftDataSet, valor) : u"\"\"";
  return lista == u"\"{}\"" ? lista : u"\"{" + lista.substr(1, lista.size() - 2) + u"}\"";
}

namespace persistencia {
namespace {

bool EsPruebaNulo(ENUM_OPERADOR operador) noexcept {
  return operador == ENUM_OPERADOR::ISNULL || operador == ENUM_OPERADOR::NOTNULL;
}

// The type by which the operator takes the value.
TFieldType TipoEfectivo(TFieldType tipo, ENUM_OPERADOR operador) noexcept {
  const bool comoTexto = operador == ENUM_OPERADOR::LIKE || operador == ENUM_OPERADOR::EXISTS ||
                         operador == ENUM_OPERADOR::MACRO || EsPruebaNulo(operador);
  return comoTexto && tipo != TFieldType::ftDataSet ? TFieldType::ftString : tipo;
}

// The operators whose arrays of raw SQL are stored between braces.
bool ConLlaves(ENUM_OPERADOR operador) noexcept {
  return operador == ENUM_OPERADOR::INN || operador == ENUM_OPERADOR::BETWEEN ||
         operador == ENUM_OPERADOR::EXISTS;
}

}  // namespace

UnicodeString TextoDeValor(const TParamWhereSimple& condicion) {
  const Variant& valor = condicion.ValorCampo;
  if (condicion.TipoCampo == TFieldType::ftDataSet) {
    if (valor.IsArray() && ConLlaves(condicion.Operador))
      return TParametrosFiltro(u"").SaveToExistsInn(valor);
    const bool suelto = !valor.IsArray() && !valor.IsEmpty() && !valor.IsNull();
    if (suelto) return u"\"'" + valor.AsString() + u"'\"";
  }
  if (valor.IsEmpty() && EsPruebaNulo(condicion.Operador)) return u"\"''\"";
  return TParametrosFiltro::DameValorIni(TipoEfectivo(condicion.TipoCampo, condicion.Operador), valor);
}

Variant ValorDeTexto(TFieldType tipo, ENUM_OPERADOR operador, std::u16string_view texto) {
  if (tipo == TFieldType::ftDataSet && !ConLlaves(operador) && EntreComillas(texto, u'"')) {
    std::vector<Variant> elementos;
    if (LeeLista(texto.substr(1, texto.size() - 2), TFieldType::ftString, elementos) &&
        elementos.size() > 1) {
      return VarArrayOf(std::move(elementos));
    }
  }
  Variant valor = TParametrosFiltro::DameValorLstCampos(TipoEfectivo(tipo, operador), texto);
  const bool vacio = valor.TextPtr() != nullptr && valor.TextPtr()->empty();
  return vacio && EsPruebaNulo(operador) ? Variant() : std::move(valor);
}

}  // namespace persistencia

UnicodeString TextoCrudo(const Variant& valor) {
  if (!valor.IsArray()) return valor.AsString();
  return Une(valor.AsArray().items, u", ", [](const Variant& v) { return v.AsString(); });
}

Variant ConvierteATipo(TFieldType tipo, const Variant& valor) {
  if (valor.IsEmpty() || valor.IsNull()) return Variant::Null();
  return Convierte(ClaseDeValor(tipo), valor);
}

bool EsTexto(TFieldType tipo) noexcept { return ClaseDeValor(tipo) == Clase::Texto; }

}  // namespace vel

// Values as texts of a file: between double quotes, elements in single quotes, those inside doubled.

#include <array>
#include <charconv>
#include <cmath>
#include <utility>
#include <vector>

#include "Paramsql/Persistencia.h"
#include "Paramsql/TParametrosFiltro.h"
#include "Paramsql/Valores.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel {

using conjunto::Clase;

namespace {

// Stands for a null value in a stored text.
constexpr std::u16string_view kNulo = u"NULL";

// The text of a value that reads back to it: a number that its general text would round keeps all its digits.
UnicodeString TextoIda(const Variant& valor) {
  if (valor.GetKind() != Variant::Kind::Double || RoundToText(valor.AsDouble()) == valor.AsDouble()) {
    return valor.AsString();
  }
  if (!std::isfinite(valor.AsDouble())) {
    throw EInvalidOperation(u"No se puede guardar un valor que no es un número finito");
  }
  std::array<char, 40> buf;
  const auto r = std::to_chars(buf.data(), buf.data() + buf.size(), valor.AsDouble());
  return UnicodeString(buf.data(), r.ptr);
}

// The value of the class that the text is written for, as this library would write it; else the text, so that
// a literal made of "007" or "12:30" is the same again. Raises EConvertError for what is none of the class.
Variant Canonico(Clase clase, std::u16string_view texto) {
  Variant valor(texto);
  Variant convertido = ConvierteAClase(clase, valor);
  return TextoIda(convertido) == texto ? convertido : valor;
}

// What a stored text of the field type means; an empty one is no number and no truth value.
Variant DeTexto(TFieldType tipo, std::u16string_view texto) {
  const Clase clase = ClaseDeValor(tipo);
  const bool sinVacio = clase == Clase::Entero || clase == Clase::Real || clase == Clase::Booleano;
  return texto.empty() && sinVacio ? Variant() : Canonico(clase, texto);
}

// The same where the field's type said nothing of the value that was stored: of its class when the text is
// written so, else of the first one that it is written for.
Variant DeTextoSuelto(TFieldType tipo, std::u16string_view texto) {
  const Clase propia = ClaseDeValor(tipo);
  if (propia == Clase::Texto) return Variant(texto);
  for (const Clase clase : {propia, Clase::Entero, Clase::Real, Clase::Booleano, Clase::Fecha}) {
    try {
      Variant valor = Canonico(clase, texto);
      if (valor.TextPtr() == nullptr) return valor;
    } catch (const Exception&) {
      // Not written for this class: the next one may be.
      continue;
    }
  }
  return Variant(texto);
}

using Lectura = Variant (*)(TFieldType, std::u16string_view);

bool EntreComillas(std::u16string_view texto, char16_t comilla) {
  return texto.size() > 1 && texto.front() == comilla && texto.back() == comilla;
}

// Reads one element of a list: in single quotes, where a quote stands twice, the word NULL, or nothing.
bool LeeElemento(std::u16string_view& resto, TFieldType tipo, Lectura lee, std::vector<Variant>& elementos) {
  if (resto.empty() || resto.front() == u',') {
    elementos.emplace_back();
    return true;
  }
  if (resto.substr(0, kNulo.size()) == kNulo) {
    resto.remove_prefix(kNulo.size());
    elementos.push_back(Variant::Null());
    return true;
  }
  if (resto.front() != u'\'') return false;
  UnicodeString texto;
  for (std::size_t i = 1; i < resto.size(); ++i) {
    if (resto[i] != u'\'') {
      texto.push_back(resto[i]);
    } else if (i + 1 < resto.size() && resto[i + 1] == u'\'') {
      texto.push_back(resto[i++]);
    } else {
      resto.remove_prefix(i + 1);
      elementos.push_back(lee(tipo, texto));
      return true;
    }
  }
  return false;
}

// A list of elements separated by "," with blanks around them; false when the text is no such list, nor when
// it has commas alone.
bool LeeLista(std::u16string_view texto, TFieldType tipo, Lectura lee, std::vector<Variant>& elementos) {
  std::u16string_view resto = texto;
  for (;;) {
    resto = TrimLeftView(resto);
    if (!LeeElemento(resto, tipo, lee, elementos)) return false;
    resto = TrimLeftView(resto);
    if (resto.empty()) break;
    if (resto.front() != u',') return false;
    resto.remove_prefix(1);
  }
  return texto.find_first_not_of(u", \t") != std::u16string_view::npos;
}

Variant Lee(TFieldType tipo, std::u16string_view texto, Lectura lee) {
  if (EntreComillas(texto, u'"')) texto = texto.substr(1, texto.size() - 2);
  std::vector<Variant> elementos;
  if (texto.size() > 1 && texto.front() == u'{' && texto.back() == u'}') {
    const std::u16string_view lista = texto.substr(1, texto.size() - 2);
    if (lista.empty() || LeeLista(lista, tipo, lee, elementos)) return VarArrayOf(std::move(elementos));
    elementos.clear();
  }
  const std::u16string_view sinApostrofos =
      EntreComillas(texto, u'\'') ? texto.substr(1, texto.size() - 2) : texto;
  if (tipo == TFieldType::ftDataSet) return texto == kNulo ? Variant::Null() : Variant(sinApostrofos);
  if (texto.empty()) return Variant();
  if (LeeLista(texto, tipo, lee, elementos)) {
    return elementos.size() == 1 ? std::move(elementos.front()) : VarArrayOf(std::move(elementos));
  }
  return lee(tipo, sinApostrofos);
}

// The stored text of a value whose elements have these texts; nothing for an empty one.
template <typename Texto>
UnicodeString Guarda(const Variant& valor, Texto texto) {
  const auto elemento = [&texto](const Variant& v) {
    if (v.IsEmpty()) return UnicodeString();
    return v.IsNull() ? UnicodeString(kNulo) : u"'" + StringReplace(texto(v), u"'", u"''") + u"'";
  };
  if (valor.IsEmpty()) return {};
  if (!valor.IsArray()) return u"\"" + elemento(valor) + u"\"";
  const std::vector<Variant>& elementos = valor.AsArray().items;
  return elementos.empty() ? UnicodeString(u"\"{}\"") : u"\"" + Une(elementos, u",", elemento) + u"\"";
}

// The text of a value that no type converts: texts and raw SQL as the statement has them.
UnicodeString TextoSuelto(TFieldType tipo, const Variant& valor) {
  const bool comoTexto = tipo == TFieldType::ftDataSet || ClaseDeValor(tipo) == Clase::Texto;
  return comoTexto ? valor.AsString() : TextoIda(valor);
}

}  // namespace

Variant TParametrosFiltro::DameValorLstCampos(TFieldType tipo, std::u16string_view texto) {
  return Lee(tipo, texto, &DeTexto);
}

UnicodeString TParametrosFiltro::DameValorIni(TFieldType tipo, const Variant& valor) {
  return Guarda(valor, [tipo](const Variant& v) {
    // As its type has it, which is what a literal shows; a text stays as it was given.
    return v.TextPtr() != nullptr ? *v.TextPtr() : TextoSuelto(tipo, ConvierteATipo(tipo, v));
  });
}

UnicodeString TParametrosFiltro::SaveToExistsInn(const Variant& valor) const {
  if (!valor.IsArray() || valor.AsArray().items.empty()) return u"\"{}\"";
  const UnicodeString lista = DameValorIni(TFieldType::ftDataSet, valor);
  return u"\"{" + lista.substr(1, lista.size() - 2) + u"}\"";
}

namespace persistencia {
namespace {

// What an operator makes of a value.
enum class Uso : std::uint8_t {
  PorTipo,
  /// As it is, whatever the field's type: the bounds of an interval, and marks.
  Suelto,
  Texto,
  Ninguno
};

Uso UsoDe(ENUM_OPERADOR operador) noexcept {
  switch (operador) {
    case ENUM_OPERADOR::LIKE:
    case ENUM_OPERADOR::EXISTS:
      return Uso::Texto;
    case ENUM_OPERADOR::ISNULL:
    case ENUM_OPERADOR::NOTNULL:
      return Uso::Ninguno;
    case ENUM_OPERADOR::BETWEEN:
    case ENUM_OPERADOR::MACRO:
      return Uso::Suelto;
    default:
      return Uso::PorTipo;
  }
}

// Arrays of raw SQL stand between braces for these operators; and for the others when they have one element,
// which would read back as raw SQL in quotes.
bool ConLlaves(ENUM_OPERADOR operador, const Variant& valor) noexcept {
  return operador == ENUM_OPERADOR::INN || operador == ENUM_OPERADOR::BETWEEN ||
         operador == ENUM_OPERADOR::EXISTS || valor.AsArray().items.size() < 2;
}

UnicodeString TextoCrudoGuardado(const TParamWhereSimple& condicion) {
  const Variant& valor = condicion.ValorCampo;
  if (valor.IsArray() && ConLlaves(condicion.Operador, valor)) {
    return TParametrosFiltro(u"").SaveToExistsInn(valor);
  }
  const bool suelto = !valor.IsArray() && !valor.IsEmpty() && !valor.IsNull();
  return suelto ? u"\"'" + valor.AsString() + u"'\""
                : TParametrosFiltro::DameValorIni(condicion.TipoCampo, valor);
}

}  // namespace

UnicodeString TextoDeValor(const TParamWhereSimple& condicion) {
  const TFieldType tipo = condicion.TipoCampo;
  const Variant& valor = condicion.ValorCampo;
  const Uso uso = UsoDe(condicion.Operador);
  if (valor.IsEmpty() && uso == Uso::Ninguno) return u"\"''\"";
  if (tipo == TFieldType::ftDataSet) return TextoCrudoGuardado(condicion);
  if (uso == Uso::PorTipo) return TParametrosFiltro::DameValorIni(tipo, valor);
  if (uso == Uso::Suelto) return Guarda(valor, [tipo](const Variant& v) { return TextoSuelto(tipo, v); });
  return TParametrosFiltro::DameValorIni(TFieldType::ftString, valor);
}

Variant ValorDeTexto(TFieldType tipo, ENUM_OPERADOR operador, std::u16string_view texto) {
  const Uso uso = UsoDe(operador);
  if (tipo == TFieldType::ftDataSet) {
    std::vector<Variant> elementos;
    const bool esLista =
        EntreComillas(texto, u'"') && LeeLista(texto.substr(1, texto.size() - 2), tipo, &DeTexto, elementos);
    const bool deVarios = esLista && elementos.size() > 1 && !ConLlaves(operador, VarArrayOf(elementos));
    if (deVarios) return VarArrayOf(std::move(elementos));
  } else if (uso == Uso::Suelto || (uso == Uso::PorTipo && ClaseDeValor(tipo) == Clase::Anidado)) {
    return Lee(tipo, texto, &DeTextoSuelto);
  } else if (uso != Uso::PorTipo) {
    tipo = TFieldType::ftString;
  }
  Variant valor = Lee(tipo, texto, &DeTexto);
  const bool vacio = valor.TextPtr() != nullptr && valor.TextPtr()->empty();
  return vacio && uso == Uso::Ninguno ? Variant() : std::move(valor);
}

}  // namespace persistencia

}  // namespace vel

// Values as texts of a file, between double quotes: one value in single quotes, "'7'"; several as a list,
// "'7','8'". Where a list would read back as something else it stands between braces, which files have always
// been read with: an array of one element, "{'7'}", of none, "{}", and of values that are all unassigned in a
// field where '' is a text, "{,}".

#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

#include "Paramsql/Persistencia.h"
#include "Paramsql/TParametrosFiltro.h"
#include "Paramsql/TablaOperadores.h"
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
  if (valor.GetKind() != Variant::Kind::Double) return valor.AsString();
  // What is written for these reads back as no number.
  if (!std::isfinite(valor.AsDouble())) {
    throw EInvalidOperation(u"No se puede guardar un valor que no es un número finito");
  }
  if (RoundToText(valor.AsDouble()) == valor.AsDouble()) return valor.AsString();
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

// How the values of a condition are stored.
struct Forma {
  /// The type as which they are written and read.
  TFieldType tipo;
  /// The field holds text: a quote inside of its single value stands twice.
  bool deTexto = ClaseDeValor(tipo) == Clase::Texto;
  /// Numbers in a date field are stored as the moment that they are, so that "20240513" or "2024", given as
  /// texts, are no numbers when they are read.
  bool comoMomento = ClaseDeValor(tipo) == Clase::Fecha;
  /// A text that is no value of the type is refused; a type that says nothing of its values takes texts.
  bool estricta = true;
};

// What is stored of a value that is there: its own text, whatever the field's type.
UnicodeString TextoPropio(const Forma& forma, const Variant& valor) {
  if (valor.TextPtr() != nullptr) return *valor.TextPtr();
  if (forma.comoMomento) return ConvierteATipo(forma.tipo, valor).AsString();
  // Texts and raw SQL are as the statement has them.
  const bool comoTexto = forma.tipo == TFieldType::ftDataSet || ClaseDeValor(forma.tipo) == Clase::Texto;
  return comoTexto ? valor.AsString() : TextoIda(valor);
}

// The value that has this own text: of the first class that writes it so. Nothing when it is but a text.
std::optional<Variant> Reconoce(const Forma& forma, std::u16string_view texto) {
  const Clase propia = ClaseDeValor(forma.tipo);
  // Where a value is not converted, a large whole number must not lose its last digits as a floating one.
  const Clase primera = forma.estricta ? propia : Clase::Entero;
  for (const Clase clase : {primera, propia, Clase::Entero, Clase::Real, Clase::Booleano, Clase::Fecha}) {
    try {
      Variant valor = Canonico(clase, texto);
      if (valor.TextPtr() != nullptr) continue;
      // A day such as "20240513", given as text, is no number of days.
      if (propia == Clase::Fecha) DateTimeToStr(valor.AsDateTime());
      return valor;
    } catch (const Exception&) {
      // Not written for this class: the next one may be.
      continue;
    }
  }
  return std::nullopt;
}

// What the text of one value means; an empty one is no number and no truth value.
Variant DeTexto(const Forma& forma, std::u16string_view texto) {
  const Clase clase = ClaseDeValor(forma.tipo);
  if (clase == Clase::Texto || (clase == Clase::Anidado && forma.estricta)) return Variant(texto);
  const bool sinVacio = clase == Clase::Entero || clase == Clase::Real || clase == Clase::Booleano;
  if (texto.empty() && sinVacio) return {};
  if (!forma.comoMomento) {
    if (std::optional<Variant> valor = Reconoce(forma, texto)) return *std::move(valor);
  }
  return forma.estricta ? Canonico(clase, texto) : Variant(texto);
}

bool EntreComillas(std::u16string_view texto, char16_t comilla) {
  return texto.size() > 1 && texto.front() == comilla && texto.back() == comilla;
}

// Reads one element of a list: in single quotes, where a quote stands twice, the word NULL, or nothing.
bool LeeElemento(std::u16string_view& resto, const Forma& forma, std::vector<Variant>& elementos) {
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
      elementos.push_back(DeTexto(forma, texto));
      return true;
    }
  }
  return false;
}

// A list of elements separated by "," with blanks around them; false when the text is no such list.
bool LeeLista(std::u16string_view resto, const Forma& forma, std::vector<Variant>& elementos) {
  for (;;) {
    resto = TrimLeftView(resto);
    if (!LeeElemento(resto, forma, elementos)) return false;
    resto = TrimLeftView(resto);
    if (resto.empty()) return true;
    if (resto.front() != u',') return false;
    resto.remove_prefix(1);
  }
}

// The same for a list without braces, where commas alone are a text.
bool LeeListaSuelta(std::u16string_view texto, const Forma& forma, std::vector<Variant>& elementos) {
  return texto.find_first_not_of(u", \t") != std::u16string_view::npos && LeeLista(texto, forma, elementos);
}

Variant Lee(std::u16string_view texto, const Forma& forma) {
  if (EntreComillas(texto, u'"')) texto = texto.substr(1, texto.size() - 2);
  std::vector<Variant> elementos;
  if (texto.size() > 1 && texto.front() == u'{' && texto.back() == u'}') {
    const std::u16string_view lista = texto.substr(1, texto.size() - 2);
    if (lista.empty() || LeeLista(lista, forma, elementos)) return VarArrayOf(std::move(elementos));
    elementos.clear();
  }
  const std::u16string_view sinApostrofos =
      EntreComillas(texto, u'\'') ? texto.substr(1, texto.size() - 2) : texto;
  if (forma.tipo == TFieldType::ftDataSet) return texto == kNulo ? Variant::Null() : Variant(sinApostrofos);
  if (texto.empty()) return {};
  if (LeeListaSuelta(texto, forma, elementos)) {
    return elementos.size() == 1 ? std::move(elementos.front()) : VarArrayOf(std::move(elementos));
  }
  return DeTexto(forma, sinApostrofos);
}

UnicodeString Elemento(const Variant& valor, const Forma& forma) {
  // Nothing at all, where '' would be a text without characters.
  if (valor.IsEmpty()) return DeTexto(forma, u"").IsEmpty() ? u"''" : u"";
  if (valor.IsNull()) return UnicodeString(kNulo);
  return u"'" + StringReplace(TextoPropio(forma, valor), u"'", u"''") + u"'";
}

// The elements of a list; one that is nothing is a blank, since no text at all is a list without elements.
UnicodeString Lista(const std::vector<Variant>& elementos, const Forma& forma) {
  UnicodeString lista = Une(elementos, u",", [&forma](const Variant& v) { return Elemento(v, forma); });
  return elementos.size() == 1 && lista.empty() ? u" " : lista;
}

UnicodeString Guarda(const Variant& valor, const Forma& forma) {
  if (valor.IsArray()) {
    const std::vector<Variant>& elementos = valor.AsArray().items;
    const UnicodeString lista = Lista(elementos, forma);
    // Without braces one element would read back as a plain value, and commas alone as a text.
    const bool llaves = elementos.size() < 2 || lista.find_first_not_of(u',') == UnicodeString::npos;
    return llaves ? u"\"{" + lista + u"}\"" : u"\"" + lista + u"\"";
  }
  const UnicodeString elemento = Elemento(valor, forma);
  if (elemento.empty()) return {};
  UnicodeString guardado = u"\"" + elemento + u"\"";
  const UnicodeString* const texto = valor.TextPtr();
  if (forma.deTexto || texto == nullptr || texto->find(u'\'') == UnicodeString::npos) return guardado;
  // Quotes are doubled in text fields only; elsewhere just when the text would not read back without.
  UnicodeString literal = u"\"'" + *texto + u"'\"";
  Forma cualquiera = forma;
  cualquiera.estricta = false;
  return Lee(literal, cualquiera) == valor ? literal : guardado;
}

// An array of raw SQL between braces.
UnicodeString GuardaCrudos(const Variant& arreglo) {
  return u"\"{" + Lista(arreglo.AsArray().items, Forma{.tipo = TFieldType::ftDataSet}) + u"}\"";
}

// Texts are texts whatever the field's type; bounds and marks stand as they are given.
Forma FormaDe(TFieldType tipo, ENUM_OPERADOR operador) {
  Forma forma{.tipo = tipo};
  switch (FilaDe(operador).uso) {
    case UsoDeValor::Texto:
    case UsoDeValor::Ninguno:
      return {.tipo = TFieldType::ftString, .deTexto = forma.deTexto};
    case UsoDeValor::Limites:
    case UsoDeValor::Marca:
      forma.comoMomento = false;
      forma.estricta = false;
      break;
    case UsoDeValor::DelTipo:
      forma.estricta = ClaseDeValor(tipo) != Clase::Anidado;
      break;
  }
  return forma;
}

bool SinValor(ENUM_OPERADOR operador) noexcept { return FilaDe(operador).uso == UsoDeValor::Ninguno; }

UnicodeString GuardaCrudo(const TParamWhereSimple& condicion) {
  const Variant& valor = condicion.ValorCampo;
  if (valor.IsArray() && FilaDe(condicion.Operador).llaves) return GuardaCrudos(valor);
  if (valor.IsArray() || valor.IsNull()) return Guarda(valor, Forma{.tipo = condicion.TipoCampo});
  return u"\"'" + valor.AsString() + u"'\"";
}

}  // namespace

namespace persistencia {

UnicodeString TextoDeValor(TFieldType tipo, const Variant& valor) {
  return Guarda(valor, Forma{.tipo = tipo});
}

Variant ValorDeTexto(TFieldType tipo, std::u16string_view texto) { return Lee(texto, Forma{.tipo = tipo}); }

UnicodeString TextoDeValor(const TParamWhereSimple& condicion) {
  const Variant& valor = condicion.ValorCampo;
  if (valor.IsEmpty() && SinValor(condicion.Operador)) return u"\"''\"";
  if (condicion.TipoCampo == TFieldType::ftDataSet) return GuardaCrudo(condicion);
  return Guarda(valor, FormaDe(condicion.TipoCampo, condicion.Operador));
}

Variant ValorDeTexto(TFieldType tipo, ENUM_OPERADOR operador, std::u16string_view texto) {
  if (tipo == TFieldType::ftDataSet) {
    std::vector<Variant> elementos;
    const bool esLista = !FilaDe(operador).llaves && EntreComillas(texto, u'"') &&
                         LeeListaSuelta(texto.substr(1, texto.size() - 2), {.tipo = tipo}, elementos);
    if (esLista && elementos.size() > 1) return VarArrayOf(std::move(elementos));
    return Lee(texto, {.tipo = tipo});
  }
  Variant valor = Lee(texto, FormaDe(tipo, operador));
  const bool vacio = valor.TextPtr() != nullptr && valor.TextPtr()->empty();
  return vacio && SinValor(operador) ? Variant() : std::move(valor);
}

}  // namespace persistencia

Variant TParametrosFiltro::DameValorLstCampos(TFieldType tipo, std::u16string_view texto) {
  return persistencia::ValorDeTexto(tipo, texto);
}

UnicodeString TParametrosFiltro::DameValorIni(TFieldType tipo, const Variant& valor) {
  return persistencia::TextoDeValor(tipo, valor);
}

UnicodeString TParametrosFiltro::SaveToExistsInn(const Variant& valor) const {
  return valor.IsArray() ? GuardaCrudos(valor) : u"\"{}\"";
}

}  // namespace vel

#pragma once

#include <string_view>
#include <vector>

#include "framework/Texto.h"
#include "framework/TiposDeCampo.h"
#include "framework/Variant.h"

namespace vel {

/// The class by which a field type takes values. Data sets, whose values are raw SQL here, stand for all the
/// types that say nothing of theirs too.
conjunto::Clase ClaseDeValor(TFieldType tipo) noexcept;

/// Text of a raw SQL value: an array gives its elements' texts joined by ", ".
UnicodeString TextoCrudo(const Variant& valor);

/// The value as its field type has it: texts, whole numbers, floating numbers, truth values and dates
/// converted, anything else as it is. Null and empty values are null. Raises EConvertError or
/// EVariantTypeCastError.
Variant ConvierteATipo(TFieldType tipo, const Variant& valor);
/// The same by class, for a value that is there.
Variant ConvierteAClase(conjunto::Clase clase, const Variant& valor);

/// What a parameter of a field type is bound with: as ConvierteATipo has it, but a date field takes a text
/// that spells a date, as DateTimeToISO or DateTimeToStr write it, as that moment; single quotes around the
/// text, meant for a literal, are dropped either way. An ftDate keeps the day alone, an ftTime the time of
/// day.
Variant ValorDeParametro(TFieldType tipo, const Variant& valor);

/// Text of a bound of an interval in a statement with literals: a date, or a number in a date field, is its
/// ISO text in single quotes; any other value is its plain text.
UnicodeString LimiteLiteral(TFieldType tipo, const Variant& valor);

/// The texts of values, one after another.
template <typename Texto>
UnicodeString Une(const std::vector<Variant>& valores, std::u16string_view separador, Texto texto) {
  UnicodeString unidos;
  for (const Variant& valor : valores) {
    if (&valor != &valores.front()) unidos += separador;
    unidos += texto(valor);
  }
  return unidos;
}

}  // namespace vel

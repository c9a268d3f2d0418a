#include "Paramsql/TablaOperadores.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace vel {
namespace {

// What stands for a value outside the members.
constexpr FilaOperador kFuera{u"", u"", u"", &Redactor::Comparacion, UsoDeValor::DelTipo};

// The table. It has no default: a member added to the enumeration does not compile before it has its row,
// whatever else the build takes for an error.
#pragma GCC diagnostic error "-Wswitch"
constexpr FilaOperador Fila(ENUM_OPERADOR op) noexcept {
  using enum ENUM_OPERADOR;
  using enum UsoDeValor;
  using R = Redactor;
  constexpr bool conLlaves = true;
  // clang-format off
  switch (op) {
    //                        in statements     in conditions     read             written as         value    raw lists
    case IGUAL:       return {u"=",             u"=",             u"=",            &R::Comparacion, DelTipo};
    case MENOR:       return {u"<",             u"<",             u"<",            &R::Comparacion, DelTipo};
    case MENOR_IGUAL: return {u"<=",            u"<=",            u"<=",           &R::Comparacion, DelTipo};
    case MAYOR:       return {u">",             u">",             u">",            &R::Comparacion, DelTipo};
    case MAYOR_IGUAL: return {u">=",            u">=",            u">=",           &R::Comparacion, DelTipo};
    case DIFERENTE:   return {u" <> ",          u" != ",          u"",             &R::Comparacion, DelTipo};
    case LIKE:        return {u" LIKE ",        u" LIKE ",        u"LIKE",         &R::Patron,      Texto};
    case INN:         return {u" IN ",          u" IN ",          u"IN",           &R::Pertenencia, DelTipo, conLlaves};
    case NOTIN:       return {u" NOT IN ",      u" NOT IN ",      u"NOT IN",       &R::Pertenencia, DelTipo};
    case NOTNULL:     return {u" IS NOT NULL ", u" IS NOT NULL",  u"IS NOT NULL",  &R::PruebaNulo,  Ninguno};
    case ISNULL:      return {u" IS NULL ",     u" IS NULL",      u"IS NULL",      &R::PruebaNulo,  Ninguno};
    case BETWEEN:     return {u" BETWEEN ",     u" BETWEEN ",     u"BETWEEN",      &R::Intervalo,   Limites, conLlaves};
    case EXISTS:      return {u" EXISTS ",      u" EXISTS ",      u"EXISTS",       &R::Existencia,  Texto,   conLlaves};
    case MACRO:       return {u" NINGUNO ",     u" MACRO ",       u"NINGUNO",      &R::Comparacion, Marca};
  }
  // clang-format on
  return kFuera;
}

constexpr std::size_t kOrdinales = std::numeric_limits<std::uint8_t>::max() + 1;

constexpr FilaOperador FilaDeOrdinal(std::size_t ordinal) noexcept {
  return Fila(static_cast<ENUM_OPERADOR>(ordinal));
}

// One more than the last ordinal that has a row.
constexpr std::size_t Largo() noexcept {
  std::size_t largo = kOrdinales;
  while (largo > 0 && FilaDeOrdinal(largo - 1).filtro.empty()) --largo;
  return largo;
}

constexpr auto kTabla = []() {
  std::array<FilaOperador, Largo()> tabla;
  for (std::size_t i = 0; i < tabla.size(); ++i) tabla[i] = FilaDeOrdinal(i);
  return tabla;
}();

// What a condition says of itself is all that a file holds of its operator, and what is read as one operator
// is read as no other.
constexpr bool SeDistinguen() noexcept {
  for (std::size_t i = 0; i < kTabla.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      if (kTabla[i].condicion == kTabla[j].condicion) return false;
      if (!kTabla[i].leido.empty() && kTabla[i].leido == kTabla[j].leido) return false;
    }
  }
  return true;
}
static_assert(SeDistinguen(), "two operators have the same text");

}  // namespace

const FilaOperador& FilaDe(ENUM_OPERADOR op) noexcept {
  const auto ordinal = static_cast<std::size_t>(op);
  return ordinal < kTabla.size() ? kTabla[ordinal] : kFuera;
}

std::span<const FilaOperador> TablaOperadores() noexcept { return kTabla; }

}  // namespace vel

#include "framework/TiposDeCampo.h"

#include <array>
#include <cstddef>

namespace vel::conjunto {
namespace {

template <typename Numero>
constexpr Rango kRango{std::numeric_limits<Numero>::lowest(), std::numeric_limits<Numero>::max()};

constexpr TipoDeCampo kSinColumna;

// The table. It has no default: a member added to the enumeration does not compile before it has its row,
// whatever else the build takes for an error.
#pragma GCC diagnostic error "-Wswitch"
constexpr TipoDeCampo Fila(TFieldType tipo) noexcept {
  using enum TFieldType;
  using enum Clase;
  // clang-format off
  switch (tipo) {
    //                          column    fieldtype      SUBTYPE      numbers
    case ftUnknown:       return kSinColumna;
    case ftString:        return {Texto,    "string",      "",          {}};
    case ftSmallint:      return {Entero,   "i2",          "",          kRango<std::int16_t>};
    case ftInteger:       return {Entero,   "i4",          "",          kRango<std::int32_t>};
    case ftWord:          return {Entero,   "ui2",         "",          kRango<std::uint16_t>};
    case ftBoolean:       return {Booleano, "boolean",     "",          {}};
    case ftFloat:         return {Real,     "r8",          "",          {}};
    case ftCurrency:      return {Real,     "r8",          "Money",     {}};
    case ftBCD:           return {Real,     "fixed",       "",          {}};
    case ftDate:          return {Fecha,    "date",        "",          {}};
    case ftTime:          return {Fecha,    "time",        "",          {}};
    case ftDateTime:      return {Fecha,    "dateTime",    "",          {}};
    case ftBytes:
    case ftVarBytes:      return kSinColumna;
    case ftAutoInc:       return {Entero,   "i4",          "Autoinc",   kRango<std::int32_t>};
    case ftBlob:          return kSinColumna;
    case ftMemo:          return {Texto,    kTipoMemo,     "Text",      {}};
    case ftGraphic:       return kSinColumna;
    case ftFmtMemo:       return {Texto,    kTipoMemo,     "Formatted", {}};
    case ftFixedChar:     return {Texto,    "string",      "FixedChar", {}};
    case ftWideString:    return {Texto,    kTipoUnicode,  "",          {}};
    case ftLargeint:      return {Entero,   "i8",          "",          {}};
    case ftADT:
    case ftArray:
    case ftReference:     return kSinColumna;
    case ftDataSet:       return {Anidado,  kTipoAnidado,  "",          {}};
    case ftVariant:       return kSinColumna;
    case ftGuid:          return {Texto,    "string",      "Guid",      {}};
    case ftTimeStamp:     return {Fecha,    "SQLdateTime", "",          {}};
    case ftFMTBcd:        return {Real,     "fixed",       "FMTBcd",    {}};
    case ftFixedWideChar: return {Texto,    kTipoUnicode,  "FixedChar", {}};
    case ftWideMemo:      return {Texto,    kTipoMemo,     "WideText",  {}};
    case ftLongWord:      return {Entero,   "ui4",         "",          kRango<std::uint32_t>};
    case ftShortint:      return {Entero,   "i1",          "",          kRango<std::int8_t>};
    case ftByte:          return {Entero,   "ui1",         "",          kRango<std::uint8_t>};
    case ftExtended:      return {Real,     "r8",          "Extended",  {}};
    case ftSingle:        return {Real,     "r8",          "Single",    kRango<float>};
  }
  // clang-format on
  return kSinColumna;
}

constexpr std::size_t kOrdinales = std::numeric_limits<std::uint8_t>::max() + 1;

constexpr TipoDeCampo FilaDeOrdinal(std::size_t ordinal) noexcept {
  return Fila(static_cast<TFieldType>(ordinal));
}

// One more than the last ordinal that data sets keep.
constexpr std::size_t Largo() noexcept {
  std::size_t largo = kOrdinales;
  while (largo > 0 && !FilaDeOrdinal(largo - 1).clase) --largo;
  return largo;
}

constexpr auto kTabla = []() {
  std::array<TipoDeCampo, Largo()> tabla;
  for (std::size_t i = 0; i < tabla.size(); ++i) tabla[i] = FilaDeOrdinal(i);
  return tabla;
}();

constexpr bool SeDistinguen() noexcept {
  for (std::size_t i = 0; i < kTabla.size(); ++i) {
    const TipoDeCampo& uno = kTabla[i];
    if (uno.clase.has_value() == uno.paquete.empty()) return false;
    for (std::size_t j = 0; j < i; ++j) {
      if (uno.clase && kTabla[j].paquete == uno.paquete && kTabla[j].subtipo == uno.subtipo) return false;
    }
  }
  return true;
}
static_assert(SeDistinguen(), "a type that data sets keep has no name in packets, or another type's");

}  // namespace

const TipoDeCampo& TipoDe(TFieldType tipo) noexcept {
  const auto ordinal = static_cast<std::size_t>(tipo);
  return ordinal < kTabla.size() ? kTabla[ordinal] : kSinColumna;
}

std::optional<TFieldType> TipoDePaquete(std::string_view paquete, std::string_view subtipo) noexcept {
  std::optional<TFieldType> sinSubtipo;
  for (std::size_t i = 0; i < kTabla.size(); ++i) {
    if (!kTabla[i].clase || kTabla[i].paquete != paquete) continue;
    if (kTabla[i].subtipo == subtipo) return static_cast<TFieldType>(i);
    if (kTabla[i].subtipo.empty()) sinSubtipo = static_cast<TFieldType>(i);
  }
  return sinSubtipo;
}

}  // namespace vel::conjunto

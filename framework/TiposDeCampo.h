#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

#include "framework/TFieldType.h"

// What each field type is: to data sets, to packets, and to those who must know what kind of values it takes.
namespace vel::conjunto {

/// What a column holds. Dates and times are days in the double.
enum class Clase : std::uint8_t { Entero, Booleano, Real, Fecha, Texto, Anidado };

/// The numbers that a type takes, both ends included; the doubles are exact for the ends of every integer
/// type of up to 32 bits, and none is needed for 64.
struct Rango {
  double minimo = -std::numeric_limits<double>::infinity();
  double maximo = std::numeric_limits<double>::infinity();
};

/// All that tells one field type from another.
struct TipoDeCampo {
  /// Kind of column; nothing for a type that data sets do not keep, which has no names either.
  std::optional<Clase> clase;
  /// What packets call it: "fieldtype" and "SUBTYPE".
  std::string_view paquete;
  std::string_view subtipo;
  Rango rango;
};

/// The packet's names of texts whose width counts bytes, of texts without a width, and of nested data sets.
inline constexpr std::string_view kTipoUnicode = "string.uni";
inline constexpr std::string_view kTipoMemo = "bin.hex";
inline constexpr std::string_view kTipoAnidado = "nested";

/// The type's row. For a value outside the members it is that of a type that data sets do not keep.
const TipoDeCampo& TipoDe(TFieldType tipo) noexcept;

/// The type that a packet names so; one with an unknown subtype is the type without, which it refines.
std::optional<TFieldType> TipoDePaquete(std::string_view paquete, std::string_view subtipo) noexcept;

}  // namespace vel::conjunto

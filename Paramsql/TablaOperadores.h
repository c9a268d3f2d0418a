#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "Paramsql/Enumeraciones.h"
#include "Paramsql/Redactor.h"

namespace vel {

/// What an operator takes as its value, which decides how files hold it.
enum class UsoDeValor : std::uint8_t {
  /// A value of the field's type, or a list of them.
  DelTipo,
  /// A text whatever the field's type: a pattern, a sub-query.
  Texto,
  /// Two bounds, kept as they are given.
  Limites,
  /// Nothing.
  Ninguno,
  /// Whatever the caller likes, kept as it is given: the condition is a mark, which writes nothing in WHERE.
  Marca,
};

/// All that tells one operator from another.
struct FilaOperador {
  /// What statements are written with.
  std::u16string_view filtro;
  /// What a condition says of itself; stored definitions hold it.
  std::u16string_view condicion;
  /// What is read as this operator; empty for none.
  std::u16string_view leido;
  /// Writes the condition.
  Redactor::Pieza pieza;
  UsoDeValor uso;
  /// In files an array of raw SQL stands between braces.
  bool llaves = false;
};

/// The operator's row. A value outside the members has no texts and is written as a comparison.
const FilaOperador& FilaDe(ENUM_OPERADOR op) noexcept;

/// All rows, by ordinal.
std::span<const FilaOperador> TablaOperadores() noexcept;

}  // namespace vel

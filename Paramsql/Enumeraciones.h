#pragma once

#include <cstdint>

namespace vel {

/// Operator of a condition. The ordinals are stored; values outside the members are legal input.
enum class ENUM_OPERADOR : std::uint8_t {
  IGUAL = 0,
  MENOR,
  MENOR_IGUAL,
  MAYOR,
  MAYOR_IGUAL,
  DIFERENTE,
  LIKE,
  INN,
  NOTIN,
  NOTNULL,
  ISNULL,
  BETWEEN,
  EXISTS,
  /// A mark for the caller: writes no SQL in WHERE.
  MACRO,
};

/// How a condition is joined to the one that follows it.
enum class ENUM_CONECTOR : std::uint8_t { AND = 0, OR };

/// Parenthesis that a condition opens before it or closes after it.
enum class ENUM_GRUPO : std::uint8_t { INICIA = 0, TERMINA, NADA };

/// How a statement marks its parameters. In the styles with names those of HAVING begin with "hav".
enum class ENUM_MARCADOR : std::uint8_t {
  /// ":var1"
  DOSPUNTOS = 0,
  /// "?"
  INTERROGACION,
  /// "$1"
  PESOS,
  /// "@var1"
  ARROBA,
};

/// Where AgregaFiltroLIKE and AgregaHavingLIKE let a text stand in the value of the field.
enum class ENUM_COINCIDENCIA : std::uint8_t { EXACTA = 0, EMPIEZA, CONTIENE, TERMINA };

}  // namespace vel

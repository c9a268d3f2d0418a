#include "tools/utilvel/base/Motor.h"

#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <soci/soci.h>

#include "framework/TDateTime.h"

namespace utilvel {

Enlazado Motor::Enlaza(soci::details::statement_backend& /*sentencia*/, std::size_t /*lugar*/,
                       const vel::TParam& parametro) const {
  const vel::Variant& valor = parametro.Value;
  switch (valor.GetKind()) {
    case vel::Variant::Kind::Integer:
    case vel::Variant::Kind::Int64:
      return static_cast<long long>(valor.AsInt64());
    case vel::Variant::Kind::Boolean:
      return static_cast<long long>(valor.AsBoolean() ? 1 : 0);
    case vel::Variant::Kind::Double:
      return valor.AsDouble();
    case vel::Variant::Kind::Date:
      return vel::UTF8Encode(vel::DateTimeToISO(valor.AsDateTime(), parametro.DataType));
    default:
      return vel::UTF8Encode(valor.AsString());
  }
}

std::vector<ColumnaLeida> Motor::Describe(soci::details::statement_backend& sentencia) const {
  std::vector<ColumnaLeida> columnas;
  const int cuantas = sentencia.prepare_for_describe();
  for (int i = 1; i <= cuantas; ++i) {
    soci::data_type tipo = soci::dt_string;
    ColumnaLeida& columna = columnas.emplace_back();
    sentencia.describe_column(i, tipo, columna.columna.nombre);
    columna.esFecha = tipo == soci::dt_date;
    if (tipo == soci::dt_double || tipo == soci::dt_integer || tipo == soci::dt_long_long ||
        tipo == soci::dt_unsigned_long_long) {
      columna.columna.tipo = TipoColumna::Monto;
    }
  }
  return columnas;
}

Celda Motor::LeeCelda(soci::details::statement_backend& /*sentencia*/, std::size_t /*columna*/) const {
  return std::nullopt;
}

std::string TextoFlotante(double valor) {
  // Plain digits as far as amounts go.
  const double tamano = std::abs(valor);
  const bool llano = tamano == 0 || (tamano >= 1e-5 && tamano < 1e15);
  std::array<char, 64> texto{};
  const auto fin = std::to_chars(texto.data(), texto.data() + texto.size(), valor,
                                 llano ? std::chars_format::fixed : std::chars_format::scientific);
  return {texto.data(), fin.ptr};
}

std::string TextoDeBytes(std::string_view bytes) {
  constexpr std::string_view kCifras = "0123456789abcdef";
  std::string texto = "\\x";
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    texto += kCifras[byte >> 4U];
    texto += kCifras[byte & 15U];
  }
  return texto;
}

}  // namespace utilvel

// PostgreSQL and MariaDB: SOCI's own reading serves them; they differ in how a session begins.

#include <string>
#include <string_view>

#include "framework/Variant.h"
#include "tools/utilvel/base/Motores.h"

namespace utilvel {
namespace {

// For libpq's addresses: all but letters and digits as "%40". So no blank and no quote of them is left for
// SOCI, which takes the text apart first.
std::string ConPorcentajes(std::string_view texto) {
  constexpr std::string_view kCifras = "0123456789ABCDEF";
  std::string salida;
  for (const char c : texto) {
    const auto byte = static_cast<unsigned char>(c);
    if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')) {
      salida += c;
    } else {
      salida += '%';
      salida += kCifras[byte >> 4U];
      salida += kCifras[byte & 15U];
    }
  }
  return salida;
}

// For SOCI's text of MariaDB: in single quotes, where "\" takes the next character as it is.
std::string EntreApostrofos(std::string_view texto) {
  std::string salida = "'";
  for (const char c : texto) {
    if (c == '\'' || c == '\\') salida += '\\';
    salida += c;
  }
  return salida + "'";
}

}  // namespace

std::string MotorPostgresql::Conexion(const DireccionBase& direccion, const std::string& clave) const {
  std::string texto =
      "postgresql:///?client_encoding=UTF8&application_name=utilvel&connect_timeout=10&options=" +
      ConPorcentajes("-c default_transaction_read_only=on -c datestyle=ISO -c cursor_tuple_fraction=1") +
      "&dbname=" + ConPorcentajes(direccion.base);
  if (!direccion.servidor.empty()) texto += "&host=" + ConPorcentajes(direccion.servidor);
  if (direccion.puerto != 0) texto += "&port=" + std::to_string(direccion.puerto);
  if (!direccion.usuario.empty()) texto += "&user=" + ConPorcentajes(direccion.usuario);
  if (!clave.empty()) texto += "&password=" + ConPorcentajes(clave);
  return texto;
}

std::vector<std::string> MotorPostgresql::Inicio() const {
  // A server that knows how (14 and later) leaves the query of a program that ended.
  return {
      "SELECT set_config(name, '1000', false) FROM pg_settings WHERE name = "
      "'client_connection_check_interval'"};
}

Enlazado MotorPostgresql::Enlaza(soci::details::statement_backend& sentencia, std::size_t lugar,
                                 const vel::TParam& parametro) const {
  // Its truth values are no numbers.
  if (parametro.Value.GetKind() == vel::Variant::Kind::Boolean) {
    return std::string(parametro.Value.AsBoolean() ? "true" : "false");
  }
  return Motor::Enlaza(sentencia, lugar, parametro);
}

std::string MotorMysql::Conexion(const DireccionBase& direccion, const std::string& clave) const {
  std::string texto = "charset=utf8mb4 connect_timeout=10 db=" + EntreApostrofos(direccion.base);
  if (!direccion.servidor.empty()) texto += " host=" + EntreApostrofos(direccion.servidor);
  if (direccion.puerto != 0) texto += " port=" + std::to_string(direccion.puerto);
  if (!direccion.usuario.empty()) texto += " user=" + EntreApostrofos(direccion.usuario);
  if (!clave.empty()) texto += " password=" + EntreApostrofos(clave);
  return texto;
}

std::vector<std::string> MotorMysql::Inicio() const {
  // The statement's texts mean what they mean elsewhere: "x" is a name, || joins, "\" is a character.
  return {
      "SET SESSION sql_mode = CONCAT_WS(',', NULLIF(@@sql_mode, ''), 'ANSI_QUOTES', 'PIPES_AS_CONCAT', "
      "'NO_BACKSLASH_ESCAPES')",
      "SET SESSION TRANSACTION READ ONLY"};
}

}  // namespace utilvel

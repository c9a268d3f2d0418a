// Firebird. SOCI hands over only values of the very kind that the engine described, and dates without
// fractions. The engine itself converts texts exactly, both ways, when the description is changed to a text
// before SOCI makes its buffers; so everything but floating point travels as a text.

#include <array>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <ibase.h>
#include <soci/firebird/soci-firebird.h>
#include <soci/soci.h>
#include <system_error>
#include <vector>

#include "framework/Numeros.h"
#include "framework/TDateTime.h"
#include "tools/utilvel/Errores.h"
#include "tools/utilvel/base/Motores.h"

namespace utilvel {
namespace {

// Longest text of a date or a truth value that the engine writes.
constexpr ISC_SHORT kLargoDeFecha = 32;
// Longest text that travels in a row.
constexpr std::size_t kLargoMaximo = 32765;

// Without the bit that says whether there may be nulls.
int Tipo(const XSQLVAR& v) { return v.sqltype & ~1; }

void HazTexto(XSQLVAR& v, std::size_t largo) {
  v.sqltype = static_cast<ISC_SHORT>(SQL_VARYING | 1);
  v.sqllen = static_cast<ISC_SHORT>(largo);
  v.sqlscale = 0;
}

bool EsTexto(int tipo) { return tipo == SQL_TEXT || tipo == SQL_VARYING; }
bool EsFlotante(int tipo) { return tipo == SQL_FLOAT || tipo == SQL_DOUBLE || tipo == SQL_D_FLOAT; }
bool EsEntero(int tipo) { return tipo == SQL_SHORT || tipo == SQL_LONG || tipo == SQL_INT64; }

std::size_t Decimales(const std::string& numero) {
  const std::size_t punto = numero.find('.');
  return punto == std::string::npos ? 0 : numero.size() - punto - 1;
}

std::string SinComillas(const std::string& texto, const char* que) {
  if (texto.find('"') != std::string::npos) {
    throw Falla(Codigo::Uso, std::string("Con Firebird no puede tener comillas ") + que);
  }
  return '"' + texto + '"';
}

std::string Servicio(const DireccionBase& direccion) {
  if (direccion.servidor.empty()) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(direccion.base, error)) {
      throw Falla(Codigo::Archivo, "No existe el archivo de la base: " + direccion.base);
    }
    return std::filesystem::absolute(direccion.base).lexically_normal().string();
  }
  const std::string puerto = direccion.puerto == 0 ? "" : ":" + std::to_string(direccion.puerto);
  return "inet://" + direccion.servidor + puerto + "/" + direccion.base;
}

}  // namespace

std::string MotorFirebird::Conexion(const DireccionBase& direccion, const std::string& clave) const {
  // A file of this machine needs a name and believes it.
  const std::string usuario = direccion.servidor.empty() ? "SYSDBA" : direccion.usuario;
  std::string texto = "charset=UTF8 service=" + SinComillas(Servicio(direccion), "el nombre de la base");
  if (!usuario.empty()) texto += " user=" + SinComillas(usuario, "el usuario");
  if (!clave.empty()) texto += " password=" + SinComillas(clave, "la contraseña");
  return texto;
}

Enlazado MotorFirebird::Enlaza(soci::details::statement_backend& sentencia, std::size_t lugar,
                               const vel::TParam& parametro) const {
  XSQLDA* const descripcion = static_cast<soci::firebird_statement_backend&>(sentencia).sqlda2p_;
  if (lugar >= static_cast<std::size_t>(descripcion->sqld)) {
    throw Falla(Codigo::Base, "La sentencia tiene menos parámetros que valores");
  }
  XSQLVAR& v = descripcion->sqlvar[lugar];
  const vel::Variant& valor = parametro.Value;
  const int tipo = Tipo(v);
  const bool esNumero = valor.GetKind() == vel::Variant::Kind::Integer ||
                        valor.GetKind() == vel::Variant::Kind::Int64 ||
                        valor.GetKind() == vel::Variant::Kind::Double;
  if (EsFlotante(tipo) && esNumero) return valor.AsDouble();
  std::string texto;
  if (valor.GetKind() == vel::Variant::Kind::Date) {
    texto = vel::UTF8Encode(vel::DateTimeToISO(valor.AsDateTime(), parametro.DataType));
  } else if (valor.GetKind() == vel::Variant::Kind::Boolean) {
    texto = tipo == SQL_BOOLEAN ? (valor.AsBoolean() ? "true" : "false") : (valor.AsBoolean() ? "1" : "0");
  } else {
    texto = vel::UTF8Encode(valor.AsString());
  }
  // The engine would round the number to the column's decimals, and compare with another one.
  if (EsEntero(tipo) && esNumero && Decimales(texto) > static_cast<std::size_t>(-v.sqlscale)) {
    throw Falla(Codigo::Base, "Firebird no compara " + texto + " (:" + vel::UTF8Encode(parametro.Name) +
                                  ") con una columna de " + std::to_string(-v.sqlscale) + " decimales");
  }
  if (texto.size() > kLargoMaximo) {
    throw Falla(Codigo::Base, "El valor de :" + vel::UTF8Encode(parametro.Name) + " es demasiado largo");
  }
  if (!EsTexto(tipo)) v.sqlsubtype = 0;
  HazTexto(v, texto.empty() ? 1 : texto.size());
  return texto;
}

std::vector<ColumnaLeida> MotorFirebird::Describe(soci::details::statement_backend& sentencia) const {
  XSQLDA* const descripcion = static_cast<soci::firebird_statement_backend&>(sentencia).sqldap_;
  std::vector<ColumnaLeida> columnas;
  for (ISC_SHORT i = 0; i < descripcion->sqld; ++i) {
    XSQLVAR& v = descripcion->sqlvar[i];
    const int tipo = Tipo(v);
    ColumnaLeida& columna = columnas.emplace_back();
    columna.columna.nombre.assign(v.aliasname, static_cast<std::size_t>(v.aliasname_length));
    if (EsFlotante(tipo)) {
      columna.columna.tipo = TipoColumna::Monto;
      columna.lectura = Lectura::Flotante;
    } else if (EsEntero(tipo)) {
      columna.columna.tipo = TipoColumna::Monto;
    } else if (tipo == SQL_BLOB) {
      columna.lectura = v.sqlsubtype == isc_blob_text ? Lectura::Largo : Lectura::Bytes;
    } else if (tipo == SQL_TEXT) {
      // Read so, a text of fixed length keeps its own length and not that of its buffer.
      HazTexto(v, static_cast<std::size_t>(v.sqllen));
    } else if (tipo == SQL_TIMESTAMP) {
      // As a text the engine would write "13-MAY-2024 14:30".
      columna.lectura = Lectura::Momento;
    } else if (tipo != SQL_VARYING) {
      columna.esFecha = true;
      v.sqlsubtype = 0;
      HazTexto(v, kLargoDeFecha);
    }
  }
  return columnas;
}

Celda MotorFirebird::LeeCelda(soci::details::statement_backend& sentencia, std::size_t columna) const {
  const XSQLVAR& v = static_cast<soci::firebird_statement_backend&>(sentencia).sqldap_->sqlvar[columna];
  ISC_TIMESTAMP momento{};
  std::memcpy(&momento, v.sqldata, sizeof momento);
  // Days since 17 November 1858 and ten-thousandths of a second.
  const vel::CivilDate dia = vel::DecodeDate(vel::TDateTime(momento.timestamp_date - 15018.0));
  const unsigned diezmilesimos = momento.timestamp_time;
  const unsigned segundos = diezmilesimos / 10000;
  std::array<char, 64> texto{};
  const int largo =
      std::snprintf(texto.data(), texto.size(), "%04d-%02d-%02d %02u:%02u:%02u.%04u", dia.anio, dia.mes,
                    dia.dia, segundos / 3600, segundos / 60 % 60, segundos % 60, diezmilesimos % 10000);
  return std::string(texto.data(), static_cast<std::size_t>(largo));
}

}  // namespace utilvel

#pragma once

#include "tools/utilvel/base/Motor.h"

namespace utilvel {

class MotorSqlite : public Motor {
 public:
  const char* Nombre() const noexcept override { return "sqlite3"; }
  std::string Conexion(const DireccionBase& direccion, const std::string& clave) const override;
  std::vector<std::string> Inicio() const override;
  std::vector<ColumnaLeida> Describe(soci::details::statement_backend& sentencia) const override;
  Celda LeeCelda(soci::details::statement_backend& sentencia, std::size_t columna) const override;
};

class MotorFirebird : public Motor {
 public:
  const char* Nombre() const noexcept override { return "firebird"; }
  std::string Conexion(const DireccionBase& direccion, const std::string& clave) const override;
  Enlazado Enlaza(soci::details::statement_backend& sentencia, std::size_t lugar,
                  const vel::TParam& parametro) const override;
  std::vector<ColumnaLeida> Describe(soci::details::statement_backend& sentencia) const override;
  Celda LeeCelda(soci::details::statement_backend& sentencia, std::size_t columna) const override;
};

class MotorPostgresql : public Motor {
 public:
  const char* Nombre() const noexcept override { return "postgresql"; }
  std::string Conexion(const DireccionBase& direccion, const std::string& clave) const override;
  std::vector<std::string> Inicio() const override;
  std::size_t Lote() const noexcept override { return 1000; }
  Enlazado Enlaza(soci::details::statement_backend& sentencia, std::size_t lugar,
                  const vel::TParam& parametro) const override;
};

class MotorMysql : public Motor {
 public:
  const char* Nombre() const noexcept override { return "mysql"; }
  std::string Conexion(const DireccionBase& direccion, const std::string& clave) const override;
  std::vector<std::string> Inicio() const override;
};

}  // namespace utilvel

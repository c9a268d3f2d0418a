#pragma once

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <ibase.h>
#include <ostream>
#include <soci/soci.h>
#include <stdexcept>
#include <string>

#include "tests/CarpetaTemporal.h"
#include "tools/utilvel/base/Direccion.h"
#include "tools/utilvel/base/Motor.h"

namespace pruebas {

/// An engine, as tests write its tables.
struct Motor {
  const char* nombre;
  /// How it spells the types of date and time.
  const char* momento;
  const char* hora;
  /// How many styles of placeholders it reads, from the first.
  std::size_t estilos;
  /// Variable with the address of its server; null for a file.
  const char* servidor = nullptr;
  friend std::ostream& operator<<(std::ostream& salida, const Motor& m) { return salida << m.nombre; }
};

/// The password of the servers' user.
inline std::string Clave() {
  const char* const clave = std::getenv("UTILVEL_CLAVE");
  return clave == nullptr ? "" : clave;
}

/// Tests on each engine, whose database holds table T of base.sql.
class EnBases : public testing::TestWithParam<Motor> {
 protected:
  EnBases() {
    const Motor& motor = GetParam();
    carpeta_.Pon("FIREBIRD_LOCK", carpeta_.Ruta().string());
    const std::string archivo = (carpeta_.Ruta() / "base").string();
    direccion_ = std::string(motor.nombre) + "://" + archivo;
    if (motor.servidor != nullptr) {
      if (std::getenv(motor.servidor) == nullptr) throw std::runtime_error("no server: run servidores.sh");
      direccion_ = std::getenv(motor.servidor);
      const utilvel::DireccionBase d = utilvel::LeeDireccion(direccion_);
      conexion_ = utilvel::DameMotor(d.clase).Conexion(d, Clave());
    } else if (std::string(motor.nombre) == "firebird") {
      CreaFirebird(archivo);
      conexion_ = "service=" + archivo + " user=SYSDBA charset=UTF8";
    } else {
      conexion_ = archivo;
    }
    Llena();
  }

  /// Runs statements, which the program itself would refuse: each of them writes.
  void Escribe(const std::vector<std::string>& sentencias) const {
    soci::session sesion(GetParam().nombre, conexion_);
    if (direccion_.starts_with("postgresql")) sesion << "SET default_transaction_read_only = off";
    for (const std::string& sql : sentencias) {
      soci::transaction transaccion(sesion);
      sesion << sql;
      transaccion.commit();
    }
  }

  CarpetaTemporal carpeta_;
  std::string direccion_;
  /// For SOCI, to write.
  std::string conexion_;

 private:
  // The library of Firebird makes its databases; no server runs.
  static void CreaFirebird(const std::string& archivo) {
    const std::string sql = "CREATE DATABASE '" + archivo + "' USER 'SYSDBA' DEFAULT CHARACTER SET UTF8";
    ISC_STATUS_ARRAY estado{};
    isc_db_handle base = 0;
    isc_tr_handle transaccion = 0;
    isc_dsql_execute_immediate(estado, &base, &transaccion, 0, sql.c_str(), SQL_DIALECT_V6, nullptr);
    isc_detach_database(estado, &base);
  }

  void Llena() const {
    std::vector<std::string> sentencias;
    if (GetParam().servidor != nullptr) sentencias.emplace_back("DROP TABLE IF EXISTS T");
    std::ifstream script(DATOS_PRUEBA "/sentencias/base.sql");
    for (std::string linea; std::getline(script, linea);) {
      if (linea.starts_with("CREATE")) {
        linea.replace(linea.find("TIMESTAMP"), 9, GetParam().momento);
        linea.replace(linea.rfind("TIME)"), 4, GetParam().hora);
      }
      sentencias.push_back(linea);
    }
    Escribe(sentencias);
  }
};

}  // namespace pruebas

#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <unistd.h>

#include "framework/Texto.h"

namespace pruebas {

/// A folder of the test's own that ends with it, and the environment that leads the library there: no test
/// touches the real home, registry or common folder.
class CarpetaTemporal {
 public:
  CarpetaTemporal() {
    // A new name: a test that was killed may have left a folder of this process's number.
    std::string plantilla = (std::filesystem::temp_directory_path() / "utilvel90_XXXXXX").string();
    if (mkdtemp(plantilla.data()) == nullptr) throw std::runtime_error("no folder: " + plantilla);
    std::filesystem::permissions(plantilla, std::filesystem::perms(0755));
    ruta_ = plantilla;
    Pon("HOME", (ruta_ / "casa").string());
    Pon("XDG_DATA_HOME", std::nullopt);
    Pon("UTILVEL_REGISTRO", (ruta_ / "registro.reg").string());
    Pon("UTILVEL_DATOS_COMUNES", (ruta_ / "comunes").string());
    Pon("UTILVEL_UNIDADES", (ruta_ / "unidades").string());
  }
  CarpetaTemporal(const CarpetaTemporal&) = delete;
  CarpetaTemporal& operator=(const CarpetaTemporal&) = delete;
  ~CarpetaTemporal() {
    for (const auto& [nombre, valor] : previas_) {
      if (valor.has_value()) {
        setenv(nombre.c_str(), valor->c_str(), 1);
      } else {
        unsetenv(nombre.c_str());
      }
    }
    std::error_code error;
    std::filesystem::remove_all(ruta_, error);
  }

  const std::filesystem::path& Ruta() const noexcept { return ruta_; }
  vel::UnicodeString Archivo(const std::string& nombre) const {
    return vel::UTF8ToString((ruta_ / nombre).string());
  }

  /// Sets a variable, or takes it away, until the folder ends.
  void Pon(const std::string& nombre, const std::optional<std::string>& valor) {
    const char* const previo = std::getenv(nombre.c_str());
    previas_.emplace(nombre, previo == nullptr ? std::nullopt : std::optional<std::string>(previo));
    if (valor.has_value()) {
      setenv(nombre.c_str(), valor->c_str(), 1);
    } else {
      unsetenv(nombre.c_str());
    }
  }

  void Escribe(const std::string& nombre, const std::string& bytes) const {
    std::filesystem::create_directories((ruta_ / nombre).parent_path());
    std::ofstream(ruta_ / nombre, std::ios::binary) << bytes;
  }
  std::string Lee(const std::string& nombre) const {
    std::ifstream entrada(ruta_ / nombre, std::ios::binary);
    return {std::istreambuf_iterator<char>(entrada), {}};
  }
  bool Existe(const std::string& nombre) const { return std::filesystem::exists(ruta_ / nombre); }

  /// Makes the folder "C" the common files folder of the installation.
  void Instala() const {
    Escribe("registro.reg",
            "Windows Registry Editor Version 5.00\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavex]\r\n"
            "\"TAVEXComunDir\"=\"" +
                (ruta_ / "C").string() + "\"\r\n");
    std::filesystem::create_directories(Motor());
  }
  /// The engine folder of that installation.
  std::filesystem::path Motor() const { return ruta_ / "C" / "Sistemas Tavex" / "VEL9.00"; }

 private:
  std::filesystem::path ruta_;
  std::map<std::string, std::optional<std::string>> previas_;
};

}  // namespace pruebas

#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>

#include "framework/Texto.h"
#include "platform/Registro.h"
#include "tests/apoyo/Sistema.h"

namespace pruebas {

/// A folder of the test's own that ends with it, and to which the library is led: no test touches the real
/// home, registry or common folder. Names within it are UTF-8, their folders parted by "/".
class CarpetaTemporal {
 public:
  CarpetaTemporal() = default;
  CarpetaTemporal(const CarpetaTemporal&) = delete;
  CarpetaTemporal& operator=(const CarpetaTemporal&) = delete;
  ~CarpetaTemporal() {
    for (const auto& [nombre, valor] : previas_) CambiaVariable(nombre, valor);
    std::error_code error;
    std::filesystem::remove_all(ruta_, error);
  }

  const std::filesystem::path& Ruta() const noexcept { return ruta_; }
  /// The path of what stands in it, as the system writes paths.
  std::filesystem::path Ruta(const std::string& nombre) const {
    return (ruta_ / vel::UTF8ToString(nombre)).make_preferred();
  }
  vel::UnicodeString Archivo(const std::string& nombre) const { return Ruta(nombre).u16string(); }
  std::string Utf8(const std::string& nombre) const { return vel::UTF8Encode(Archivo(nombre)); }

  /// Sets a variable, or takes it away, until the folder ends.
  void Pon(const std::string& nombre, const std::optional<std::string>& valor) {
    previas_.emplace(nombre, CambiaVariable(nombre, valor));
  }

  void Escribe(const std::string& nombre, const std::string& bytes) const {
    std::filesystem::create_directories(Ruta(nombre).parent_path());
    std::ofstream(Ruta(nombre), std::ios::binary) << bytes;
  }
  std::string Lee(const std::string& nombre) const {
    std::ifstream entrada(Ruta(nombre), std::ios::binary);
    return {std::istreambuf_iterator<char>(entrada), {}};
  }
  bool Existe(const std::string& nombre) const { return std::filesystem::exists(Ruta(nombre)); }
  /// How many files and folders stand in it directly.
  auto Cuenta() const { return std::distance(std::filesystem::directory_iterator(ruta_), {}); }

  /// Makes the folder "C" the common files folder of the installation.
  void Instala() const {
    if (vel::EscribeRegistro(u"SOFTWARE\\Tavex", u"TAVEXComunDir", Archivo("C")).Hubo())
      throw std::runtime_error("no registry");
    std::filesystem::create_directories(Motor());
  }
  /// The engine folder of that installation.
  std::filesystem::path Motor() const { return Ruta("C/Sistemas Tavex/VEL9.00"); }
  void VaciaRegistro() const { desvio_.VaciaRegistro(); }

 private:
  std::filesystem::path ruta_ = CreaCarpetaPropia();
  Desvio desvio_{ruta_};
  std::map<std::string, std::optional<std::string>> previas_;
};

}  // namespace pruebas

#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "fuzz/Exige.h"

namespace fuzz {

/// A file of the process's own in the memory file system, for what can only be reached through a file.
/// Nothing is ever flushed to a disk there, so that a program gets thousands of inputs a second.
class ArchivoEnMemoria {
 public:
  explicit ArchivoEnMemoria(const std::string& nombre) {
    const char* const base = std::getenv("TMPDIR");
    std::string plantilla = std::string(base != nullptr ? base : "/dev/shm") + "/utilvel90_fuzz_XXXXXX";
    Exige(mkdtemp(plantilla.data()) != nullptr, "no folder in the memory file system");
    carpeta_ = plantilla;
    ruta_ = carpeta_ + "/" + nombre;
  }
  ArchivoEnMemoria(const ArchivoEnMemoria&) = delete;
  ArchivoEnMemoria& operator=(const ArchivoEnMemoria&) = delete;
  ~ArchivoEnMemoria() {
    std::error_code error;
    std::filesystem::remove_all(carpeta_, error);
  }

  const std::string& Ruta() const noexcept { return ruta_; }
  vel::UnicodeString RutaU16() const { return vel::UTF8ToString(ruta_); }
  void Escribe(const std::string& bytes) const { std::ofstream(ruta_, std::ios::binary) << bytes; }
  std::string Lee() const {
    std::ifstream entrada(ruta_, std::ios::binary);
    return {std::istreambuf_iterator<char>(entrada), {}};
  }

 private:
  std::string carpeta_, ruta_;
};

}  // namespace fuzz

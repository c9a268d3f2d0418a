#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// What tests ask of the system beyond the standard library; posix/ and windows/ implement it. Texts are
// UTF-8. It knows nothing of the library under test.

namespace pruebas {

using Argumentos = std::vector<std::u16string>;

/// Of a count for processes that work side by side, what this system gets done in a time that people wait.
int Veces(int enPosix, int enWindows) noexcept;

/// A new folder of its own, for the caller to delete.
std::filesystem::path CreaCarpetaPropia();

/// Sets a variable for this process and those that it starts, or takes it away; gives what it was.
std::optional<std::string> CambiaVariable(const std::string& nombre, const std::optional<std::string>& valor);

/// Leads the library to a registry of the test's own and to known folders within `carpeta`, as long as it
/// lives, in this process and those that it starts: the user's data are in "casa/.local/share", those of all
/// users in "comunes".
class Desvio {
 public:
  explicit Desvio(const std::filesystem::path& carpeta);
  Desvio(const Desvio&) = delete;
  Desvio& operator=(const Desvio&) = delete;
  ~Desvio();
  /// The local machine has no keys again.
  void VaciaRegistro() const;

 private:
  std::filesystem::path carpeta_;
  std::vector<std::pair<std::string, std::optional<std::string>>> previas_;
};

/// The folder that is drive C for the library of a test whose folder is `carpeta`; nothing when the machine's
/// own would be touched.
std::optional<std::filesystem::path> UnidadC(const std::filesystem::path& carpeta);

/// A shared library, loaded as long as this lives.
class Modulo {
 public:
  explicit Modulo(const std::filesystem::path& archivo);
  Modulo(const Modulo&) = delete;
  Modulo& operator=(const Modulo&) = delete;
  ~Modulo();

 private:
  void* modulo_;
};

/// This program, started once more. One that is not waited for is killed.
class Proceso {
 public:
  explicit Proceso(const Argumentos& argumentos);
  Proceso(const Proceso&) = delete;
  Proceso& operator=(const Proceso&) = delete;
  Proceso(Proceso&& otro) noexcept;
  Proceso& operator=(Proceso&&) = delete;
  ~Proceso();
  /// Waits for its end and gives its exit code; less than 0 when it was killed or broke down.
  int Espera();
  /// Ends it wherever it is; it gets to do nothing more.
  void Mata();
  bool Vive() const;

 private:
  std::intptr_t id_;
};

/// What this process was started with.
Argumentos ArgumentosPropios(int argc, char** argv);

/// Takes over the Desvio of the process that started this one.
void HeredaDesvio();

}  // namespace pruebas

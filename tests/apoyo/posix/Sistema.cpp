#include "tests/apoyo/Sistema.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <dlfcn.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

extern char** environ;

namespace pruebas {

int Veces(int enPosix, int) noexcept { return enPosix; }

std::filesystem::path CreaCarpetaPropia() {
  std::string plantilla = (std::filesystem::temp_directory_path() / "utilvel90_XXXXXX").string();
  if (mkdtemp(plantilla.data()) == nullptr) throw std::runtime_error("no folder: " + plantilla);
  // Other users have to get in.
  std::filesystem::permissions(plantilla, std::filesystem::perms(0755));
  return plantilla;
}

std::optional<std::string> CambiaVariable(const std::string& nombre,
                                          const std::optional<std::string>& valor) {
  const char* const texto = std::getenv(nombre.c_str());
  std::optional<std::string> previo;
  if (texto != nullptr) previo = texto;
  if (valor.has_value()) {
    setenv(nombre.c_str(), valor->c_str(), 1);
  } else {
    unsetenv(nombre.c_str());
  }
  return previo;
}

Desvio::Desvio(const std::filesystem::path& carpeta) : carpeta_(carpeta) {
  for (const auto& [nombre, dentro] : {std::pair("HOME", "casa"),
                                       {"XDG_DATA_HOME", ""},
                                       {"UTILVEL_REGISTRO", "registro.reg"},
                                       {"UTILVEL_DATOS_COMUNES", "comunes"},
                                       {"UTILVEL_UNIDADES", "unidades"}}) {
    std::optional<std::string> valor;
    if (*dentro != '\0') valor = (carpeta / dentro).string();
    previas_.emplace_back(nombre, CambiaVariable(nombre, valor));
  }
}

Desvio::~Desvio() {
  for (const auto& [nombre, valor] : previas_) CambiaVariable(nombre, valor);
}

void Desvio::VaciaRegistro() const { std::filesystem::remove(carpeta_ / "registro.reg"); }

std::optional<std::filesystem::path> UnidadC(const std::filesystem::path& carpeta) {
  return carpeta / "unidades/drive_c";
}

// The environment has told it.
void HeredaDesvio() {}

Modulo::Modulo(const std::filesystem::path& archivo) : modulo_(dlopen(archivo.c_str(), RTLD_NOW)) {
  if (modulo_ == nullptr) throw std::runtime_error(dlerror());
}

Modulo::~Modulo() { dlclose(modulo_); }

Proceso::Proceso(const Argumentos& argumentos) : id_(-1) {
  const std::string programa = std::filesystem::read_symlink("/proc/self/exe").string();
  std::vector<std::string> textos{programa};
  for (const std::u16string& a : argumentos) textos.push_back(std::filesystem::path(a).string());
  std::vector<char*> punteros;
  for (std::string& texto : textos) punteros.push_back(texto.data());
  punteros.push_back(nullptr);
  pid_t hijo = -1;
  const int error = posix_spawn(&hijo, programa.c_str(), nullptr, nullptr, punteros.data(), environ);
  if (error != 0) throw std::system_error(error, std::generic_category(), programa);
  id_ = hijo;
}

Proceso::Proceso(Proceso&& otro) noexcept : id_(std::exchange(otro.id_, -1)) {}

Proceso::~Proceso() {
  if (id_ < 0) return;
  Mata();
  Espera();
}

int Proceso::Espera() {
  int estado = 0;
  const auto hijo = static_cast<pid_t>(std::exchange(id_, -1));
  while (waitpid(hijo, &estado, 0) < 0)
    if (errno != EINTR) return -1;
  return WIFEXITED(estado) ? WEXITSTATUS(estado) : -1;
}

void Proceso::Mata() { kill(static_cast<pid_t>(id_), SIGKILL); }

bool Proceso::Vive() const {
  // It stays to be waited for.
  siginfo_t fin{};
  return waitid(P_PID, static_cast<id_t>(id_), &fin, WEXITED | WNOHANG | WNOWAIT) == 0 && fin.si_pid == 0;
}

Argumentos ArgumentosPropios(int argc, char** argv) {
  Argumentos propios;
  for (int i = 1; i < argc; ++i) propios.push_back(std::filesystem::path(argv[i]).u16string());
  return propios;
}

}  // namespace pruebas

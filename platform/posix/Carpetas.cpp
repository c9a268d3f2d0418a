#include "platform/Carpetas.h"

#include <array>
#include <cstdlib>
#include <pwd.h>
#include <string>
#include <unistd.h>

namespace vel {
namespace {

std::string Variable(const char* nombre) {
  const char* const valor = std::getenv(nombre);
  return valor == nullptr ? std::string() : std::string(valor);
}

std::string CarpetaPersonal() {
  std::string carpeta = Variable("HOME");
  if (!carpeta.empty()) return carpeta;
  passwd datos{};
  passwd* encontrado = nullptr;
  std::array<char, 4096> buf;
  if (getpwuid_r(getuid(), &datos, buf.data(), buf.size(), &encontrado) != 0 || encontrado == nullptr)
    return {};
  return encontrado->pw_dir;
}

std::string SinDiagonalFinal(std::string carpeta) {
  while (carpeta.size() > 1 && carpeta.back() == '/') carpeta.pop_back();
  return carpeta;
}

}  // namespace

CarpetasConocidas DameCarpetasConocidas() {
  std::string usuario = Variable("XDG_DATA_HOME");
  if (usuario.empty() || usuario.front() != '/') {
    usuario = CarpetaPersonal();
    if (!usuario.empty()) usuario = SinDiagonalFinal(usuario) + "/.local/share";
  }
  std::string comunes = Variable("UTILVEL_DATOS_COMUNES");
  if (comunes.empty()) comunes = "/var/lib";
  return {UTF8ToString(SinDiagonalFinal(usuario)), UTF8ToString(SinDiagonalFinal(comunes))};
}

}  // namespace vel

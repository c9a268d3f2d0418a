// What the system tells of files, with its own faults made to order.
#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <locale.h>
#include <memory>
#include <sys/syscall.h>
#include <type_traits>
#include <unistd.h>

#include "Uutilext/diagnostics/Errores.h"
#include "tests/CarpetaTemporal.h"
#include "tests/Mensaje.h"
#include "tests/posix/OtroUsuario.h"

// The library opens files by this function in the place of the C library's.
static int fallaAlAbrir = 0;
extern "C" [[gnu::visibility("default")]] int open(const char* ruta, int banderas, ...) {
  va_list modo;
  va_start(modo, banderas);
  errno = fallaAlAbrir;
  const long r = errno != 0 ? -1 : syscall(SYS_openat, AT_FDCWD, ruta, banderas, va_arg(modo, int));
  va_end(modo);
  return static_cast<int>(r);
}

namespace vel {
namespace {

using pruebas::MensajeDe;

TEST(IntentarAbrirArchivo, NamesTheSystemsFaults) {
  const pruebas::CarpetaTemporal c;
  const auto mensaje = [&c](const std::string& nombre) {
    return MensajeDe([&] { IntentarAbrirArchivo(c.Archivo(nombre), 0, false, false); });
  };
  c.Escribe("cerrado.txt", "x");
  std::filesystem::permissions(c.Ruta("cerrado.txt"), std::filesystem::perms::none);
  EXPECT_TRUE(pruebas::ComoUsuario([&] {
    return mensaje("cerrado.txt") == "Acceso denegado al archivo cerrado.txt\nVerifique los permisos";
  }));
  c.Escribe("a.txt", "x");
  const std::unique_ptr<std::remove_pointer_t<locale_t>, decltype(&freelocale)> idioma(
      newlocale(LC_CTYPE_MASK | LC_MESSAGES_MASK, "", nullptr), &freelocale);
  const std::pair<int, const char*> fallas[] = {
      {EMFILE, "El sistema no pudo abrir el archivo a.txt\nDemasiados archivos abiertos"},
      {ENOMEM, "No hay suficiente memoria para abrir el archivo a.txt\nDemasiados archivos abiertos"},
      {EIO, strerror_l(EIO, idioma.get())}};
  for (const auto& [falla, texto] : fallas) {
    fallaAlAbrir = falla;
    EXPECT_EQ(mensaje("a.txt"), texto);
    fallaAlAbrir = 0;
  }
  const int manejador = IntentarAbrirArchivo(c.Archivo("a.txt"), 0x12, true, false);
  EXPECT_EQ(mensaje("a.txt"), "El archivo \"" + c.Utf8("a.txt") + "\" está en uso por otro programa");
  EXPECT_EQ(write(manejador, "y", 1), 1) << "a descriptor of the system";
  CierraArchivo(manejador);
  EXPECT_EQ(c.Lee("a.txt"), "y");
}

}  // namespace
}  // namespace vel

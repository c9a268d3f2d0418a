// What the system tells of files, with its own faults made to order.
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <locale.h>
#include <memory>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <type_traits>
#include <unistd.h>

#include "Uutilext/config/Rutas.h"
#include "Uutilext/diagnostics/Bitacora.h"
#include "Uutilext/diagnostics/Errores.h"
#include "platform/Archivos.h"
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

std::string Bitacora() { return LeeArchivo(DameRutaDll() + u"0010552.log").value_or("missing"); }

TEST(Bitacora, EndsALineThatAFullDiskCuts) {
  signal(SIGXFSZ, SIG_IGN);
  rlimit limite{};
  getrlimit(RLIMIT_FSIZE, &limite);
  constexpr rlim_t kLinea = 29;
  // What another test left behind.
  Deletelog();
  for (const rlim_t cabe : {1U, 2U, 30U}) {
    logInterAux("a");
    const rlimit corto{kLinea + cabe, limite.rlim_max};
    setrlimit(RLIMIT_FSIZE, &corto);
    const std::string mensaje = MensajeDe([] { logInterAux("cortado"); });
    setrlimit(RLIMIT_FSIZE, &limite);
    EXPECT_TRUE(mensaje.ends_with("0010552.log\": no queda espacio en el disco")) << mensaje;
    logInterAux("b");
    const std::string todo = Bitacora();
    EXPECT_EQ(todo.size(), 2 * kLinea + cabe);
    EXPECT_EQ(todo.substr(kLinea - 6, 6), " - a\r\n");
    const std::string cortada = todo.substr(kLinea, cabe);
    EXPECT_EQ(cortada.substr(cabe > 25 ? 23 : 0), cabe == 1 ? "\n" : cabe == 2 ? "\r\n" : " - co\r\n");
    Deletelog();
  }
}

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

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <locale.h>
#include <sstream>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "Uutilext/config/Configuracion.h"
#include "Uutilext/config/Rutas.h"
#include "Uutilext/diagnostics/Bitacora.h"
#include "Uutilext/diagnostics/Errores.h"
#include "framework/Excepciones.h"
#include "platform/Archivos.h"
#include "platform/Modulos.h"
#include "tests/CarpetaTemporal.h"
#include "tests/Mensaje.h"
#include "tests/OtroUsuario.h"

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

// One test for all of the log: its file stands beside the library and is one for all programs.
TEST(Bitacora, KeepsEveryLineOfEveryProgramWhole) {
  Deletelog();
  Deletelog();
  EXPECT_EQ(Bitacora(), "missing");
  logInterAux("a\xF1o\r\ndos l\xEDneas");
  std::string forma = Bitacora();
  std::replace_if(
      forma.begin(), forma.end(), [](char c) { return c >= '0' && c <= '9'; }, '9');
  EXPECT_EQ(forma, "99/99/9999 99:99:99 999 - a\xF1o\r\ndos l\xEDneas\r\n");
  Deletelog();
  logInterAux(std::string(1 << 20, 'M'));
  EXPECT_EQ(Bitacora().substr(26), std::string(1 << 20, 'M') + "\r\n");
  Deletelog();
  constexpr int kProcesos = 8;
  constexpr int kLineas = 20'000;
  for (int p = 0; p < kProcesos; ++p) {
    if (fork() != 0) continue;
    for (int i = 0; i < kLineas; ++i)
      logInterAux("<" + std::to_string(p * kLineas + i) + ">" +
                  std::string(static_cast<std::size_t>(i % 200), '.'));
    _exit(0);
  }
  for (int p = 0; p < kProcesos; ++p) wait(nullptr);
  std::istringstream lineas(Bitacora());
  std::vector<bool> vistas(kProcesos * kLineas);
  int enteras = 0;
  for (std::string linea; std::getline(lineas, linea);) {
    int numero = -1;
    char cierre = 0;
    ASSERT_EQ(std::sscanf(linea.c_str() + 26, "<%d%c", &numero, &cierre), 2) << linea;
    ASSERT_EQ(linea.substr(linea.find('>') + 1),
              std::string(static_cast<std::size_t>(numero % kLineas % 200), '.') + "\r");
    ASSERT_FALSE(vistas[static_cast<std::size_t>(numero)]);
    vistas[static_cast<std::size_t>(numero)] = true;
    ++enteras;
  }
  EXPECT_EQ(enteras, kProcesos * kLineas);
  Deletelog();
}

TEST(Bitacora, EndsALineThatAFullDiskCuts) {
  signal(SIGXFSZ, SIG_IGN);
  rlimit limite{};
  getrlimit(RLIMIT_FSIZE, &limite);
  constexpr rlim_t kLinea = 29;
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

TEST(LanzaThrow, RaisesAMessageOrACode) {
  const pruebas::CarpetaTemporal c;
  int codigo = 7;
  EXPECT_EQ(MensajeDe([&codigo] { LanzaThrow(u"Falló", codigo); }), "Falló");
  EXPECT_EQ(codigo, -1);
  for (const std::string nombre : {"SrvVEL90", "IServerVEL90", "VELMovil30"}) {
    const UnicodeString modulo = UTF8ToString(nombre) + u".DLL";
    EXPECT_FALSE(ModuloCargado(modulo));
    EXPECT_TRUE(DameArchivoConfig().ends_with(u"casa/.local/share\\Tavex\\VEL9.00\\VELWIN90.INI"));
    void* const cargado = dlopen((MODULOS "/lib" + nombre + ".so").c_str(), RTLD_NOW);
    ASSERT_NE(cargado, nullptr);
    EXPECT_TRUE(ModuloCargado(modulo));
    codigo = 42;
    try {
      LanzaThrow(u"Falló", codigo);
      ADD_FAILURE();
    } catch (int lanzado) {
      EXPECT_EQ(lanzado, 42);
    }
    EXPECT_EQ(codigo, 42);
    EXPECT_EQ(DameArchivoConfig(), DameRutaDll() + u"VELWIN90.INI")
        << "a server's settings stand beside the library";
    dlclose(cargado);
  }
}

TEST(EsErrorSesionCaduca, LooksForTheExactWords) {
  EXPECT_TRUE(esErrorSesionCaduca(u"Error 5: La sesión ha caducado."));
  EXPECT_FALSE(esErrorSesionCaduca(u"la sesión ha caducado"));
  EXPECT_FALSE(esErrorSesionCaduca(u""));
}

TEST(IntentarAbrirArchivo, NamesTheFileAndTheFault) {
  const pruebas::CarpetaTemporal c;
  const auto mensaje = [&c](const std::string& nombre, unsigned modo, bool empresas) {
    return MensajeDe([&] { IntentarAbrirArchivo(c.Archivo(nombre), modo, false, empresas); });
  };
  c.Escribe("a.txt", "x");
  EXPECT_EQ(mensaje("a.txt", 0x40, false), "none");
  EXPECT_EQ(mensaje("falta.txt", 0, false), "No se pudo encontrar el archivo falta.txt");
  EXPECT_EQ(mensaje("falta.txt", 2, true), "No se pudo encontrar el archivo de empresas");
  EXPECT_EQ(mensaje("nada/falta.txt", 0, false), "No se pudo encontrar la ruta del archivo falta.txt");
  EXPECT_EQ(mensaje("a.txt/b", 0, false), "No se pudo encontrar la ruta del archivo b");
  c.Escribe("cerrado.txt", "x");
  std::filesystem::permissions(c.Ruta() / "cerrado.txt", std::filesystem::perms::none);
  EXPECT_TRUE(pruebas::ComoUsuario([&] {
    return mensaje("cerrado.txt", 0, false) ==
           "Acceso denegado al archivo cerrado.txt\nVerifique los permisos";
  }));
  std::filesystem::create_directory(c.Ruta() / "carpeta");
  EXPECT_EQ(mensaje("carpeta", 0, false), "Acceso denegado al archivo carpeta\nVerifique los permisos");
  const std::pair<int, const char*> fallas[] = {
      {EMFILE, "El sistema no pudo abrir el archivo a.txt\nDemasiados archivos abiertos"},
      {ENOMEM, "No hay suficiente memoria para abrir el archivo a.txt\nDemasiados archivos abiertos"},
      {EIO, strerror_l(EIO, newlocale(LC_CTYPE_MASK | LC_MESSAGES_MASK, "", nullptr))}};
  for (const auto& [falla, texto] : fallas) {
    fallaAlAbrir = falla;
    EXPECT_EQ(mensaje("a.txt", 0, false), texto);
    fallaAlAbrir = 0;
  }
  const int manejador = IntentarAbrirArchivo(c.Archivo("a.txt"), 0x12, true, false);
  const std::string enUso =
      "El archivo \"" + (c.Ruta() / "a.txt").string() + "\" está en uso por otro programa";
  for (const unsigned modo : {0x00U, 0x20U, 0x42U, 0x12U}) EXPECT_EQ(mensaje("a.txt", modo, false), enUso);
  EXPECT_EQ(write(manejador, "y", 1), 1);
  CierraArchivo(manejador);
  EXPECT_EQ(mensaje("nuevo.txt", 0xFF00, false), "No se pudo encontrar el archivo nuevo.txt");
  EXPECT_EQ(mensaje("a.txt", 0xFF02, false), "none");
  EXPECT_EQ(c.Lee("a.txt"), "y");
}

}  // namespace
}  // namespace vel

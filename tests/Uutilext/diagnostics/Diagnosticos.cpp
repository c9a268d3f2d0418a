#include <algorithm>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/resource.h>
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
#include "tests/OtroUsuario.h"

namespace vel {
namespace {

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

TEST(LanzaThrow, RaisesAMessageOrACode) {
  const pruebas::CarpetaTemporal c;
  int codigo = 7;
  try {
    LanzaThrow(u"Falló", codigo);
    ADD_FAILURE();
  } catch (const Exception& e) {
    EXPECT_EQ(e.Message(), u"Falló");
    EXPECT_EQ(codigo, -1);
  }
  EXPECT_FALSE(ModuloCargado(u"IServerVEL90.dll"));
  EXPECT_TRUE(DameArchivoConfig().ends_with(u"casa/.local/share\\Tavex\\VEL9.00\\VELWIN90.INI"));
  void* const modulo = dlopen(MODULO_SERVIDOR, RTLD_NOW);
  ASSERT_NE(modulo, nullptr);
  EXPECT_TRUE(ModuloCargado(u"iservervel90.DLL"));
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
  dlclose(modulo);
}

TEST(EsErrorSesionCaduca, LooksForTheExactWords) {
  EXPECT_TRUE(esErrorSesionCaduca(u"Error 5: La sesión ha caducado."));
  EXPECT_FALSE(esErrorSesionCaduca(u"la sesión ha caducado"));
  EXPECT_FALSE(esErrorSesionCaduca(u""));
}

TEST(IntentarAbrirArchivo, NamesTheFileAndTheFault) {
  const pruebas::CarpetaTemporal c;
  const auto mensaje = [&c](const std::string& nombre, unsigned modo, bool empresas) {
    try {
      IntentarAbrirArchivo(c.Archivo(nombre), modo, false, empresas);
      return std::string("abierto");
    } catch (const Exception& e) {
      return UTF8Encode(e.Message());
    }
  };
  c.Escribe("a.txt", "x");
  EXPECT_EQ(mensaje("a.txt", 0x40, false), "abierto");
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
  rlimit limite{};
  getrlimit(RLIMIT_NOFILE, &limite);
  const rlimit ninguno{3, limite.rlim_max};
  setrlimit(RLIMIT_NOFILE, &ninguno);
  const std::string lleno = mensaje("a.txt", 0, false);
  setrlimit(RLIMIT_NOFILE, &limite);
  EXPECT_EQ(lleno, "El sistema no pudo abrir el archivo a.txt\nDemasiados archivos abiertos");
  const int manejador = IntentarAbrirArchivo(c.Archivo("a.txt"), 0x12, true, false);
  const std::string enUso =
      "El archivo \"" + (c.Ruta() / "a.txt").string() + "\" está en uso por otro programa";
  for (const unsigned modo : {0x00U, 0x20U, 0x42U, 0x12U}) EXPECT_EQ(mensaje("a.txt", modo, false), enUso);
  EXPECT_EQ(write(manejador, "y", 1), 1);
  CierraArchivo(manejador);
  EXPECT_EQ(mensaje("nuevo.txt", 0xFF00, false), "No se pudo encontrar el archivo nuevo.txt");
  EXPECT_EQ(mensaje("a.txt", 0xFF02, false), "abierto");
  EXPECT_EQ(c.Lee("a.txt"), "y");
}

}  // namespace
}  // namespace vel

// Settings where permissions, links and limits of POSIX count.
#include "Uutilext/config/Configuracion.h"

#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/Archivos.h"
#include "tests/CarpetaTemporal.h"
#include "tests/Mensaje.h"
#include "tests/posix/OtroUsuario.h"

namespace vel {
namespace {

using pruebas::MensajeDe;

// Without a home variable: the data folder's own, or the home of the system's list of users.
TEST(Configuracion, FindsItsFolderWithoutAHome) {
  pruebas::CarpetaTemporal c;
  c.Pon("HOME", std::nullopt);
  c.Pon("XDG_DATA_HOME", c.Utf8("datos"));
  EXPECT_EQ(DameArchivoConfig(), c.Archivo("datos") + u"\\Tavex\\VEL9.00\\VELWIN90.INI");
  c.Pon("XDG_DATA_HOME", std::nullopt);
  const bool comoNadie =
      geteuid() != 0 || pruebas::ComoUsuario([] {
        return DameArchivoConfig().ends_with(u"/.local/share\\Tavex\\VEL9.00\\VELWIN90.INI");
      });
  EXPECT_TRUE(comoNadie);
}

TEST(Configuracion, ChangesTheFileThatALinkLeadsTo) {
  const pruebas::CarpetaTemporal c;
  c.Escribe("a.ini", "");
  std::filesystem::create_symlink("a.ini", c.Ruta("enlace.ini"));
  EscribeValor(c.Archivo("enlace.ini"), u"S", u"k", u"1");
  EXPECT_EQ(DameValor(c.Archivo("a.ini"), u"S", u"k"), u"1");
}

TEST(Configuracion, LeavesWhatItMayNotWrite) {
  const pruebas::CarpetaTemporal c;
  ASSERT_EQ(mkfifo(c.Ruta("tubo").c_str(), 0666), 0);
  const auto escribe = [](const UnicodeString& archivo) {
    return MensajeDe([&] { EscribeValor(archivo, u"S", u"k", u"2"); }) ==
           "No se puede escribir en el archivo \"" + UTF8Encode(archivo) +
               "\"\nCompruebe que tenga los permisos necesarios.";
  };
  EXPECT_TRUE(escribe(u"/proc/version") && escribe(c.Archivo("tubo")));
  EXPECT_NE(MensajeDe([&] { BorraSeccion(c.Archivo("tubo"), u"a"); }), "none");
  EXPECT_TRUE(ReemplazaArchivo(c.Archivo("tubo"), "x").Hubo()) << "a pipe stays what it is";
  c.Escribe("solo lectura/a.ini", "[S]\nk=1\n");
  std::filesystem::permissions(c.Ruta("solo lectura"), std::filesystem::perms(0777));
  std::filesystem::permissions(c.Ruta("solo lectura/a.ini"), std::filesystem::perms(0444));
  EXPECT_TRUE(
      pruebas::ComoUsuario([&] { return ReemplazaArchivo(c.Archivo("solo lectura/a.ini"), "x").Hubo(); }));
  EXPECT_EQ(c.Lee("solo lectura/a.ini"), "[S]\nk=1\n");
  EXPECT_EQ(c.Cuenta(), 2) << "no temporary file stays";
}

// Of writers that stop as soon as they write.
TEST(Configuracion, RemovesWhatKilledWritersLeftAndNoMore) {
  const pruebas::CarpetaTemporal c;
  pid_t escritores[2];
  for (pid_t& escritor : escritores) {
    escritor = fork();
    if (escritor == 0) {
      signal(SIGXFSZ, [](int) { raise(SIGSTOP); });
      constexpr rlimit kNada{0, 0};
      setrlimit(RLIMIT_FSIZE, &kNada);
      ReemplazaArchivo(c.Archivo("b.ini"), "x");
      _exit(0);
    }
    waitpid(escritor, nullptr, WUNTRACED);
  }
  EscribeValor(c.Archivo("a.ini"), u"S", u"k", u"1");
  EXPECT_EQ(c.Cuenta(), 3) << "living writers keep their own";
  for (const pid_t escritor : escritores) {
    kill(escritor, SIGKILL);
    waitpid(escritor, nullptr, 0);
  }
  EscribeValor(c.Archivo("a.ini"), u"S", u"k", u"2");
  EXPECT_EQ(c.Cuenta(), 1);
}

}  // namespace
}  // namespace vel

// The catalog's owner, group and permissions.
#include "Uutilext/config/Empresas.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Uutilext/config/Etiquetas.h"
#include "tests/Mensaje.h"
#include "tests/Uutilext/config/ConCatalogo.h"
#include "tests/posix/OtroUsuario.h"

namespace vel {
namespace {

using pruebas::MensajeDe;

using pruebas::kCatalogo;
using pruebas::kCopia;
using pruebas::kRespaldo;
using CatalogoPosix = pruebas::ConCatalogo;

TEST_F(CatalogoPosix, IsNoMoreOpenInItsCopies) {
  const auto acceso = [this](const char* archivo) {
    struct stat estado {};
    stat((c_.Ruta(archivo)).c_str(), &estado);
    return std::pair(estado.st_mode & 0777, estado.st_gid);
  };
  const gid_t grupo = geteuid() == 0 ? 1234 : getegid();
  for (const mode_t modo : {0664U, 0600U}) {
    ASSERT_EQ(chown((c_.Ruta(kCatalogo)).c_str(), geteuid(), grupo), 0);
    chmod((c_.Ruta(kCatalogo)).c_str(), modo);
    AgregaEmpresaXML(1, u"r", u"d", u"Uno", u"t", u"v");
    EXPECT_EQ(acceso(kRespaldo), std::pair(modo, grupo));
    std::filesystem::remove(c_.Ruta(kCatalogo));
    EXPECT_EQ(DameNombreEmpresa(3), u"") << "restores it";
    EXPECT_EQ(acceso(kCatalogo), std::pair(modo, grupo));
    EXPECT_EQ(acceso(kCopia), std::pair(modo, grupo));
    // Whoever cannot give the group gives his own no more than all others have.
    if (geteuid() != 0) continue;
    std::filesystem::remove(c_.Ruta(kRespaldo));
    chmod(c_.Motor().c_str(), 0777);
    ASSERT_EQ(chown((c_.Ruta(kCatalogo)).c_str(), pruebas::kNadie, grupo), 0);
    EXPECT_TRUE(pruebas::ComoUsuario([&] {
      AgregaEmpresaXML(2, u"r", u"d", u"Dos", u"t", u"v");
      return acceso(kCatalogo) == std::pair(modo & ~020U, pruebas::kNadie) &&
             acceso(kRespaldo) == acceso(kCatalogo);
    }));
    // Who is in the group keeps it for a file that is another's.
    ASSERT_EQ(chown((c_.Ruta(kCatalogo)).c_str(), 0, pruebas::kNadie), 0);
    chmod((c_.Ruta(kCatalogo)).c_str(), 0664);
    EXPECT_TRUE(pruebas::ComoUsuario([&] {
      AgregaEmpresaXML(5, u"r", u"d", u"Cinco", u"t", u"v");
      return acceso(kCatalogo) == std::pair(0664U, pruebas::kNadie);
    }));
  }
}

// One that may not be reached is not a missing one.
TEST_F(CatalogoPosix, TellsWhatItMayNotReach) {
  std::filesystem::permissions(c_.Motor(), std::filesystem::perms::none);
  EXPECT_TRUE(pruebas::ComoUsuario(
      [&] { return MensajeDe([] { DameCDSEtiqVEL({}, 1); }).ends_with("EtiqVEL.xml\": acceso denegado"); }));
  std::filesystem::permissions(c_.Motor(), std::filesystem::perms(0755));
}

}  // namespace
}  // namespace vel

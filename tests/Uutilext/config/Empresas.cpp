#include "Uutilext/config/Empresas.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Uutilext/config/Etiquetas.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "platform/Archivos.h"
#include "tests/CarpetaTemporal.h"
#include "tests/Mensaje.h"
#include "tests/OtroUsuario.h"

namespace vel {
namespace {

using pruebas::MensajeDe;

constexpr const char* kCatalogo = "C/Sistemas Tavex/VEL9.00/Empresas.xml";
constexpr const char* kRespaldo = "C/Sistemas Tavex/VEL9.00/Empresas.bak";
constexpr const char* kCopia = "C/Sistemas Tavex/VEL9.00/Empresas copia.bak";

class Catalogo : public testing::Test {
 protected:
  void SetUp() override {
    c_.Instala();
    std::filesystem::copy(DATOS_PRUEBA "/catalogo/Empresas.xml", c_.Motor());
  }
  pruebas::CarpetaTemporal c_;
};

TEST_F(Catalogo, AddsRenamesAndAnswers) {
  AgregaEmpresaXML(1, u"C:\\Datos1", u"DEVARTINTERBASE", u"Peña & Ñandú, S.A.", u"", u"9.00");
  AgregaEmpresaXML(12, u"C:\\Datos12", u"PARADOX", u"Doce", u"D:\\Trabajo", u"8.00");
  TStringList lista;
  lista.Add(u"vieja");
  DameEmpresasVEL(lista);
  EXPECT_EQ(lista.Text(), u"1=Peña & Ñandú, S.A.\r\n12=Doce\r\n");
  EXPECT_EQ(DameNombreEmpresa(1), u"Peña & Ñandú, S.A.");
  EXPECT_EQ(DameDriverBaseDatos(12), u"PARADOX");
  EXPECT_EQ(DameAliasBaseDatos(12), u"C:\\Datos12");
  UnicodeString datosBD = u"?";
  EXPECT_EQ(DameRutaTrabajoEmpresa(u"12", datosBD), u"D:\\Trabajo");
  EXPECT_EQ(datosBD, u"");
  EXPECT_EQ(DameRutaTrabajoEmpresa(u" 1 ", datosBD), u"C:\\Datos1")
      << "the data folder when there is no working one";
  EXPECT_EQ(DameRutaTrabajoEmpresa(u"uno", datosBD), u"");
  EXPECT_EQ(DameNombreEmpresa(3), u"");
  const std::string antes = c_.Lee(kCatalogo);
  ActualizaXMLNombreEmpresa(12, u"La Doce");
  EXPECT_EQ(DameNombreEmpresa(12), u"La Doce");
  EXPECT_EQ(c_.Lee(kRespaldo), antes) << "the backup is the catalog as it stood";
  const std::string despues = c_.Lee(kCatalogo);
  EXPECT_THROW(ActualizaXMLNombreEmpresa(3, u"x"), EInvalidOperation);
  EXPECT_EQ(c_.Lee(kCatalogo), despues);
  EXPECT_EQ(c_.Lee(kRespaldo), antes);
}

TEST_F(Catalogo, RestoresAMissingOneFromItsBackup) {
  AgregaEmpresaXML(1, u"r", u"d", u"Uno", u"t", u"v");
  AgregaEmpresaXML(2, u"r", u"d", u"Dos", u"t", u"v");
  std::filesystem::remove(c_.Ruta() / kCatalogo);
  std::unique_ptr<TClientDataSet> empresas;
  AbreArchivoEmpresa(empresas, u"");
  EXPECT_EQ(empresas->RecordCount(), 1U);
  EXPECT_TRUE(c_.Existe(kCatalogo) && c_.Existe(kRespaldo) && c_.Existe(kCopia));
  const std::string otro = "otra carpeta/Empresas.xml";
  c_.Escribe(otro, c_.Lee(kCatalogo));
  AbreArchivoEmpresa(empresas, c_.Archivo(otro));
  EXPECT_EQ(empresas->RecordCount(), 1U);
}

TEST_F(Catalogo, IsNoMoreOpenInItsCopies) {
  const auto acceso = [this](const char* archivo) {
    struct stat estado {};
    stat((c_.Ruta() / archivo).c_str(), &estado);
    return std::pair(estado.st_mode & 0777, estado.st_gid);
  };
  const gid_t grupo = geteuid() == 0 ? 1234 : getegid();
  for (const mode_t modo : {0664U, 0600U}) {
    ASSERT_EQ(chown((c_.Ruta() / kCatalogo).c_str(), geteuid(), grupo), 0);
    chmod((c_.Ruta() / kCatalogo).c_str(), modo);
    AgregaEmpresaXML(1, u"r", u"d", u"Uno", u"t", u"v");
    EXPECT_EQ(acceso(kRespaldo), std::pair(modo, grupo));
    std::filesystem::remove(c_.Ruta() / kCatalogo);
    EXPECT_EQ(DameNombreEmpresa(3), u"") << "restores it";
    EXPECT_EQ(acceso(kCatalogo), std::pair(modo, grupo));
    EXPECT_EQ(acceso(kCopia), std::pair(modo, grupo));
    // Whoever cannot give the group gives his own no more than all others have.
    if (geteuid() != 0) continue;
    std::filesystem::remove(c_.Ruta() / kRespaldo);
    chmod(c_.Motor().c_str(), 0777);
    ASSERT_EQ(chown((c_.Ruta() / kCatalogo).c_str(), pruebas::kNadie, grupo), 0);
    EXPECT_TRUE(pruebas::ComoUsuario([&] {
      AgregaEmpresaXML(2, u"r", u"d", u"Dos", u"t", u"v");
      return acceso(kCatalogo) == std::pair(modo & ~020U, pruebas::kNadie) &&
             acceso(kRespaldo) == acceso(kCatalogo);
    }));
    // Who is in the group keeps it for a file that is another's.
    ASSERT_EQ(chown((c_.Ruta() / kCatalogo).c_str(), 0, pruebas::kNadie), 0);
    chmod((c_.Ruta() / kCatalogo).c_str(), 0664);
    EXPECT_TRUE(pruebas::ComoUsuario([&] {
      AgregaEmpresaXML(5, u"r", u"d", u"Cinco", u"t", u"v");
      return acceso(kCatalogo) == std::pair(0664U, pruebas::kNadie);
    }));
  }
}

TEST_F(Catalogo, GivesABrokenOneASecondChance) {
  AgregaEmpresaXML(1, u"r", u"d", u"Uno", u"t", u"v");
  const std::string bueno = c_.Lee(kCatalogo);
  bool leido = false;
  // A busy machine may run the writer before the first reading or after the second: once is enough.
  for (int i = 0; i < 50 && !leido; ++i) {
    c_.Escribe("nuevo", bueno);
    c_.Escribe(kCatalogo, "<a");
    const pid_t escritor = fork();
    if (escritor == 0) {
      usleep(10'000);
      _exit(std::rename((c_.Ruta() / "nuevo").c_str(), (c_.Ruta() / kCatalogo).c_str()));
    }
    const auto antes = std::chrono::steady_clock::now();
    try {
      leido = DameNombreEmpresa(1) == u"Uno" &&
              std::chrono::steady_clock::now() - antes >= std::chrono::milliseconds(35);
    } catch (const EDatabaseError&) {
      leido = false;
    }
    waitpid(escritor, nullptr, 0);
  }
  EXPECT_TRUE(leido);
}

TEST_F(Catalogo, LosesNoCompanyToAReaderThatRestores) {
  AgregaEmpresaXML(1, u"r", u"d", u"Uno", u"t", u"v");
  AgregaEmpresaXML(2, u"r", u"d", u"Dos", u"t", u"v");
  for (int i = 0; i < 100; ++i) {
    std::filesystem::remove(c_.Ruta() / kCatalogo);
    const pid_t lector = fork();
    if (lector == 0) {
      DameNombreEmpresa(1);
      _exit(0);
    }
    AgregaEmpresaXML(3, u"r", u"d", u"Tres", u"t", u"v");
    int estado = -1;
    waitpid(lector, &estado, 0);
    ASSERT_EQ(estado, 0) << "the reader failed in round " << i;
    ASSERT_EQ(DameNombreEmpresa(3), u"Tres") << "round " << i;
  }
}

TEST_F(Catalogo, LeavesAGoodBackupWhenBroken) {
  AgregaEmpresaXML(1, u"r", u"d", u"Uno", u"t", u"v");
  AgregaEmpresaXML(2, u"r", u"d", u"Dos", u"t", u"v");
  const std::string respaldo = c_.Lee(kRespaldo);
  std::unique_ptr<TClientDataSet> empresas = std::make_unique<TClientDataSet>();
  empresas->LoadFromXML(c_.Lee(kCatalogo), u"x");
  for (const std::string& roto : {std::string(), std::string("<DATAPACKET"), std::string(300'000, '<'),
                                  std::string("\xFF\xFE\x00", 3), c_.Lee(kCatalogo).substr(0, 400)}) {
    c_.Escribe(kCatalogo, roto);
    EXPECT_THROW(AbreArchivoEmpresa(empresas, u""), EDatabaseError);
    EXPECT_EQ(empresas->RecordCount(), 2U) << "the data set given is as it was";
    EXPECT_THROW(AgregaEmpresaXML(3, u"", u"", u"", u"", u""), EDatabaseError);
    EXPECT_EQ(c_.Lee(kCatalogo), roto);
    EXPECT_EQ(c_.Lee(kRespaldo), respaldo);
  }
  std::filesystem::remove_all(c_.Motor());
  EXPECT_TRUE(
      MensajeDe([&] { AbreArchivoEmpresa(empresas, u""); }).ends_with(".xml\": la carpeta no existe"));
}

TEST_F(Catalogo, IsAlwaysWholeForItsReadersAndAfterAKill) {
  AgregaEmpresaXML(1, u"r", u"d", u"Empresa 0", u"t", u"v");
  const pid_t escritor = fork();
  if (escritor == 0) {
    for (int i = 0;; ++i)
      ActualizaXMLNombreEmpresa(
          1, UnicodeString(u"Empresa ") + UnicodeString(static_cast<std::size_t>(i % 2) * 150, u'x'));
  }
  pid_t lectores[3];
  for (pid_t& lector : lectores) {
    lector = fork();
    if (lector != 0) continue;
    int fallas = 0;
    for (int i = 0; i < 1000; ++i) {
      try {
        const UnicodeString nombre = DameNombreEmpresa(1);
        if (nombre.size() != 8 && nombre.size() != 158 && nombre != u"Empresa 0") ++fallas;
      } catch (const Exception&) {
        ++fallas;
      }
    }
    _exit(std::min(fallas, 100));
  }
  for (const pid_t lector : lectores) {
    int estado = 0;
    waitpid(lector, &estado, 0);
    EXPECT_TRUE(WIFEXITED(estado));
    EXPECT_EQ(WEXITSTATUS(estado), 0) << "failed or partial reads";
  }
  int fin = 0;
  EXPECT_EQ(waitpid(escritor, &fin, WNOHANG), 0) << "it wrote until now";
  kill(escritor, SIGKILL);
  waitpid(escritor, nullptr, 0);
  EXPECT_EQ(DameNombreEmpresa(1).substr(0, 8), u"Empresa ");
}

TEST_F(Catalogo, LabelsListTheFieldsOfATable) {
  TStringList lista;
  EXPECT_EQ(DameCDSEtiqVEL(u"", 1), nullptr);
  EXPECT_FALSE(LeeXMLCamposTablasSistema(u"CLIENTES", lista, true));
  std::filesystem::copy(DATOS_PRUEBA "/catalogo/EtiqVEL.xml", c_.Motor());
  EXPECT_TRUE(LeeXMLCamposTablasSistema(u"CLIENTES", lista, false));
  EXPECT_EQ(lista.Text(), u"RFC=R.F.C.\r\nNOMBRE=Nombre\r\n");
  lista.Clear();
  EXPECT_TRUE(LeeXMLCamposTablasSistema(u"CLIENTES", lista, true));
  EXPECT_EQ(lista.Text(), u"RFC=R.F.C.\r\nNOTA=Nota\r\nNOMBRE=Nombre\r\n");
  EXPECT_FALSE(LeeXMLCamposTablasSistema(u"PRODUCTOS", lista, true));
  EXPECT_TRUE(DameRutaEtiqVEL(7).ends_with(u"C\\Sistemas Tavex\\VEL9.00\\EtiqVEL.xml"));
  std::filesystem::permissions(c_.Motor(), std::filesystem::perms::none);
  EXPECT_TRUE(pruebas::ComoUsuario([&] {
    return MensajeDe([] { DameCDSEtiqVEL({}, 1); }).ends_with("EtiqVEL.xml\": acceso denegado");
  })) << "a catalog that may not be reached is not a missing one";
  std::filesystem::permissions(c_.Motor(), std::filesystem::perms(0755));
}

}  // namespace
}  // namespace vel

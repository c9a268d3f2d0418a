#include "Uutilext/config/Empresas.h"

#include <chrono>
#include <gtest/gtest.h>
#include <thread>

#include "Uutilext/config/Etiquetas.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "platform/Archivos.h"
#include "tests/Mensaje.h"
#include "tests/Uutilext/config/ConCatalogo.h"
#include "tests/apoyo/Tarea.h"

namespace vel {
namespace {

using pruebas::MensajeDe;

using pruebas::kCatalogo;
using pruebas::kCopia;
using pruebas::kRespaldo;
using Catalogo = pruebas::ConCatalogo;

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
  std::filesystem::remove(c_.Ruta(kCatalogo));
  std::unique_ptr<TClientDataSet> empresas;
  AbreArchivoEmpresa(empresas, u"");
  EXPECT_EQ(empresas->RecordCount(), 1U);
  EXPECT_TRUE(c_.Existe(kCatalogo) && c_.Existe(kRespaldo) && c_.Existe(kCopia));
  const std::string otro = "otra carpeta/Empresas.xml";
  c_.Escribe(otro, c_.Lee(kCatalogo));
  AbreArchivoEmpresa(empresas, c_.Archivo(otro));
  EXPECT_EQ(empresas->RecordCount(), 1U);
}

// Mends the catalog a moment after it was broken.
const pruebas::Tarea kCompone("compone el catálogo", [](const pruebas::Argumentos& a) {
  const std::string bueno = LeeArchivo(a.at(1)).value();
  EXPECT_FALSE(ReemplazaArchivo(a.at(2), "").Hubo()) << "tells that it is ready";
  EXPECT_TRUE(pruebas::Aguarda([&] { return LeeArchivo(a.at(0)) == "<a"; }));
  std::this_thread::sleep_for(std::chrono::milliseconds(10));
  EXPECT_FALSE(ReemplazaArchivo(a.at(0), bueno).Hubo());
});

TEST_F(Catalogo, GivesABrokenOneASecondChance) {
  AgregaEmpresaXML(1, u"r", u"d", u"Uno", u"t", u"v");
  c_.Escribe("bueno", c_.Lee(kCatalogo));
  bool leido = false;
  // A busy machine may run the writer before the first reading or after the second: once is enough.
  for (int i = 0; i < 50 && !leido; ++i) {
    const std::string listo = "listo" + std::to_string(i);
    pruebas::Proceso escritor =
        kCompone.Empieza({c_.Archivo(kCatalogo), c_.Archivo("bueno"), c_.Archivo(listo)});
    ASSERT_TRUE(pruebas::Aguarda([&] { return c_.Existe(listo); }));
    c_.Escribe(kCatalogo, "<a");
    const auto antes = std::chrono::steady_clock::now();
    try {
      leido = DameNombreEmpresa(1) == u"Uno" &&
              std::chrono::steady_clock::now() - antes >= std::chrono::milliseconds(35);
    } catch (const EDatabaseError&) {
      leido = false;
    }
    EXPECT_EQ(escritor.Espera(), 0);
  }
  EXPECT_TRUE(leido);
}

constexpr int kRondas = 100;

// Reads in each round that the other begins, and says so.
const pruebas::Tarea kLeeEnRondas("lee en rondas", [](const pruebas::Argumentos& a) {
  for (int i = 0; i < kRondas; ++i) {
    ASSERT_TRUE(pruebas::Aguarda([&] { return ExisteArchivo(a.at(0) + IntToStr(i)); }));
    DameNombreEmpresa(1);
    ASSERT_FALSE(ReemplazaArchivo(a.at(1) + IntToStr(i), "").Hubo());
  }
});

TEST_F(Catalogo, LosesNoCompanyToAReaderThatRestores) {
  AgregaEmpresaXML(1, u"r", u"d", u"Uno", u"t", u"v");
  AgregaEmpresaXML(2, u"r", u"d", u"Dos", u"t", u"v");
  pruebas::Proceso lector = kLeeEnRondas.Empieza({c_.Archivo("empieza"), c_.Archivo("acaba")});
  for (int i = 0; i < kRondas; ++i) {
    std::filesystem::remove(c_.Ruta(kCatalogo));
    c_.Escribe("empieza" + std::to_string(i), "");
    AgregaEmpresaXML(3, u"r", u"d", u"Tres", u"t", u"v");
    ASSERT_TRUE(pruebas::Aguarda([&] { return c_.Existe("acaba" + std::to_string(i)); }))
        << "the reader failed in round " << i;
    ASSERT_EQ(DameNombreEmpresa(3), u"Tres") << "round " << i;
  }
  EXPECT_EQ(lector.Espera(), 0);
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

const pruebas::Tarea kRenombra("renombra sin fin", [](const pruebas::Argumentos&) {
  for (std::size_t i = 0;; ++i) ActualizaXMLNombreEmpresa(1, u"Empresa " + UnicodeString(i % 2 * 150, u'x'));
});

const pruebas::Tarea kLeeNombre("lee el nombre", [](const pruebas::Argumentos&) {
  for (int i = 0; i < 1000; ++i) {
    const UnicodeString nombre = DameNombreEmpresa(1);
    EXPECT_TRUE(nombre.size() == 8 || nombre.size() == 158) << "a partial read";
  }
});

TEST_F(Catalogo, IsAlwaysWholeForItsReadersAndAfterAKill) {
  AgregaEmpresaXML(1, u"r", u"d", u"Empresa 0", u"t", u"v");
  pruebas::Proceso escritor = kRenombra.Empieza({});
  ASSERT_TRUE(pruebas::Aguarda([] { return DameNombreEmpresa(1) != u"Empresa 0"; }));
  std::vector<pruebas::Proceso> lectores;
  for (int i = 0; i < 3; ++i) lectores.push_back(kLeeNombre.Empieza({}));
  for (pruebas::Proceso& lector : lectores) EXPECT_EQ(lector.Espera(), 0);
  EXPECT_TRUE(escritor.Vive()) << "it wrote until now";
  escritor.Mata();
  escritor.Espera();
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
}

}  // namespace
}  // namespace vel

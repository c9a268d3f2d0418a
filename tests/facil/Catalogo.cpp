// The company catalog by records: what it refuses, and how it comes back.

#include <gtest/gtest.h>

#include "Uutilext/config/Empresas.h"
#include "facil/facil.h"
#include "framework/Excepciones.h"
#include "tests/CarpetaTemporal.h"
#include "tests/Mensaje.h"

namespace vel::facil {
namespace {

using pruebas::MensajeDe;

constexpr const char* kMotor = "C/Sistemas Tavex/VEL9.00/";

class CatalogoFacil : public testing::Test {
 protected:
  void SetUp() override {
    c_.Instala();
    ASSERT_TRUE(CreaCatalogo());
  }
  std::string Archivo(const char* nombre) const { return c_.Lee(std::string(kMotor) + nombre); }

  pruebas::CarpetaTemporal c_;
  const Empresa tres_{.numero = 3,
                      .nombre = u"Comercial Peña & Cía.",
                      .rutaDatos = u"C:\\Datos3",
                      .driver = u"DEVARTINTERBASE",
                      .rutaTrabajo = u"D:\\Trabajo",
                      .versionBD = u"9.00",
                      .datosBD = u"srv:3050"};
};

TEST_F(CatalogoFacil, HoldsRecordsWhole) {
  AgregaEmpresa(tres_);
  AgregaEmpresa({.numero = 0, .nombre = u"Cero"});
  EXPECT_FALSE(CreaCatalogo());
  RenombraEmpresa(0, "Cero, S.A.");
  EXPECT_EQ(ListaEmpresas(), (std::vector{tres_, Empresa{.numero = 0, .nombre = u"Cero, S.A."}}));
  UnicodeString datosBD;
  EXPECT_EQ(DameRutaTrabajoEmpresa(u"3", datosBD) + datosBD, u"D:\\Trabajosrv:3050");

  const std::string catalogo = Archivo("Empresas.xml");
  const std::string respaldo = Archivo("Empresas.bak");
  EXPECT_EQ(MensajeDe([] { AgregaEmpresa({.numero = 3, .nombre = u"Otra"}); }),
            "El catálogo ya contiene la empresa 3.");
  EXPECT_EQ(MensajeDe([] { RenombraEmpresa(4, "x"); }), "El catálogo no contiene la empresa 4.");
  EXPECT_THROW(RenombraEmpresa(3, " "), EInvalidOperation);
  EXPECT_THROW(AgregaEmpresa({.numero = 5}), EInvalidOperation);
  EXPECT_THROW(AgregaEmpresa({.numero = -1, .nombre = u"x"}), EInvalidOperation);
  EXPECT_THROW(AgregaEmpresa({.numero = 5, .nombre = UnicodeString(201, u'x')}), EDatabaseError);
  EXPECT_EQ(Archivo("Empresas.xml"), catalogo);
  EXPECT_EQ(Archivo("Empresas.bak"), respaldo);
  std::filesystem::remove_all(c_.Motor());
  EXPECT_TRUE(CreaCatalogo()) << "and its folder";
}

TEST_F(CatalogoFacil, ComesBackFromItsBackup) {
  EXPECT_EQ(MensajeDe(RestauraCatalogo), "No hay respaldo del catálogo de empresas.");
  std::string sinCampo = Archivo("Empresas.xml");
  sinCampo.replace(sinCampo.find("DatosBD"), 7, "OtrosBD");
  AgregaEmpresa(tres_);
  RenombraEmpresa(3, "Equivocado");
  RestauraCatalogo();
  EXPECT_EQ(ListaEmpresas(), std::vector{tres_}) << "takes the last change back";
  EXPECT_EQ(Archivo("Empresas copia.bak"), Archivo("Empresas.bak"));
  EXPECT_NE(Archivo("Empresas anterior.xml").find("Equivocado"), std::string::npos);

  AgregaEmpresaXML(3, u"", u"", u"Otra vez", u"", u"");
  const std::string repetido = Archivo("Empresas.xml");
  RevisionCatalogo revision = RevisaCatalogo();
  EXPECT_EQ(revision.catalogo.problema, u"La empresa 3 está más de una vez.");
  EXPECT_TRUE(revision.respaldo.Sirve());
  EXPECT_EQ(revision.respaldo.empresas, 1U);

  for (const std::string& malo : {repetido, sinCampo, std::string("<a"), std::string()}) {
    c_.Escribe(std::string(kMotor) + "Empresas.bak", malo);
    EXPECT_FALSE(RevisaCatalogo().respaldo.Sirve());
    EXPECT_THROW(RestauraCatalogo(), EInvalidOperation);
    EXPECT_EQ(Archivo("Empresas.xml"), repetido);
  }
  EXPECT_NE(MensajeDe(RestauraCatalogo).find("no sirve: "), std::string::npos);

  c_.Escribe(std::string(kMotor) + "Empresas.bak", repetido);
  std::filesystem::remove(c_.Motor() / "Empresas.xml");
  revision = RevisaCatalogo();
  EXPECT_TRUE(!revision.catalogo.existe && revision.catalogo.problema.empty());
  EXPECT_FALSE(c_.Existe(std::string(kMotor) + "Empresas.xml")) << "looking restores nothing";
  EXPECT_TRUE(CreaCatalogo()) << "from the backup, not an empty one";
  EXPECT_EQ(ListaEmpresas().size(), 2U);
}

}  // namespace
}  // namespace vel::facil

#include "Uutilext/config/Rutas.h"

#include <gtest/gtest.h>

#include "Uutilext/config/Configuracion.h"
#include "framework/Numeros.h"
#include "platform/Archivos.h"
#include "platform/Registro.h"
#include "tests/CarpetaTemporal.h"
#include "tests/Casos.h"

namespace vel {
namespace {

TEST(Registro, IsWrittenWhereThereIsNone) {
  const pruebas::CarpetaTemporal c;
  EXPECT_FALSE(LeeRegistro(u"Software\\Tavex", u"TAVEXComunDir").claveExiste);
  EscribeDirectorioArchComun(u"C:\\ñ");
  EXPECT_EQ(DameDirectorioArchComun(), u"C:\\ñ\\");
  EXPECT_FALSE(EscribeRegistro(u"Software\\Tavex", u"", u"ñ\r\n€").Hubo());
  EXPECT_EQ(LeeRegistro(u"software\\TAVEX\\", u"").texto, u"ñ\r\n€") << "a text of two lines";
  EXPECT_EQ(LeeRegistro(u"Software\\WOW6432Node\\Tavex", u"tavexcomundir").texto, u"C:\\ñ");
  EXPECT_FALSE(LeeRegistro(u"Software\\Tavex", u"falta").texto.has_value());
  EXPECT_FALSE(LeeRegistro(u"Software\\Tavex\\Otra", u"").claveExiste);
}

TEST(Rutas, StandInTheirFolders) {
  const pruebas::CarpetaTemporal c;
  EXPECT_EQ(DameRutaVELNG(), u"Sistemas Tavex\\VEL9.00\\");
  const UnicodeString comun = c.Archivo("Com") + u"\\";
  EscribeDirectorioArchComun(c.Archivo("Com"));
  const UnicodeString e = comun + u"Sistemas Tavex\\VEL9.00\\";
  EXPECT_EQ(DameRutaVELNG(), e);
  EXPECT_EQ(DameDirArchComunLibrerias(), comun);
  EXPECT_EQ(DameRutaDatos(), e + u"Datos\\");
  EXPECT_EQ(DameDirectorioReportes(), e + u"Datos\\");
  EXPECT_EQ(DameRutaArchEmpresas(), e + u"Empresas.xml");
  EXPECT_EQ(DameRutaPlantillasCorreo(), e + u"Plantillas\\Correo\\");
  EXPECT_EQ(DameRutaRespaldosEmpresa(7), e + u"Respaldos\\Empresa07\\");
  EXPECT_EQ(DameRutaCertificados(3), comun + u"Comprobantes\\VEL\\Empresa 03\\Cerficados\\");
  EXPECT_EQ(DameRutaAddendas(12), e + u"Empresa12\\Comprobantes\\Addendas\\");
  EXPECT_EQ(DameRutaNamespaces(12), e + u"Empresa12\\Comprobantes\\Namespaces\\");
  EXPECT_EQ(DameDirDatosLocal(2), e + u"Ejemplos");
  EscribeDirDatosLocal(2, u"D:\\Local");
  EXPECT_EQ(DameDirDatosLocal(2), u"D:\\Local");
  for (const auto& [numero, texto] :
       {std::pair(0, u"0"), {1, u"01"}, {9, u"09"}, {10, u"10"}, {123, u"123"}, {-1, u"-1"}}) {
    EXPECT_EQ(DameNumEmpFormat(numero), texto);
  }
  int valor = 0;
  for (const auto& clase : pruebas::Casos("catalogo/carpetas.txt", "|")) {
    const UnicodeString ruta = (clase[0] == "F" ? e + u"Empresa07\\" : e) + UTF8ToString(clase[1]);
    std::filesystem::remove_all(c.Ruta("Com"));
    EXPECT_EQ(DameRutaDatosEmpresa(7, static_cast<ENUM_RUTA>(valor++)), ruta);
    EXPECT_EQ(ExisteCarpeta(ruta), clase[2] == "se crea") << clase[1];
  }
  EXPECT_EQ(DameRutaDatosEmpresa(7, static_cast<ENUM_RUTA>(valor)), u"");
  EXPECT_EQ(DameRutaDatosEmpresa(7, static_cast<ENUM_RUTA>(-1)), u"");
}

}  // namespace
}  // namespace vel

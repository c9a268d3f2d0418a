#include "Uutilext/config/Conexiones.h"

#include <gtest/gtest.h>

#include "Uutilext/config/Configuracion.h"
#include "tests/CarpetaTemporal.h"

namespace vel {
namespace {

TEST(Conexiones, GiveTheirDefaultsAndWhatIsStored) {
  const pruebas::CarpetaTemporal c;
  EXPECT_EQ(DameRutaAccesoRemoto(), u"http://servidor/VEL9.00/");
  EXPECT_EQ(DameNombreServicio(), u"SrvVEL90.dll/soap");
  EXPECT_EQ(DameDirDatosRemoto(), u"http://servidor/VEL9.00/SrvVEL90.dll/soap");
  EXPECT_EQ(DameUsuarioReciente(), u"Administrador");
  EXPECT_EQ(DameIdSesionWeb(u"Sesion1"), u"");
  for (const char16_t* base : {u"https://otro.mx/vel", u"https://otro.mx/vel/"}) {
    EscribeRutaAccesoRemoto(base);
    EXPECT_EQ(DameDirDatosRemoto(), u"https://otro.mx/vel/SrvVEL90.dll/soap");
  }
  EscribeValor(u"SISTEMA", u"NombreServicio", u"srv");
  EXPECT_EQ(DameDirDatosRemoto(), u"https://otro.mx/vel/srv");
  EscribeUsuarioReciente(u"Íñigo");
  EscribeIdSesion(u"Sesion1", u"{A-1}");
  EscribeNombreAccesoRemoto(u"Matriz");
  EXPECT_EQ(DameUsuarioReciente(), u"Íñigo");
  EXPECT_EQ(DameIdSesionWeb(u"sesion1"), u"{A-1}");
  EXPECT_EQ(DameValor(u"Sistema", u"NombreConexionRemoto"), u"Matriz");
}

TEST(Conexiones, FileIsSeededFromTheTemplateOnce) {
  const pruebas::CarpetaTemporal c;
  c.Instala();
  TStringList lista;
  DameListaConexiones(DameArchConexUsu(), lista);
  EXPECT_EQ(lista.Count(), 0U) << "no template";
  c.Escribe("C/Sistemas Tavex/VEL9.00/Plantillas/conexionesusuario.ini",
            "[Matriz]\nUrl=a\n\n[Sucursal ñ]\n[MATRIZ]\n");
  const UnicodeString archivo = DameArchConexUsu();
  EXPECT_EQ(archivo, c.Archivo("casa/.local/share") + u"\\Tavex\\VEL9.00\\conexionesusuario.ini");
  DameListaConexiones(archivo, lista);
  EXPECT_EQ(lista.Text(), u"Matriz\r\nSucursal ñ\r\n");
  EscribeValor(archivo, u"Propia", u"Url", u"b");
  DameListaConexiones(DameArchConexUsu(), lista);
  EXPECT_EQ(lista.Count(), 3U) << "the user's own file is not seeded again";
}

}  // namespace
}  // namespace vel

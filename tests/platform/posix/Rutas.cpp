// Where POSIX keeps what the suite names in its own notation.
#include "platform/Rutas.h"

#include <gtest/gtest.h>

#include "platform/Archivos.h"
#include "platform/Carpetas.h"
#include "tests/CarpetaTemporal.h"

namespace vel {
namespace {

TEST(Carpetas, FollowTheirPrecedence) {
  pruebas::CarpetaTemporal c;
  const auto dan = [&c](const char* home, const char* datos, const char* comunes) {
    c.Pon("HOME", home);
    c.Pon("XDG_DATA_HOME", datos);
    c.Pon("UTILVEL_DATOS_COMUNES", comunes);
    const CarpetasConocidas carpetas = DameCarpetasConocidas();
    return UTF8Encode(carpetas.datosUsuario + u" " + carpetas.datosComunes);
  };
  EXPECT_EQ(dan("/casa/ana/", "", ""), "/casa/ana/.local/share /var/lib");
  EXPECT_EQ(dan("/casa/ana/", "relativa", "/comunes/"), "/casa/ana/.local/share /comunes");
  EXPECT_EQ(dan("/casa/ana/", "/datos/ñ", "/"), "/datos/ñ /");
  EXPECT_NE(dan("", "", "/c"), " /c") << "the user database knows the home";
}

TEST(RutaNativa, IsMadeAtTheAccess) {
  pruebas::CarpetaTemporal c;
  c.Pon("UTILVEL_UNIDADES", "");
  c.Pon("XDG_DATA_HOME", "/d");
  EXPECT_EQ(RutaNativa(u"C:\\Datos\\Año\\a.ini"), u"/d/tavex/drive_c/Datos/Año/a.ini");
  EXPECT_EQ(RutaNativa(u"z:a.ini"), u"/d/tavex/drive_z/a.ini");
  EXPECT_EQ(RutaNativa(u"C:/Datos"), u"/d/tavex/drive_c/Datos");
  EXPECT_EQ(RutaNativa(u"5:\\a"), u"5:/a") << "no drive";
  EXPECT_EQ(RutaNativa(u"/tmp/x\\y"), u"/tmp/x/y");
  EXPECT_EQ(RutaNativa(u"a\\b"), u"a/b");
  EXPECT_EQ(RutaNativa(u""), u"");
  c.Pon("UTILVEL_UNIDADES", "/u");
  EXPECT_EQ(RutaNativa(u"D:"), u"/u/drive_d");
}

TEST(LeeArchivo, ReadsAFileWithoutASize) { EXPECT_TRUE(LeeArchivo(u"/proc/self/stat").has_value()); }

TEST(Archivos, RefuseWhatIsNoFile) {
  const pruebas::CarpetaTemporal c;
  EXPECT_TRUE(CreaCarpeta(u"").Hubo());
  EXPECT_FALSE(CreaCarpeta(u"//").Hubo());
  EXPECT_TRUE(BorraArchivo(c.Archivo("")).Hubo()) << "a folder";
  int manejador = 0;
  EXPECT_TRUE(AbreArchivo(u"/dev/null", 0x40, manejador).Hubo());
  EXPECT_TRUE(AbreArchivo(u"/proc/self/stat", 0x43, manejador).Hubo()) << "no mode";
  EXPECT_EQ(manejador, -1);
}

}  // namespace
}  // namespace vel

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
  EXPECT_EQ(RutaNativa(u"/tmp/x\\y"), u"/tmp/x/y");
  EXPECT_EQ(RutaNativa(u"a\\b"), u"a/b");
  EXPECT_EQ(RutaNativa(u""), u"");
  c.Pon("UTILVEL_UNIDADES", "/u");
  EXPECT_EQ(RutaNativa(u"D:"), u"/u/drive_d");
}

TEST(LeeArchivo, ReadsAFileWithoutASize) { EXPECT_TRUE(LeeArchivo(u"/proc/self/stat").has_value()); }

}  // namespace
}  // namespace vel

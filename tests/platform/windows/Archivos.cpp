// Files that other programs of the system hold or protect.
#include "platform/Archivos.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "platform/Carpetas.h"
#include "platform/Rutas.h"
#include "tests/CarpetaTemporal.h"

namespace vel {
namespace {

// A handle as another program would have it, closed with this.
class Ajeno {
 public:
  Ajeno(const std::filesystem::path& ruta, DWORD acceso, DWORD comparticion)
      : h_(CreateFileW(ruta.c_str(), acceso, comparticion, nullptr, OPEN_EXISTING, 0, nullptr)) {
    EXPECT_NE(h_, INVALID_HANDLE_VALUE);
  }
  Ajeno(const Ajeno&) = delete;
  Ajeno& operator=(const Ajeno&) = delete;
  ~Ajeno() { CloseHandle(h_); }

 private:
  HANDLE h_;
};

TEST(Archivos, TellWhoHoldsOrProtectsThem) {
  const pruebas::CarpetaTemporal c;
  c.Escribe("a.txt", "uno");
  const UnicodeString archivo = c.Archivo("a.txt");
  std::string bytes = "antes";
  {
    const Ajeno solo(c.Ruta("a.txt"), GENERIC_READ | GENERIC_WRITE, 0);
    EXPECT_EQ(LeeArchivo(archivo, bytes).clase, ClaseFalla::EnUso);
    EXPECT_EQ(bytes, "antes");
    EXPECT_EQ(AgregaAlFinal(archivo, "x").clase, ClaseFalla::EnUso);
    EXPECT_EQ(BorraArchivo(archivo).clase, ClaseFalla::EnUso);
    EXPECT_EQ(Descripcion(ReemplazaArchivo(archivo, "dos")), u"lo está usando otro programa");
  }
  EXPECT_EQ(c.Lee("a.txt"), "uno");
  {
    const Ajeno escribe(c.Ruta("a.txt"), GENERIC_WRITE,
                        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
    EXPECT_FALSE(LeeArchivo(archivo, bytes).Hubo());
    EXPECT_FALSE(AgregaAlFinal(archivo, "\r\n").Hubo()) << "who shares is in nobody's way";
  }
  ASSERT_NE(SetFileAttributesW(c.Ruta("a.txt").c_str(), FILE_ATTRIBUTE_READONLY), 0);
  EXPECT_EQ(ReemplazaArchivo(archivo, "dos").clase, ClaseFalla::AccesoDenegado);
  EXPECT_FALSE(CopiaArchivo(archivo, c.Archivo("b.txt"), false).Hubo());
  EXPECT_EQ(ReemplazaArchivo(c.Archivo("b.txt"), "dos").clase, ClaseFalla::AccesoDenegado)
      << "as its original";
  for (const char* nombre : {"a.txt", "b.txt"})
    SetFileAttributesW(c.Ruta(nombre).c_str(), FILE_ATTRIBUTE_NORMAL);
  EXPECT_EQ(c.Cuenta(), 2) << "neither lock nor temporary file stays";
  for (const char16_t* ruta : {u"NUL", u"\\\\.\\NUL"})
    EXPECT_FALSE(LeeArchivo(ruta).has_value()) << "a device";
}

TEST(Archivos, HavePathsOfAnyLength) {
  const pruebas::CarpetaTemporal c;
  UnicodeString carpeta = c.Ruta().u16string();
  for (int i = 0; i < 8; ++i) carpeta += u"\\" + UnicodeString(50, u'ñ');
  EXPECT_EQ(RutaNativa(carpeta), carpeta);
  EXPECT_FALSE(CreaCarpeta(carpeta + u"\\").Hubo());
  EXPECT_TRUE(ExisteCarpeta(carpeta));
  const CandadoArchivo candado(carpeta + u"\\a.ini");
  EXPECT_FALSE(candado.Falla().Hubo());
  EXPECT_FALSE(ReemplazaArchivo(carpeta + u"/a.ini", "x").Hubo());
  EXPECT_EQ(LeeArchivo(carpeta + u"\\a.ini"), "x");
}

// The folder need not be there.
TEST(Carpetas, AreTheOnesThatTheSystemNames) {
  const pruebas::CarpetaTemporal c;
  const CarpetasConocidas carpetas = DameCarpetasConocidas();
  EXPECT_EQ(carpetas.datosUsuario, c.Archivo("casa/.local/share"));
  EXPECT_EQ(carpetas.datosComunes, c.Archivo("comunes"));
}

}  // namespace
}  // namespace vel

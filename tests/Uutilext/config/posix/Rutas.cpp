// The registry as a text, and the library's folder as the dynamic linker knows it.
#include "Uutilext/config/Rutas.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "Uutilext/config/Configuracion.h"
#include "framework/Excepciones.h"
#include "platform/Registro.h"
#include "platform/Rutas.h"
#include "tests/CarpetaTemporal.h"
#include "tests/apoyo/Tarea.h"

namespace vel {
namespace {

TEST(Registro, IsReadAsA32BitProgramSeesIt) {
  const pruebas::CarpetaTemporal c;
  EXPECT_FALSE(LeeRegistro(u"Software\\Tavex", u"TAVEXComunDir").claveExiste);
  std::filesystem::copy(DATOS_PRUEBA "/catalogo/registro.reg", c.Ruta());
  const std::string texto = c.Lee("registro.reg");
  EXPECT_EQ(LeeRegistro(u"software\\tavex\\", u"TAVEXCOMUNDIR").texto, u"C:\\Com\"un");
  EXPECT_FALSE(LeeRegistro(u"Software\\Tavex", u"n").texto.has_value()) << "no text";
  EXPECT_EQ(DameValorRegistro(u"Hex"), u"C:\\ñ");
  EXPECT_EQ(DameValorRegistro(u""), u"pred");
  EXPECT_EQ(DameValorRegistro(u"falta"), u"");
  // A value that was cut takes no line that is not its own, neither when reading nor when writing.
  c.Escribe("registro.reg",
            texto + "\"Corte\"=hex(2):43,00,\\\r\n  3a,00,\\\r\n\"Tras\"=\"x\"\r\n\"Fin\"=hex(1):41,00,\\");
  EXPECT_EQ(DameValorRegistro(u"Corte") + DameValorRegistro(u"Tras") + DameValorRegistro(u"Fin"), u"C:xA");
  EXPECT_FALSE(EscribeRegistro(u"Software\\Tavex\\Tavex-VEL 9.0", u"Cara", u"y").Hubo());
  EXPECT_EQ(DameValorRegistro(u"Fin") + DameValorRegistro(u"Cara"), u"Ay");
  c.Escribe("registro.reg", texto);
  EscribeDirectorioArchComun(u"D:\\Año\\");
  EXPECT_EQ(DameDirectorioArchComun(), u"D:\\Año\\");
  std::string cambiado = texto;
  cambiado.replace(cambiado.find("\"TavexComunDir\"=\"C:\\\\Com\\\"un\""), 29,
                   "\"TAVEXComunDir\"=\"D:\\\\Año\\\\\"");
  EXPECT_EQ(c.Lee("registro.reg"), cambiado);
  c.Escribe("registro.reg", cambiado + "[HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Tavex]\r\n");
  EXPECT_EQ(DameDirectorioArchComun(), u"c:\\sistemas\\tavex\\comunes\\") << "the key without the value";
  EscribeDirectorioArchComun(u"E:");
  EXPECT_EQ(DameDirectorioArchComun(), u"E:\\");
  c.Escribe("registro.reg", "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavex\\Otra]\r\n");
  EXPECT_EQ(DameDirectorioArchComun(), u"c:\\sistemas\\tavex\\comunes\\") << "a key that only holds another";
}

TEST(Registro, IsMadeAsTheRegistryExports) {
  pruebas::CarpetaTemporal c;
  c.Pon("UTILVEL_REGISTRO", (c.Ruta() / "nueva/carpeta/r.reg").string());
  EscribeDirectorioArchComun(u"C:\\ñ");
  EXPECT_EQ(c.Lee("nueva/carpeta/r.reg").substr(0, 4), std::string("\xFF\xFEW\0", 4))
      << "as the registry exports";
  const std::string inverso("\xFE\xFF\0[\0H", 6);
  c.Escribe("nueva/carpeta/r.reg", inverso);
  EXPECT_TRUE(EscribeRegistro(u"Software\\Tavex", u"a", u"b").Hubo()) << "in the other order of bytes";
  EXPECT_EQ(c.Lee("nueva/carpeta/r.reg"), inverso);
  c.Escribe("nueva/carpeta/r.reg", "REGEDIT4");
  EXPECT_FALSE(EscribeRegistro(u"Software\\Tavex", u"", u"b").Hubo());
  EXPECT_EQ(c.Lee("nueva/carpeta/r.reg"),
            "REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavex]\r\n@=\"b\"\r\n");
}

// The library is known by a relative path, and the process stands elsewhere by now.
const pruebas::Tarea kCarpeta("carpeta de la biblioteca", [](const pruebas::Argumentos& a) {
  std::filesystem::current_path("/");
  // The sanitizers ask a pipe whether an object's memory can be read, which takes files of its own.
#ifndef CON_SANITIZADORES
  rlimit limite{};
  getrlimit(RLIMIT_NOFILE, &limite);
  const rlimit ninguno{3, limite.rlim_max};
  setrlimit(RLIMIT_NOFILE, &ninguno);
  EXPECT_THROW(DameRutaDll(), Exception) << "the list of what is mapped cannot be read";
  setrlimit(RLIMIT_NOFILE, &limite);
#endif
  EXPECT_EQ(DameRutaDll(), a.at(0));
});

TEST(Rutas, KnowTheLibrarysFolder) {
  pruebas::CarpetaTemporal c;
  const std::filesystem::path antes = std::filesystem::current_path();
  c.Pon("LD_LIBRARY_PATH", ".");
  std::filesystem::current_path(RutaNativa(DameRutaDll()));
  EXPECT_EQ(kCarpeta.Empieza({DameRutaDll()}).Espera(), 0);
  std::filesystem::current_path(antes);
}

}  // namespace
}  // namespace vel

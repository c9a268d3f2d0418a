#include "Uutilext/config/Rutas.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Uutilext/config/Configuracion.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "platform/Registro.h"
#include "platform/Rutas.h"
#include "tests/CarpetaTemporal.h"
#include "tests/Casos.h"

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

TEST(Registro, IsWrittenWhereThereIsNone) {
  pruebas::CarpetaTemporal c;
  c.Pon("UTILVEL_REGISTRO", (c.Ruta() / "nueva/carpeta/r.reg").string());
  EscribeDirectorioArchComun(u"C:\\ñ");
  EXPECT_EQ(DameDirectorioArchComun(), u"C:\\ñ\\");
  EXPECT_FALSE(EscribeRegistro(u"Software\\Tavex", u"", u"ñ\r\n€").Hubo());
  EXPECT_EQ(LeeRegistro(u"Software\\Tavex", u"").texto, u"ñ\r\n€") << "a text of two lines";
  EXPECT_EQ(c.Lee("nueva/carpeta/r.reg").substr(0, 4), std::string("\xFF\xFEW\0", 4))
      << "as the registry exports";
}

TEST(Rutas, KnowTheLibrarysFolder) {
  if (const char* const carpeta = std::getenv("CARPETA")) {
    // In a process that knows the library by a relative path, and stands elsewhere by now.
    ASSERT_EQ(chdir("/"), 0);
    // The sanitizers ask a pipe whether an object's memory can be read, which takes files of its own.
#ifndef CON_SANITIZADORES
    rlimit limite{};
    getrlimit(RLIMIT_NOFILE, &limite);
    const rlimit ninguno{3, limite.rlim_max};
    setrlimit(RLIMIT_NOFILE, &ninguno);
    EXPECT_THROW(DameRutaDll(), Exception) << "the list of what is mapped cannot be read";
    setrlimit(RLIMIT_NOFILE, &limite);
#endif
    EXPECT_EQ(UTF8Encode(DameRutaDll()), carpeta);
    return;
  }
  const std::string carpeta = UTF8Encode(DameRutaDll());
  const pid_t hijo = fork();
  if (hijo == 0) {
    setenv("CARPETA", carpeta.c_str(), 1);
    setenv("LD_LIBRARY_PATH", ".", 1);
    if (chdir(carpeta.substr(0, carpeta.size() - 1).c_str()) == 0)
      execl("/proc/self/exe", "yo", "--gtest_filter=*KnowTheLibrarysFolder", nullptr);
    _exit(2);
  }
  int estado = -1;
  waitpid(hijo, &estado, 0);
  EXPECT_EQ(estado, 0);
}

TEST(Rutas, StandInTheirFolders) {
  const pruebas::CarpetaTemporal c;
  EXPECT_EQ(DameRutaVELNG(), u"Sistemas Tavex\\VEL9.00\\");
  EscribeDirectorioArchComun(u"C:\\Com");
  const UnicodeString e = u"C:\\Com\\Sistemas Tavex\\VEL9.00\\";
  EXPECT_EQ(DameRutaVELNG(), e);
  EXPECT_EQ(DameDirArchComunLibrerias(), u"C:\\Com\\");
  EXPECT_EQ(DameRutaDatos(), e + u"Datos\\");
  EXPECT_EQ(DameDirectorioReportes(), e + u"Datos\\");
  EXPECT_EQ(DameRutaArchEmpresas(), e + u"Empresas.xml");
  EXPECT_EQ(DameRutaPlantillasCorreo(), e + u"Plantillas\\Correo\\");
  EXPECT_EQ(DameRutaRespaldosEmpresa(7), e + u"Respaldos\\Empresa07\\");
  EXPECT_EQ(DameRutaCertificados(3), u"C:\\Com\\Comprobantes\\VEL\\Empresa 03\\Cerficados\\");
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
    std::filesystem::remove_all(c.Ruta() / "unidades");
    EXPECT_EQ(DameRutaDatosEmpresa(7, static_cast<ENUM_RUTA>(valor++)), ruta);
    EXPECT_EQ(std::filesystem::is_directory(UTF8Encode(RutaNativa(ruta))), clase[2] == "se crea") << clase[1];
  }
  EXPECT_EQ(DameRutaDatosEmpresa(7, static_cast<ENUM_RUTA>(valor)), u"");
  EXPECT_EQ(DameRutaDatosEmpresa(7, static_cast<ENUM_RUTA>(-1)), u"");
}

}  // namespace
}  // namespace vel

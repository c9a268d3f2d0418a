#include <algorithm>
#include <gtest/gtest.h>
#include <sstream>
#include <vector>

#include "Uutilext/config/Configuracion.h"
#include "Uutilext/config/Rutas.h"
#include "Uutilext/diagnostics/Bitacora.h"
#include "Uutilext/diagnostics/Errores.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "platform/Archivos.h"
#include "platform/Modulos.h"
#include "tests/CarpetaTemporal.h"
#include "tests/Mensaje.h"
#include "tests/apoyo/Tarea.h"

namespace vel {
namespace {

using pruebas::MensajeDe;

std::string Bitacora() { return LeeArchivo(DameRutaDll() + u"0010552.log").value_or("missing"); }

constexpr int kProcesos = 8;

const pruebas::Tarea kApunta("apunta en la bitácora", [](const pruebas::Argumentos& a) {
  const int primera = StrToInt(a.at(0));
  for (int i = 0; i < StrToInt(a.at(1)); ++i)
    logInterAux("<" + std::to_string(primera + i) + ">" +
                std::string(static_cast<std::size_t>(i % 200), '.'));
});

// One test for all of the log: its file stands beside the library and is one for all programs.
TEST(Bitacora, KeepsEveryLineOfEveryProgramWhole) {
  Deletelog();
  Deletelog();
  EXPECT_EQ(Bitacora(), "missing");
  logInterAux("a\xF1o\r\ndos l\xEDneas");
  std::string forma = Bitacora();
  std::replace_if(
      forma.begin(), forma.end(), [](char c) { return c >= '0' && c <= '9'; }, '9');
  EXPECT_EQ(forma, "99/99/9999 99:99:99 999 - a\xF1o\r\ndos l\xEDneas\r\n");
  Deletelog();
  logInterAux(std::string(1 << 20, 'M'));
  EXPECT_EQ(Bitacora().substr(26), std::string(1 << 20, 'M') + "\r\n");
  Deletelog();
  const int cuantas = pruebas::Veces(20'000, 2'000);
  std::vector<pruebas::Proceso> procesos;
  for (int p = 0; p < kProcesos; ++p)
    procesos.push_back(kApunta.Empieza({IntToStr(p * cuantas), IntToStr(cuantas)}));
  for (pruebas::Proceso& proceso : procesos) EXPECT_EQ(proceso.Espera(), 0);
  std::istringstream lineas(Bitacora());
  std::vector<bool> vistas(static_cast<std::size_t>(kProcesos * cuantas));
  int enteras = 0;
  for (std::string linea; std::getline(lineas, linea);) {
    int numero = -1;
    char cierre = 0;
    ASSERT_EQ(std::sscanf(linea.c_str() + 26, "<%d%c", &numero, &cierre), 2) << linea;
    ASSERT_EQ(linea.substr(linea.find('>') + 1),
              std::string(static_cast<std::size_t>(numero % cuantas % 200), '.') + "\r");
    ASSERT_FALSE(vistas[static_cast<std::size_t>(numero)]);
    vistas[static_cast<std::size_t>(numero)] = true;
    ++enteras;
  }
  EXPECT_EQ(enteras, kProcesos * cuantas);
  Deletelog();
}

TEST(LanzaThrow, RaisesAMessageOrACode) {
  const pruebas::CarpetaTemporal c;
  int codigo = 7;
  EXPECT_EQ(MensajeDe([&codigo] { LanzaThrow(u"Falló", codigo); }), "Falló");
  EXPECT_EQ(codigo, -1);
  for (const std::string nombre : {"SrvVEL90", "IServerVEL90", "VELMovil30"}) {
    const UnicodeString modulo = UTF8ToString(nombre) + u".DLL";
    EXPECT_FALSE(ModuloCargado(modulo));
    EXPECT_EQ(DameArchivoConfig(), c.Archivo("casa/.local/share") + u"\\Tavex\\VEL9.00\\VELWIN90.INI");
    const pruebas::Modulo cargado(MODULOS "/" MODULO_INICIO + nombre + MODULO_FIN);
    EXPECT_TRUE(ModuloCargado(modulo));
    codigo = 42;
    try {
      LanzaThrow(u"Falló", codigo);
      ADD_FAILURE();
    } catch (int lanzado) {
      EXPECT_EQ(lanzado, 42);
    }
    EXPECT_EQ(codigo, 42);
    EXPECT_EQ(DameArchivoConfig(), DameRutaDll() + u"VELWIN90.INI")
        << "a server's settings stand beside the library";
  }
}

TEST(EsErrorSesionCaduca, LooksForTheExactWords) {
  EXPECT_TRUE(esErrorSesionCaduca(u"Error 5: La sesión ha caducado."));
  EXPECT_FALSE(esErrorSesionCaduca(u"la sesión ha caducado"));
  EXPECT_FALSE(esErrorSesionCaduca(u""));
}

TEST(IntentarAbrirArchivo, NamesTheFileAndTheFault) {
  const pruebas::CarpetaTemporal c;
  const auto mensaje = [&c](const std::string& nombre, unsigned modo, bool empresas) {
    return MensajeDe([&] { IntentarAbrirArchivo(c.Archivo(nombre), modo, false, empresas); });
  };
  c.Escribe("a.txt", "x");
  EXPECT_EQ(mensaje("a.txt", 0x40, false), "none");
  EXPECT_EQ(mensaje("falta.txt", 0, false), "No se pudo encontrar el archivo falta.txt");
  EXPECT_EQ(mensaje("falta.txt", 2, true), "No se pudo encontrar el archivo de empresas");
  EXPECT_EQ(mensaje("nada/falta.txt", 0, false), "No se pudo encontrar la ruta del archivo falta.txt");
  EXPECT_EQ(mensaje("a.txt/b", 0, false), "No se pudo encontrar la ruta del archivo b");
  std::filesystem::create_directory(c.Ruta("carpeta"));
  EXPECT_EQ(mensaje("carpeta", 0, false), "Acceso denegado al archivo carpeta\nVerifique los permisos");
  const int manejador = IntentarAbrirArchivo(c.Archivo("a.txt"), 0x12, true, false);
  int otro = 0;
  const FallaArchivo falla = AbreArchivo(c.Archivo("a.txt"), 0x40, otro);
  EXPECT_EQ(falla.clase, ClaseFalla::EnUso);
  EXPECT_EQ(otro, -1);
  for (const unsigned modo : {0x00U, 0x20U, 0x42U, 0x12U})
    EXPECT_EQ(mensaje("a.txt", modo, false), UTF8Encode(falla.texto)) << modo;
  CierraArchivo(manejador);
  EXPECT_EQ(mensaje("nuevo.txt", 0xFF00, false), "No se pudo encontrar el archivo nuevo.txt");
  EXPECT_EQ(mensaje("a.txt", 0xFF02, false), "none");
  EXPECT_EQ(c.Lee("a.txt"), "x");
}

}  // namespace
}  // namespace vel

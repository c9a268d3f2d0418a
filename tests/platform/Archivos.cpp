// Files whole, whoever else reads and writes them.
#include "platform/Archivos.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "framework/Numeros.h"
#include "tests/CarpetaTemporal.h"
#include "tests/apoyo/Tarea.h"

namespace vel {
namespace {

TEST(LeeArchivo, ReadsFilesWhole) {
  const pruebas::CarpetaTemporal c;
  const std::string contenido = std::string(200'000, 'x') + '\0' + "fin";
  c.Escribe("carpeta ñ/añO.bin", contenido);
  const UnicodeString carpeta = c.Archivo("carpeta ñ");
  EXPECT_EQ(LeeArchivo(carpeta + u"\\añO.bin"), contenido);
  EXPECT_FALSE(LeeArchivo(carpeta).has_value()) << "a folder";
  EXPECT_FALSE(LeeArchivo(carpeta + u"\\falta").has_value());
  EXPECT_FALSE(LeeArchivo(carpeta + UnicodeString(u"\\añO.bin\0", 9)).has_value()) << "a NUL cuts no path";
}

// Contents that show whether they are whole: one letter, as often as it says.
std::string Contenido(int i) {
  return std::string(static_cast<std::size_t>(1000 + i % 7 * 10'000), static_cast<char>('a' + i % 7));
}

const pruebas::Tarea kLee("lee sin fin", [](const pruebas::Argumentos& a) {
  for (int leidas = 0; !ExisteArchivo(a.at(1)); ++leidas) {
    std::string bytes;
    const FallaArchivo falla = LeeArchivo(a.at(0), bytes);
    ASSERT_FALSE(falla.Hubo()) << UTF8Encode(falla.texto) << " after " << leidas;
    ASSERT_FALSE(bytes.empty());
    ASSERT_EQ(bytes, Contenido(bytes.front() - 'a')) << "torn";
    if (leidas == 0) ReemplazaArchivo(a.at(2), "");
    // Where an open file is not replaced the writer has to find a gap.
    std::this_thread::sleep_for(std::chrono::milliseconds(pruebas::Veces(0, 2)));
  }
});

TEST(ReemplazaArchivo, IsNeverSeenHalfDone) {
  const pruebas::CarpetaTemporal c;
  const UnicodeString archivo = c.Archivo("a.bin");
  ASSERT_FALSE(ReemplazaArchivo(archivo, Contenido(0)).Hubo());
  std::vector<pruebas::Proceso> lectores;
  for (const char* listo : {"uno", "dos"}) {
    lectores.push_back(kLee.Empieza({archivo, c.Archivo("fin"), c.Archivo(listo)}));
    ASSERT_TRUE(pruebas::Aguarda([&] { return c.Existe(listo); }));
  }
  for (int i = 0; i < 1500; ++i) {
    const FallaArchivo falla = ReemplazaArchivo(archivo, Contenido(i));
    ASSERT_FALSE(falla.Hubo()) << UTF8Encode(falla.texto) << " at " << i;
  }
  c.Escribe("fin", "");
  for (pruebas::Proceso& lector : lectores) EXPECT_EQ(lector.Espera(), 0);
  EXPECT_EQ(c.Cuenta(), 4) << "no temporary file stays";
}

}  // namespace
}  // namespace vel

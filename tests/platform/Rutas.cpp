#include "platform/Rutas.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <unistd.h>

#include "platform/Archivos.h"
#include "platform/Carpetas.h"

namespace vel {
namespace {

// The environment that these tests change, put back at the end.
class Entorno : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* nombre : kNombres) {
      const char* const valor = std::getenv(nombre);
      previos_.push_back(valor == nullptr ? std::string("\x01") : valor);
      unsetenv(nombre);
    }
  }
  void TearDown() override {
    for (std::size_t i = 0; i < std::size(kNombres); ++i) {
      if (previos_[i] == "\x01") {
        unsetenv(kNombres[i]);
      } else {
        setenv(kNombres[i], previos_[i].c_str(), 1);
      }
    }
  }

 private:
  static constexpr const char* kNombres[] = {"HOME", "XDG_DATA_HOME", "UTILVEL_DATOS_COMUNES",
                                             "UTILVEL_UNIDADES"};
  std::vector<std::string> previos_;
};

TEST_F(Entorno, KnownFoldersFollowTheirPrecedence) {
  setenv("HOME", "/casa/ana/", 1);
  EXPECT_EQ(DameCarpetasConocidas().datosUsuario, u"/casa/ana/.local/share");
  EXPECT_EQ(DameCarpetasConocidas().datosComunes, u"/var/lib");
  setenv("XDG_DATA_HOME", "relativa", 1);
  EXPECT_EQ(DameCarpetasConocidas().datosUsuario, u"/casa/ana/.local/share");
  setenv("XDG_DATA_HOME", "/datos/ñ", 1);
  setenv("UTILVEL_DATOS_COMUNES", "/comunes/", 1);
  EXPECT_EQ(DameCarpetasConocidas().datosUsuario, u"/datos/ñ");
  EXPECT_EQ(DameCarpetasConocidas().datosComunes, u"/comunes");
  unsetenv("HOME");
  unsetenv("XDG_DATA_HOME");
  EXPECT_FALSE(DameCarpetasConocidas().datosUsuario.empty()) << "the user database knows the home";
}

TEST_F(Entorno, PathsBecomeNativeAtTheAccess) {
  setenv("XDG_DATA_HOME", "/d", 1);
  EXPECT_EQ(RutaNativa(u"C:\\Datos\\Año\\a.ini"), u"/d/tavex/drive_c/Datos/Año/a.ini");
  EXPECT_EQ(RutaNativa(u"z:a.ini"), u"/d/tavex/drive_z/a.ini");
  EXPECT_EQ(RutaNativa(u"/tmp/x\\y"), u"/tmp/x/y");
  EXPECT_EQ(RutaNativa(u"a\\b"), u"a/b");
  EXPECT_EQ(RutaNativa(u""), u"");
  setenv("UTILVEL_UNIDADES", "/u", 1);
  EXPECT_EQ(RutaNativa(u"D:"), u"/u/drive_d");
}

TEST_F(Entorno, FilesAreReadWhole) {
  const auto carpeta = std::filesystem::temp_directory_path() / ("utilvel90_" + std::to_string(getpid()));
  std::filesystem::create_directories(carpeta);
  const std::string contenido = std::string(200'000, 'x') + '\0' + "fin";
  std::ofstream(carpeta / "añO.bin", std::ios::binary) << contenido;
  setenv("UTILVEL_UNIDADES", carpeta.c_str(), 1);
  std::filesystem::create_directory(carpeta / "drive_c");
  std::filesystem::rename(carpeta / "añO.bin", carpeta / "drive_c" / "añO.bin");
  EXPECT_EQ(LeeArchivo(u"C:\\añO.bin"), contenido);
  EXPECT_FALSE(LeeArchivo(u"C:\\").has_value()) << "a folder";
  EXPECT_FALSE(LeeArchivo(u"C:\\falta").has_value());
  EXPECT_TRUE(LeeArchivo(u"/proc/self/stat").has_value()) << "a file without a size";
  std::filesystem::remove_all(carpeta);
}

}  // namespace
}  // namespace vel

// Programs that save are killed at random moments: 300 of them, or as many as UTILVEL90_MUERTES says. Every
// file is whole after each, and the next save takes away what they left.

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <iostream>
#include <random>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/CarpetaTemporal.h"
#include "tests/sistema/Guardador.h"

namespace vel {
namespace {

namespace fs = std::filesystem;

pid_t Lanza(const std::string& carpeta) {
  pid_t hijo = 0;
  std::string programa = GUARDADOR, argumento = carpeta;
  char* const argumentos[] = {programa.data(), argumento.data(), nullptr};
  if (posix_spawn(&hijo, programa.c_str(), nullptr, nullptr, argumentos, environ) != 0) std::abort();
  return hijo;
}

void Mata(pid_t hijo) {
  kill(hijo, SIGKILL);
  int estado = 0;
  waitpid(hijo, &estado, 0);
  EXPECT_TRUE(WIFSIGNALED(estado) && WTERMSIG(estado) == SIGKILL) << "it ended by itself";
}

bool EsTemporal(const fs::path& ruta) { return ruta.filename().string().starts_with(".utilvel90."); }

long Temporales(const fs::path& carpeta) {
  long cuenta = 0;
  for (const auto& entrada : fs::recursive_directory_iterator(carpeta))
    cuenta += EsTemporal(entrada.path()) ? 1 : 0;
  return cuenta;
}

TEST(Muertes, LeaveEveryFileWhole) {
  const char* const pedidas = std::getenv("UTILVEL90_MUERTES");
  const int muertes = pedidas == nullptr ? 300 : std::atoi(pedidas);
  const pruebas::CarpetaTemporal c;
  c.Instala();
  fs::copy_file(DATOS_PRUEBA "/memoria/Empresas.xml", c.Motor() / "Empresas.xml");
  const pruebas::Guardado guardado{UTF8ToString(c.Ruta().string())};
  guardado.Guarda(0);
  const unsigned semilla = std::random_device()();
  SCOPED_TRACE("seed " + std::to_string(semilla));
  std::mt19937 azar(semilla);
  int aMedias = 0;
  int guardados = 0;
  for (int i = 0; i < muertes && !testing::Test::HasFailure(); ++i) {
    // Every third time two of them stand in each other's way.
    const pid_t uno = Lanza(c.Ruta().string());
    const pid_t otro = i % 3 == 0 ? Lanza(c.Ruta().string()) : 0;
    usleep(static_cast<useconds_t>(3000 + azar() % 17'000));
    Mata(uno);
    if (otro != 0) Mata(otro);
    ASSERT_NO_THROW(EXPECT_TRUE(guardado.Sirve())) << "after " << i << " kills";
    if (DameValor(guardado.Ini(), u"S", u"k").front() != u'0') ++guardados;
    if (Temporales(c.Ruta()) == 0) continue;
    ++aMedias;
    guardado.Guarda(0);
    EXPECT_EQ(Temporales(c.Ruta()), 0);
  }
  EXPECT_GT(guardados, 0) << "nobody lived long enough to save";
  EXPECT_GT(aMedias, muertes / 100) << "too few were killed amid a save";
  std::cout << muertes << " kills, " << aMedias << " amid a save\n";
}

}  // namespace
}  // namespace vel

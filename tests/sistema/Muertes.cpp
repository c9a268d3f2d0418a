// Programs that save are killed at random moments: 300 of them, or as many as UTILVEL90_MUERTES says. Every
// file is whole after each, and the next save takes away what they left.

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <iostream>
#include <random>

#include "tests/CarpetaTemporal.h"
#include "tests/apoyo/Tarea.h"
#include "tests/sistema/Guardado.h"

namespace vel {
namespace {

namespace fs = std::filesystem;
using pruebas::Guardado;

const pruebas::Tarea kGuarda("guarda sin fin", [](const pruebas::Argumentos& a) {
  const Guardado guardado{a.at(0)};
  for (int i = 1;; ++i) guardado.Guarda(i);
});

long Temporales(const fs::path& carpeta) {
  long cuenta = 0;
  for (const auto& entrada : fs::recursive_directory_iterator(carpeta))
    cuenta += entrada.path().filename().string().starts_with(".utilvel90.") ? 1 : 0;
  return cuenta;
}

TEST(Muertes, LeaveEveryFileWhole) {
  const char* const pedidas = std::getenv("UTILVEL90_MUERTES");
  const int muertes = pedidas == nullptr ? pruebas::Veces(300, 200) : std::atoi(pedidas);
  const pruebas::CarpetaTemporal c;
  c.Instala();
  fs::copy_file(DATOS_PRUEBA "/memoria/Empresas.xml", c.Motor() / "Empresas.xml");
  const Guardado guardado{c.Ruta().u16string()};
  const unsigned semilla = std::random_device()();
  SCOPED_TRACE("seed " + std::to_string(semilla));
  std::mt19937 azar(semilla);
  int aMedias = 0;
  for (int i = 0; i < muertes && !testing::Test::HasFailure(); ++i) {
    guardado.Guarda(0);
    EXPECT_EQ(Temporales(c.Ruta()), 0) << "what the killed ones left stays";
    // Every third time two of them stand in each other's way.
    std::vector<pruebas::Proceso> programas;
    for (int p = i % 3 == 0 ? 2 : 1; p > 0; --p) programas.push_back(kGuarda.Empieza({guardado.carpeta}));
    ASSERT_TRUE(pruebas::Aguarda([&] { return DameValor(guardado.Ini(), u"S", u"k") != Guardado::Texto(0); }))
        << "nobody saves";
    std::this_thread::sleep_for(std::chrono::microseconds(azar() % 17'000));
    for (pruebas::Proceso& programa : programas) programa.Mata();
    for (pruebas::Proceso& programa : programas) EXPECT_LT(programa.Espera(), 0) << "it ended by itself";
    ASSERT_NO_THROW(EXPECT_TRUE(guardado.Sirve())) << "after " << i << " kills";
    if (Temporales(c.Ruta()) > 0) ++aMedias;
  }
  EXPECT_GT(aMedias, pruebas::Veces(muertes / 100, -1)) << "too few were killed amid a save";
  std::cout << muertes << " kills, " << aMedias << " amid a save\n";
}

}  // namespace
}  // namespace vel

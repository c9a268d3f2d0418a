// The registry's file cannot be written.
#include <gtest/gtest.h>

#include "Uutilext/config/Rutas.h"
#include "facil/facil.h"
#include "tests/CarpetaTemporal.h"
#include "tests/Mensaje.h"

namespace vel::facil {
namespace {

TEST(Instalacion, NamesTheVariableOfTheRegistry) {
  const pruebas::CarpetaTemporal c;
  c.Escribe("registro.reg/x", "");
  const std::string mensaje = pruebas::MensajeDe([&] { Instala(c.Archivo("C")); });
  EXPECT_NE(mensaje.find("UTILVEL_REGISTRO"), std::string::npos) << mensaje;
  std::filesystem::remove_all(c.Ruta("registro.reg"));
  Instala(c.Archivo("C"));
  EXPECT_EQ(DameDirectorioArchComun(), c.Archivo("C") + u"\\");
}

}  // namespace
}  // namespace vel::facil

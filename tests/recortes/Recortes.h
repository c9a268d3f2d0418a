#pragma once

#include <gtest/gtest.h>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "UtilVel90.h"
#include "tests/CarpetaTemporal.h"

using namespace vel;
using namespace vel::facil;

/// A machine of the test's own: drive C holds the examples' inputs in "Datos" and a seal in "Sellos".
class Recortes : public testing::Test {
 protected:
  Recortes() { carpeta_.Pon("TZ", "America/Mexico_City"); }
  void SetUp() override {
    const auto unidad = pruebas::UnidadC(carpeta_.Ruta());
    if (!unidad.has_value()) GTEST_SKIP() << "drive C is this machine's own";
    for (const char* previa : {"Datos", "Sellos", "Comunes", "Tavex"})
      std::filesystem::remove_all(*unidad / previa);
    std::filesystem::create_directories(*unidad);
    std::filesystem::copy(EJEMPLOS, *unidad / "Datos");
    std::filesystem::copy(DATOS_PRUEBA "/crypto", *unidad / "Sellos",
                          std::filesystem::copy_options::recursive);
  }

 private:
  pruebas::CarpetaTemporal carpeta_;
};

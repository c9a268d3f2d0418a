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
  Recortes() {
    const std::filesystem::path unidad = carpeta_.Ruta() / "unidades/drive_c";
    std::filesystem::create_directories(unidad);
    std::filesystem::copy(EJEMPLOS, unidad / "Datos");
    std::filesystem::copy(DATOS_PRUEBA "/crypto", unidad / "Sellos",
                          std::filesystem::copy_options::recursive);
    carpeta_.Pon("TZ", "America/Mexico_City");
  }

 private:
  pruebas::CarpetaTemporal carpeta_;
};

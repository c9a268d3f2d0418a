#pragma once

#include <filesystem>
#include <gtest/gtest.h>

#include "tests/CarpetaTemporal.h"

namespace pruebas {

constexpr const char* kCatalogo = "C/Sistemas Tavex/VEL9.00/Empresas.xml";
constexpr const char* kRespaldo = "C/Sistemas Tavex/VEL9.00/Empresas.bak";
constexpr const char* kCopia = "C/Sistemas Tavex/VEL9.00/Empresas copia.bak";

/// A machine with the catalog of tests/data.
class ConCatalogo : public testing::Test {
 protected:
  void SetUp() override {
    c_.Instala();
    std::filesystem::copy(DATOS_PRUEBA "/catalogo/Empresas.xml", c_.Motor());
  }
  CarpetaTemporal c_;
};

}  // namespace pruebas

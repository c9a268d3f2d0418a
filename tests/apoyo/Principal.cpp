// A test program does its tests, or the task that another copy of it was started for.
#include <gtest/gtest.h>

#include "tests/apoyo/Tarea.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (const auto codigo = pruebas::HazTarea(pruebas::ArgumentosPropios(argc, argv))) return *codigo;
  return RUN_ALL_TESTS();
}

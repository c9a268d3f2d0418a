#include <iostream>

#include "UtilVel90.h"

int main() {
  // A cent that shortcuts in arithmetic could lose: the nearest double to 1.005 lies below it.
  std::cout << vel::UTF8Encode(vel::facil::FormateaMonto(vel::g_redoTo(1.005, 2))) << '\n';
}

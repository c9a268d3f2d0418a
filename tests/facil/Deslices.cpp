// Slips that do not compile, one at a time: deslices.cmake compiles this file for each DESLIZ and looks for
// the words beside it among the compiler's.

#include "facil/Consulta.h"

void Prueba(vel::facil::Consulta& c, const int* puntero, std::chrono::system_clock::time_point universal) {
#if DESLIZ == 0
  c.donde("A").igual("E").alguna([&](auto& g) { g.donde("B").igual(*puntero).donde("B").esNulo(); });
  static_cast<void>(universal);
#elif DESLIZ == 1  // a character is no value
  c.donde("A").igual('E');
#elif DESLIZ == 2  // a pointer is no value
  c.donde("A").igual(puntero);
#elif DESLIZ == 3  // a universal time needs its zone
  c.donde("A").mayor(universal);
#elif DESLIZ == 4  // expects 2 arguments, 1 provided|expected 2, have 1
  c.donde("A").entre(1);
#elif DESLIZ == 5  // lacks its comparison
  c.donde("A");
#elif DESLIZ == 6  // filled by a function that takes it
  c.alguna([&] { c.donde("A").igual(1); });
#elif DESLIZ == 7  // take a list
  c.donde("A").en("B");
#elif DESLIZ == 8  // take a text
  c.donde("A").contiene(5);
#endif
}

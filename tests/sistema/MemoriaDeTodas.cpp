// Every exported function with each of its allocations failed once: it raises, or answers right all the same,
// keeps no memory, and works when there is memory again. What an operation leaves of its objects is
// tests/internal/Memoria.cpp's, what it leaves of its files is Fallas.cpp's.

#include <gtest/gtest.h>
#include <iostream>
#include <new>

#include "tests/data/fin/llamadas.inc"
#include "tests/internal/Asignador.h"
#include "tests/sistema/Llamadas.h"

namespace vel {
namespace {

using pruebas::asignador;

enum class Acaba { Bien, Mal, Lanza };

Acaba Llama(const Llamada& llamada) {
  try {
    return llamada.llama() ? Acaba::Bien : Acaba::Mal;
  } catch (const Exception&) {
    return Acaba::Lanza;
  } catch (const std::bad_alloc&) {
    return Acaba::Lanza;
  }
}

TEST(SinMemoria, NoFunctionLiesOrKeepsMemory) {
  pruebas::sistema.disco = false;
  carpeta.emplace().Instala();
  long puntos = 0;
  for (const Llamada& llamada : kLlamadas) {
    SCOPED_TRACE(llamada.nombre);
    // The calls before it may have left another catalog.
    ASSERT_FALSE(CopiaArchivo(UTF8ToString(EMPRESAS), DameRutaArchEmpresas(), true).Hubo());
    // What is made once and kept is made in the first calls.
    ASSERT_EQ(Llama(llamada), Acaba::Bien);
    ASSERT_EQ(Llama(llamada), Acaba::Bien);
    for (long n = 1;; ++n) {
      const long vivas = asignador.vivas;
      asignador.fallo = false;
      asignador.restan = n;
      const Acaba acaba = Llama(llamada);
      asignador.restan = 0;
      EXPECT_EQ(asignador.vivas, vivas) << "allocation " << n;
      EXPECT_NE(acaba, Acaba::Mal) << "allocation " << n;
      if (!asignador.fallo || HasFailure()) break;
      ++puntos;
    }
    EXPECT_EQ(Llama(llamada), Acaba::Bien) << "with memory again";
  }
  std::cout << std::size(kLlamadas) << " functions, " << puntos << " failed allocations\n";
  carpeta.reset();
}

}  // namespace
}  // namespace vel

// utilvel redondea: rounds an amount as the suite's documents do.

#include <memory>
#include <string>

#include "Uutilext/documents/Redondeo.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "tools/utilvel/Argumentos.h"
#include "tools/utilvel/Comandos.h"
#include "tools/utilvel/Entrada.h"
#include "tools/utilvel/Errores.h"
#include "tools/utilvel/Programa.h"
#include "tools/utilvel/Sistema.h"
#include "tools/utilvel/Textos.h"

namespace utilvel {
namespace {

// The suite's rounding means something else with more.
constexpr std::int32_t kMaxDecimales = 7;

struct Opciones {
  std::string valor;
  std::string decimales;
};

Codigo Corre(const Opciones& o) {
  const std::int32_t decimales = Entero(o.decimales, "DECIMALES");
  if (decimales > kMaxDecimales) {
    throw Falla(Codigo::Uso, "Se redondea a " + std::to_string(kMaxDecimales) +
                                 " decimales cuando más, no a " + o.decimales);
  }
  Escritor salida("");
  const Codigo codigo = PorRenglon(o.valor, [&salida, decimales](const vel::UnicodeString& valor) {
    double cantidad = 0;
    if (!vel::TryStrToFloat(valor, cantidad)) throw vel::EConvertError(u"No es un número: " + valor);
    salida.Escribe(vel::UTF8Encode(vel::FloatToStr(vel::Redondea(cantidad, decimales))) + "\n");
  });
  salida.Termina();
  return codigo;
}

}  // namespace

void AgregaRedondea(Programa& programa) {
  const auto o = std::make_shared<Opciones>();
  CLI::App& comando = programa.Agrega(
      {.nombre = "redondea",
       .resumen = "Redondea una cantidad como lo hacen los documentos",
       .detalle = "Las mitades se alejan del cero, aunque la computadora guarde el número un poco "
                  "abajo: 2.675 a dos decimales da 2.68.",
       .ejemplos = {{"utilvel redondea 2.675 2", "Da 2.68."}}},
      [o] { return Corre(*o); });
  AgregaArgumento(comando, "VALOR", o->valor, "Cantidad por redondear; con - se lee una por renglón").Exige();
  AgregaArgumento(comando, "DECIMALES", o->decimales,
                  "Decimales que quedan, hasta 7; con negativos, decenas, centenas...")
      .Exige();
}

}  // namespace utilvel

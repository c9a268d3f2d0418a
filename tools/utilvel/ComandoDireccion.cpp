// utilvel direccion: splits addresses of one line.

#include <memory>
#include <string>

#include "Uutilext/text/Direcciones.h"
#include "Uutilext/text/Limpieza.h"
#include "tools/utilvel/Argumentos.h"
#include "tools/utilvel/Comandos.h"
#include "tools/utilvel/Entrada.h"
#include "tools/utilvel/Filas.h"
#include "tools/utilvel/Programa.h"

namespace utilvel {
namespace {

struct Opciones {
  std::string direccion;
  OpcionesFilas filas;
};

Codigo Corre(const Opciones& o) {
  Filas filas(o.filas, {{"calle"}, {"exterior"}, {"interior"}, {"cruce_1"}, {"cruce_2"}});
  const Codigo codigo = PorRenglon(o.direccion, [&filas](const vel::UnicodeString& direccion) {
    vel::UnicodeString calle, exterior, interior, cruce1, cruce2;
    vel::DividirDireccion(vel::DejaSoloUnEspacioEntrePalabras(direccion), calle, exterior, interior, cruce1,
                          cruce2);
    filas.Agrega({vel::UTF8Encode(calle), vel::UTF8Encode(exterior), vel::UTF8Encode(interior),
                  vel::UTF8Encode(cruce1), vel::UTF8Encode(cruce2)});
  });
  filas.Termina();
  return codigo;
}

}  // namespace

void AgregaDireccion(Programa& programa) {
  const auto o = std::make_shared<Opciones>();
  CLI::App& comando = programa.Agrega(
      {.nombre = "direccion",
       .resumen = "Separa una dirección en calle, números y cruces",
       .ejemplos = {{"utilvel direccion \"AV. JUAREZ NUMERO 120 INT. 4 ENTRE HIDALGO Y MORELOS\"",
                     "Una dirección."},
                    {"utilvel direccion - --csv < direcciones.txt", "Una por renglón, a CSV."}}},
      [o] { return Corre(*o); });
  AgregaArgumento(comando, "DIRECCION", o->direccion, "Dirección; con - se lee una por renglón").Exige();
  AgregaOpcionesFilas(comando, o->filas);
}

}  // namespace utilvel

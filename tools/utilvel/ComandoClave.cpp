// utilvel clave: how catalogs store a key, and its series and number.

#include <memory>
#include <string>

#include "Uutilext/text/Claves.h"
#include "Uutilext/text/Mascaras.h"
#include "tools/utilvel/Argumentos.h"
#include "tools/utilvel/Comandos.h"
#include "tools/utilvel/Entrada.h"
#include "tools/utilvel/Filas.h"
#include "tools/utilvel/Programa.h"
#include "tools/utilvel/Textos.h"

namespace utilvel {
namespace {

struct Opciones {
  std::string clave;
  std::string ancho = "10";
  OpcionesFilas filas;
};

Codigo Corre(const Opciones& o) {
  const int ancho = Entero(o.ancho, "--ancho");
  Filas filas(
      o.filas,
      {{"guardada"}, {"serie"}, {"numero", TipoColumna::Entero}, {"sirve_en_archivos", TipoColumna::Logico}});
  const Codigo codigo = PorRenglon(o.clave, [&filas, ancho](const vel::UnicodeString& clave) {
    filas.Agrega({vel::UTF8Encode(vel::FormateaValorCve(clave, ancho)),
                  vel::UTF8Encode(vel::DameParteAlfanumerica(clave)),
                  std::to_string(vel::DameParteNumerica(clave)), vel::EsSerieValida(clave) ? "sí" : "no"});
  });
  filas.Termina();
  return codigo;
}

}  // namespace

void AgregaClave(Programa& programa) {
  const auto o = std::make_shared<Opciones>();
  CLI::App& comando =
      programa.Agrega({.nombre = "clave",
                       .resumen = "Cómo se guarda una clave de catálogo, y su serie y su número",
                       .detalle = "Las claves de puros dígitos se guardan alineadas a la derecha en su "
                                  "ancho; las demás, sin blancos "
                                  "alrededor. El número es -1 si no cabe.",
                       .ejemplos = {{"utilvel clave FAC00123", "Su serie es FAC y su número 123."},
                                    {"utilvel clave - --csv < claves.txt", "Una por renglón, a CSV."}}},
                      [o] { return Corre(*o); });
  AgregaArgumento(comando, "CLAVE", o->clave, "Clave; con - se lee una por renglón").Exige();
  AgregaArgumento(comando, "--ancho", o->ancho, "Ancho de las claves del catálogo; si no se dice, 10")
      .Toma("CARACTERES");
  AgregaOpcionesFilas(comando, o->filas);
}

}  // namespace utilvel

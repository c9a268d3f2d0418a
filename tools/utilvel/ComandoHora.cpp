// utilvel hora: the time of this computer in other zones.

#include <memory>
#include <string>
#include <vector>

#include "Uutilext/time/Reloj.h"
#include "facil/Zonas.h"
#include "framework/Excepciones.h"
#include "tools/utilvel/Argumentos.h"
#include "tools/utilvel/Comandos.h"
#include "tools/utilvel/Entrada.h"
#include "tools/utilvel/Errores.h"
#include "tools/utilvel/Filas.h"
#include "tools/utilvel/Programa.h"
#include "tools/utilvel/Textos.h"

namespace utilvel {
namespace {

struct Opciones {
  std::vector<std::string> zonas;
  std::string cuando;
  OpcionesFilas filas;
};

Codigo Corre(const Opciones& o) {
  vel::TDateTime momento = vel::AhoraLocal();
  if (!o.cuando.empty() && !vel::TryISOToDateTime(ATexto(o.cuando), momento)) {
    throw Falla(Codigo::Uso, "No es un momento de la forma \"AAAA-MM-DD hh:mm\": " + o.cuando);
  }
  const vel::facil::Zona aqui = vel::facil::Zona::DeEstaComputadora();
  Codigo codigo = Codigo::Bien;
  Filas filas(o.filas, {{"zona"}, {"fecha_y_hora"}});
  const auto agrega = [&](const vel::UnicodeString& zona) {
    const vel::TDateTime alla = vel::facil::CambiaZona(momento, aqui, zona);
    const std::string texto = vel::UTF8Encode(vel::DateTimeToStr(alla));
    // Nobody reads the milliseconds of a clock.
    filas.Agrega({vel::UTF8Encode(zona), texto.substr(0, texto.find('.'))});
  };
  for (const std::string& zona : o.zonas) {
    try {
      if (PorRenglon(zona, agrega) != Codigo::Bien) codigo = Codigo::Parcial;
    } catch (const vel::EInvalidOperation& error) {
      if (o.zonas.size() == 1) throw;
      Avisa(error.what());
      codigo = Codigo::Parcial;
    }
  }
  filas.Termina();
  return codigo;
}

}  // namespace

void AgregaHora(Programa& programa) {
  const auto o = std::make_shared<Opciones>();
  CLI::App& comando = programa.Agrega(
      {.nombre = "hora",
       .resumen = "La hora de este equipo en otras zonas",
       .detalle =
           "Las zonas van por su nombre de la base tz (America/Tijuana) o por el de Windows: \"Central "
           "Standard Time (Mexico)\" es la del centro, "
           "\"Pacific Standard Time (Mexico)\" la de Tijuana, \"Mountain Standard Time (Mexico)\" la de "
           "Mazatlán y \"Eastern Standard Time (Mexico)\" la de Cancún. El horario de verano es el que cada "
           "una tenía en la fecha.",
       .ejemplos = {{"utilvel hora America/Mexico_City America/Cancun",
                     "Qué hora es en el centro y en Cancún."},
                    {"utilvel hora \"Pacific Standard Time (Mexico)\" --cuando \"2024-07-15 12:00\"",
                     "Qué hora era en Tijuana cuando aquí eran las doce."}}},
      [o] { return Corre(*o); });
  AgregaArgumento(comando, "ZONA", o->zonas, "Nombre de la zona; con - se lee uno por renglón").Exige();
  AgregaArgumento(comando, "--cuando", o->cuando, "Fecha y hora de este equipo; sin ella, la de ahora")
      .Toma("MOMENTO");
  AgregaOpcionesFilas(comando, o->filas);
}

}  // namespace utilvel

// utilvel hora: the time of this computer in other zones.

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "Uutilext/time/Reloj.h"
#include "Uutilext/time/ZonasHorarias.h"
#include "tools/utilvel/Comandos.h"
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
    throw Falla(Codigo::Uso, "El momento se escribe \"AAAA-MM-DD hh:mm\", no " + o.cuando);
  }
  Codigo codigo = Codigo::Bien;
  Filas filas(o.filas, {{"zona"}, {"fecha_y_hora"}});
  for (const std::string& zona : o.zonas) {
    vel::TIME_ZONE_INFORMATION reglas{};
    if (!vel::GetInfoTimeZone(reglas, ATexto(zona))) {
      Avisa("No se conoce la zona " + zona);
      codigo = Codigo::Parcial;
      continue;
    }
    filas.Agrega(
        {zona, vel::UTF8Encode(vel::DateTimeToStr(vel::ConvertTimeToTimeZone(momento, ATexto(zona))))});
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
           "Las zonas van por su nombre de Windows: \"Central Standard Time (Mexico)\" es la del centro, "
           "\"Pacific Standard Time (Mexico)\" la de Tijuana, \"Mountain Standard Time (Mexico)\" la de "
           "Mazatlán y \"Eastern Standard Time (Mexico)\" la de Cancún. El horario de verano es el que cada "
           "una tenía en la fecha.",
       .ejemplos = {{"utilvel hora \"Pacific Standard Time (Mexico)\" --cuando \"2024-07-15 12:00\"",
                     "Qué hora era en Tijuana cuando aquí eran las doce."}}},
      [o] { return Corre(*o); });
  comando.add_option("ZONA", o->zonas, "Nombre de la zona")->required();
  comando.add_option("--cuando", o->cuando, "Fecha y hora de este equipo; sin ella, la de ahora")
      ->type_name("MOMENTO");
  AgregaOpcionesFilas(comando, o->filas);
}

}  // namespace utilvel

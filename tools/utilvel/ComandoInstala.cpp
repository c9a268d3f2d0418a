// utilvel instala: sets a machine up for the suite's programs.

#include <memory>
#include <string>

#include "facil/Instalacion.h"
#include "tools/utilvel/Argumentos.h"
#include "tools/utilvel/Comandos.h"
#include "tools/utilvel/Filas.h"
#include "tools/utilvel/Programa.h"
#include "tools/utilvel/Textos.h"

namespace utilvel {
namespace {

struct Opciones {
  std::string comun;
  bool cambia = false;
  OpcionesFilas filas;
};

std::string Clase(vel::facil::ENUM_OBRA clase) {
  switch (clase) {
    case vel::facil::ENUM_OBRA::CARPETA:
      return "carpeta";
    case vel::facil::ENUM_OBRA::REGISTRO:
      return "registro";
    case vel::facil::ENUM_OBRA::AJUSTE:
      return "ajuste";
    case vel::facil::ENUM_OBRA::CATALOGO:
      return "catálogo";
  }
  return "";
}

Codigo Corre(const Opciones& o) {
  const vel::facil::InformeInstalacion informe =
      vel::facil::Instala(ATexto(o.comun), o.cambia ? vel::facil::ENUM_OTRA_COMUN::SE_CAMBIA
                                                    : vel::facil::ENUM_OTRA_COMUN::SE_RECHAZA);
  Filas filas(o.filas, {{"que"}, {"nombre"}, {"nueva", TipoColumna::Logico}});
  for (const vel::facil::ObraInstalacion& obra : informe.obras) {
    filas.Agrega({Clase(obra.clase), vel::UTF8Encode(obra.nombre), obra.nueva ? "sí" : "no"});
  }
  filas.Termina();
  return Codigo::Bien;
}

}  // namespace

void AgregaInstala(Programa& programa) {
  const auto o = std::make_shared<Opciones>();
  CLI::App& comando = programa.Agrega(
      {.nombre = "instala",
       .resumen = "Prepara este equipo: registro, carpetas, ajustes y catálogo vacío",
       .detalle =
           "Dice qué hizo y qué ya estaba. Lo que está no se toca: otra vez no cambia nada, y después de una "
           "falla sigue donde se quedó.",
       .ejemplos = {{"utilvel instala --comun \"$PWD/tavex\"",
                     "La carpeta común queda en la carpeta actual."}}},
      [o] { return Corre(*o); });
  AgregaArgumento(comando, "--comun", o->comun, "Carpeta común, con su ruta completa")
      .Toma("CARPETA")
      .Exige();
  AgregaBandera(comando, "--cambia", o->cambia, "Cambia la carpeta común si el registro ya nombra otra");
  AgregaOpcionesFilas(comando, o->filas);
}

}  // namespace utilvel

// utilvel fechas: the named date ranges of a file, for today or for a date given.

#include <memory>
#include <string>

#include "Fechas/Fechas.h"
#include "Uutilext/time/Reloj.h"
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
  std::string archivo;
  std::string hoy;
  OpcionesFilas filas;
};

vel::TDateTime Referencia(const std::string& hoy) {
  vel::TDateTime fecha = vel::AhoraLocal();
  if (!hoy.empty() && !vel::TryISOToDateTime(ATexto(hoy), fecha)) {
    throw Falla(Codigo::Uso, "No es una fecha de la forma AAAA-MM-DD: " + hoy);
  }
  return fecha;
}

Codigo Corre(const Opciones& o) {
  const ArchivoParaLeer archivo(o.archivo);
  const vel::TConfigVEL rangos(archivo.Ruta(), Referencia(o.hoy));
  Codigo codigo = Codigo::Bien;
  Filas filas(o.filas, {{"nombre"}, {"inicio"}, {"fin"}});
  for (int i = 0; i < rangos.NumeroFormatos(); ++i) {
    const std::string lugar = "Fch" + std::to_string(i);
    if (rangos.Nombres(i).empty()) {
      Avisa("El rango " + lugar + " falta o no tiene nombre y fecha separados por comas");
      codigo = Codigo::Parcial;
      continue;
    }
    for (const int cual : {1, 2}) {
      if (rangos.FechaComoDateTime(i, cual) != vel::TDateTime()) continue;
      Avisa("El rango " + lugar +
            " da una fecha que no existe: " + vel::UTF8Encode(rangos.FechaComoString(i, cual)));
      codigo = Codigo::Parcial;
    }
    filas.Agrega({vel::UTF8Encode(rangos.Nombres(i)), vel::UTF8Encode(rangos.FechaComoString(i, 1)),
                  vel::UTF8Encode(rangos.FechaComoString(i, 2))});
  }
  filas.Termina();
  return codigo;
}

}  // namespace

void AgregaFechas(Programa& programa) {
  const auto o = std::make_shared<Opciones>();
  CLI::App& comando =
      programa.Agrega({.nombre = "fechas",
                       .resumen = "Rangos de fechas de un archivo, calculados para hoy o para otro día",
                       .ejemplos = {{"utilvel fechas fechas.ini --hoy 2024-05-15",
                                     "Los rangos como los veía quien abrió el programa ese día."}}},
                      [o] { return Corre(*o); });
  AgregaArgumento(comando, "RANGOS", o->archivo, "Archivo INI con la sección FECHAS").Exige();
  AgregaArgumento(comando, "--hoy", o->hoy, "Día de referencia; sin ella, el de hoy").Toma("AAAA-MM-DD");
  AgregaOpcionesFilas(comando, o->filas);
}

}  // namespace utilvel

// utilvel rutas: where the installation keeps what.

#include <filesystem>
#include <memory>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "Uutilext/config/Configuracion.h"
#include "Uutilext/config/Rutas.h"
#include "platform/Rutas.h"
#include "tools/utilvel/Argumentos.h"
#include "tools/utilvel/Comandos.h"
#include "tools/utilvel/Entrada.h"
#include "tools/utilvel/Filas.h"
#include "tools/utilvel/Programa.h"
#include "tools/utilvel/Textos.h"

namespace utilvel {
namespace {

struct Opciones {
  std::string empresa;
  OpcionesFilas filas;
};

using Rutas = std::vector<std::pair<const char*, vel::UnicodeString>>;

Rutas DeLaInstalacion() {
  return {{"carpeta común", vel::DameDirectorioArchComun()},
          {"motor", vel::DameRutaVELNG()},
          {"datos", vel::DameRutaDatos()},
          {"catálogo de empresas", vel::DameRutaArchEmpresas()},
          {"plantillas de correo", vel::DameRutaPlantillasCorreo()},
          {"ajustes del usuario", vel::DameArchivoConfig()},
          {"biblioteca", vel::DameRutaDll()}};
}

// Only folders that asking for does not create.
Rutas DeLaEmpresa(int numero) {
  constexpr vel::ENUM_RUTA kDatos{7};
  return {{"datos de la empresa", vel::DameRutaDatosEmpresa(numero, kDatos)},
          {"datos locales", vel::DameDirDatosLocal(numero)},
          {"respaldos", vel::DameRutaRespaldosEmpresa(numero)},
          {"certificados", vel::DameRutaCertificados(numero)},
          {"addendas", vel::DameRutaAddendas(numero)},
          {"espacios de nombres", vel::DameRutaNamespaces(numero)}};
}

Codigo Corre(const Opciones& o) {
  Rutas rutas = DeLaInstalacion();
  if (!o.empresa.empty()) {
    for (auto& ruta : DeLaEmpresa(Entero(o.empresa, "--empresa"))) rutas.push_back(std::move(ruta));
  }
  Filas filas(o.filas, {{"que"}, {"ruta"}, {"en_este_equipo"}, {"existe", TipoColumna::Logico}});
  for (const auto& [que, ruta] : rutas) {
    const std::string nativa = vel::UTF8Encode(vel::RutaNativa(ruta));
    std::error_code error;
    filas.Agrega({que, vel::UTF8Encode(ruta), nativa, std::filesystem::exists(nativa, error) ? "sí" : "no"});
  }
  filas.Termina();
  return Codigo::Bien;
}

}  // namespace

void AgregaRutas(Programa& programa) {
  const auto o = std::make_shared<Opciones>();
  CLI::App& comando = programa.Agrega(
      {.nombre = "rutas",
       .resumen = "Carpetas y archivos de la instalación, y si existen",
       .detalle =
           "Cada ruta como la escribe la administradora y como la conoce este equipo. De lo que nombra "
           "solo crea, si falta, la carpeta de los ajustes del usuario.",
       .ejemplos = {{"utilvel rutas", "Las de la instalación."},
                    {"utilvel rutas --empresa 7 --json", "También las de la empresa 7, en JSON."}}},
      [o] { return Corre(*o); });
  AgregaArgumento(comando, "--empresa", o->empresa, "Número de una empresa, cuyas carpetas se agregan")
      .Toma("NUMERO");
  AgregaOpcionesFilas(comando, o->filas);
}

}  // namespace utilvel

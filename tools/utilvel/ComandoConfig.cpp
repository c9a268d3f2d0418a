// utilvel config: reads and changes settings files.

#include <memory>
#include <string>

#include "Uutilext/config/Configuracion.h"
#include "framework/Excepciones.h"
#include "framework/TextoIni.h"
#include "platform/TextoArchivo.h"
#include "tools/utilvel/Argumentos.h"
#include "tools/utilvel/Comandos.h"
#include "tools/utilvel/Entrada.h"
#include "tools/utilvel/Errores.h"
#include "tools/utilvel/Filas.h"
#include "tools/utilvel/Programa.h"
#include "tools/utilvel/Sistema.h"
#include "tools/utilvel/Textos.h"

namespace utilvel {
namespace {

struct Opciones {
  std::string archivo;
  std::string seccion;
  std::string clave;
  std::string valor;
  OpcionesFilas filas;
};

vel::TextoIni Carga(const std::string& archivo) {
  return vel::TextoIni(vel::DecodificaArchivo(LeeTodo(archivo)).texto);
}

Codigo Lee(const Opciones& o) {
  const vel::TextoIni ini = Carga(o.archivo);
  const auto valor = ini.Valor(ATexto(o.seccion), ATexto(o.clave));
  if (!valor.has_value()) {
    Avisa("No está la clave " + o.clave + " en la sección " + o.seccion + " de " + o.archivo);
    return Codigo::Negativo;
  }
  Escritor salida("");
  salida.Escribe(vel::UTF8Encode(vel::QuitaComillas(*valor)) + "\n");
  salida.Termina();
  return Codigo::Bien;
}

// The library changes a file in place, which standard input does not have.
vel::UnicodeString PorCambiar(const std::string& archivo) {
  if (archivo == "-") throw Falla(Codigo::Uso, "Los ajustes que se cambian están en un archivo, no en \"-\"");
  return ATexto(archivo);
}

Codigo Escribe(const Opciones& o) {
  std::string valor = o.valor;
  if (valor == "-") {
    valor = LeeTodo("-");
    valor.erase(valor.find_last_not_of("\r\n") + 1);
  }
  if (o.seccion.empty() || o.clave.empty())
    throw Falla(Codigo::Uso, "Falta el nombre de la sección o de la clave");
  const vel::UnicodeString archivo = PorCambiar(o.archivo);
  try {
    vel::EscribeValor(archivo, ATexto(o.seccion), ATexto(o.clave), ATexto(valor));
  } catch (const vel::EInvalidOperation&) {
    // A name or a value that no file of settings holds.
    throw;
  } catch (const vel::Exception&) {
    throw Falla(Codigo::Archivo,
                "No se puede escribir " + o.archivo + ": compruebe que su carpeta exista y dé permiso");
  }
  return Codigo::Bien;
}

Codigo Borra(const Opciones& o) {
  const vel::UnicodeString archivo = PorCambiar(o.archivo);
  if (Carga(o.archivo).Seccion(ATexto(o.seccion)).empty()) {
    Avisa("No hay claves en la sección " + o.seccion + " de " + o.archivo);
    return Codigo::Negativo;
  }
  vel::BorraSeccion(archivo, ATexto(o.seccion));
  return Codigo::Bien;
}

Codigo Lista(const Opciones& o) {
  const vel::TextoIni ini = Carga(o.archivo);
  Filas filas(o.filas, {{"seccion"}, {"clave"}, {"valor"}});
  for (const vel::UnicodeString& seccion : ini.Secciones()) {
    if (!o.seccion.empty() && !vel::SameText(seccion, ATexto(o.seccion))) continue;
    for (const auto& [clave, valor] : ini.Seccion(seccion)) {
      filas.Agrega({vel::UTF8Encode(seccion), vel::UTF8Encode(clave), vel::UTF8Encode(valor)});
    }
  }
  filas.Termina();
  return filas.Cuenta() == 0 && !o.seccion.empty() ? Codigo::Negativo : Codigo::Bien;
}

}  // namespace

void AgregaConfig(Programa& programa) {
  CLI::App& config = programa.Agrega(
      {.nombre = "config",
       .resumen = "Lee y cambia archivos de ajustes (INI)",
       .detalle =
           "Secciones y claves se buscan sin distinguir mayúsculas. Un cambio deja lo demás del archivo "
           "como estaba, con su orden, sus comentarios y su codificación, y no se pierde lo que otro "
           "programa cambie al mismo tiempo."},
      nullptr);
  ExigeOrden(config);
  const auto archivo = [](CLI::App& comando, Opciones& o) {
    AgregaArgumento(comando, "ARCHIVO", o.archivo, "Archivo de ajustes").Exige();
  };
  const auto seccion = [](CLI::App& comando, Opciones& o) {
    return AgregaArgumento(comando, "SECCION", o.seccion, "Sección, sin corchetes");
  };
  const auto clave = [](CLI::App& comando, Opciones& o) {
    AgregaArgumento(comando, "CLAVE", o.clave, "Clave, lo que está antes del =").Exige();
  };

  const auto o = std::make_shared<Opciones>();
  CLI::App& lee = programa.Agrega(config,
                                  {.nombre = "lee",
                                   .resumen = "Imprime un valor, sin las comillas que lo rodean",
                                   .ejemplos = {{"utilvel config lee fechas.ini FECHAS Fch2",
                                                 "El tercer rango de fechas, como está escrito."}}},
                                  [o] { return Lee(*o); });
  archivo(lee, *o);
  seccion(lee, *o).Exige();
  clave(lee, *o);

  CLI::App& escribe = programa.Agrega(
      config,
      {.nombre = "escribe",
       .resumen = "Pone un valor; lo que falte, archivo, sección o clave, se crea",
       .ejemplos = {{"utilvel config escribe ajustes.ini Ventas Almacen 3", "Almacén de las ventas."}}},
      [o] { return Escribe(*o); });
  archivo(escribe, *o);
  seccion(escribe, *o).Exige();
  clave(escribe, *o);
  AgregaArgumento(escribe, "VALOR", o->valor, "Valor; con - se lee de la entrada estándar").Exige();

  CLI::App& borra = programa.Agrega(
      config,
      {.nombre = "borra",
       .resumen = "Borra una sección con todas sus claves",
       .ejemplos =
           {{"utilvel config escribe ajustes.ini Ventas Almacen 3 && utilvel config borra ajustes.ini Ventas",
             "La sección se va; lo demás queda."}}},
      [o] { return Borra(*o); });
  archivo(borra, *o);
  seccion(borra, *o).Exige();

  CLI::App& lista = programa.Agrega(
      config,
      {.nombre = "lista",
       .resumen = "Imprime las claves de una sección o de todas",
       .ejemplos = {{"utilvel config lista fechas.ini FECHAS --csv", "Los rangos como están escritos."}}},
      [o] { return Lista(*o); });
  archivo(lista, *o);
  seccion(lista, *o);
  AgregaOpcionesFilas(lista, o->filas);
}

}  // namespace utilvel

// utilvel empresas: the company catalog.

#include <memory>
#include <string>
#include <string_view>

#include "Uutilext/config/Empresas.h"
#include "facil/Catalogo.h"
#include "framework/TClientDataSet.h"
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
  std::string catalogo;
  std::string numero;
  std::string nombre;
  std::string datos;
  std::string driver = "DEVARTINTERBASE";
  std::string trabajo;
  std::string version;
  OpcionesFilas filas;
};

std::unique_ptr<vel::TClientDataSet> Catalogo(const std::string& archivo) {
  std::unique_ptr<vel::TClientDataSet> empresas;
  if (archivo.empty()) {
    vel::AbreArchivoEmpresa(empresas, {});
  } else {
    empresas = std::make_unique<vel::TClientDataSet>();
    empresas->LoadFromXML(LeeTodo(archivo), ATexto(archivo));
  }
  return empresas;
}

Codigo Lista(const Opciones& o) {
  const std::unique_ptr<vel::TClientDataSet> empresas = Catalogo(o.catalogo);
  Filas filas(
      o.filas,
      {{"numero", TipoColumna::Entero}, {"nombre"}, {"datos"}, {"controlador"}, {"trabajo"}, {"version"}});
  for (empresas->First(); !empresas->Eof(); empresas->Next()) {
    const auto texto = [&empresas](std::u16string_view campo) {
      return vel::UTF8Encode(empresas->FieldByName(campo).AsString());
    };
    filas.Agrega({std::to_string(empresas->FieldByName(u"NumEmp").AsInteger()), texto(u"Nombre_Empresa"),
                  texto(u"RutaDatos"), texto(u"Driver"), texto(u"RutaTrabajo"), texto(u"VersionBD")});
  }
  filas.Termina();
  return Codigo::Bien;
}

// Before the order they are understood, and nobody who names another catalog wants this one changed.
void ExigeSinOpcionesDeLista(const Opciones& o) {
  if (o.catalogo.empty() && o.filas.archivo.empty() && o.filas.DameFormato() == Formato::Tabla) return;
  throw Falla(
      Codigo::Uso,
      "Las opciones de la lista no van con agrega ni renombra, que cambian el catálogo de la instalación");
}

Codigo Agrega(const Opciones& o) {
  ExigeSinOpcionesDeLista(o);
  vel::facil::AgregaEmpresa({.numero = Entero(o.numero, "NUMERO"),
                             .nombre = ATexto(o.nombre),
                             .rutaDatos = ATexto(o.datos),
                             .driver = ATexto(o.driver),
                             .rutaTrabajo = ATexto(o.trabajo),
                             .versionBD = ATexto(o.version)});
  return Codigo::Bien;
}

Codigo Renombra(const Opciones& o) {
  ExigeSinOpcionesDeLista(o);
  vel::facil::RenombraEmpresa(Entero(o.numero, "NUMERO"), ATexto(o.nombre));
  return Codigo::Bien;
}

void OpcionesLista(CLI::App& comando, Opciones& o) {
  AgregaArgumento(comando, "--catalogo", o.catalogo, "Otro catálogo que el de la instalación")
      .Toma("ARCHIVO");
  AgregaOpcionesFilas(comando, o.filas);
}

}  // namespace

void AgregaEmpresas(Programa& programa) {
  const auto o = std::make_shared<Opciones>();
  CLI::App& empresas = programa.Agrega(
      {.nombre = "empresas",
       .resumen = "Lista y cambia el catálogo de empresas; sin orden lo lista",
       .detalle = "Antes de cada cambio el catálogo se copia a su respaldo, que está junto a él.",
       .ejemplos = {{"utilvel empresas --catalogo Empresas.xml", "Las empresas de un catálogo copiado."}}},
      [o] { return Lista(*o); });
  OpcionesLista(empresas, *o);

  CLI::App& lista = programa.Agrega(empresas,
                                    {.nombre = "lista",
                                     .resumen = "Imprime las empresas",
                                     .ejemplos = {{"utilvel empresas lista --catalogo Empresas.xml --json",
                                                   "Un objeto JSON por empresa."}}},
                                    [o] { return Lista(*o); });
  OpcionesLista(lista, *o);

  CLI::App& agrega = programa.Agrega(
      empresas,
      {.nombre = "agrega",
       .resumen = "Agrega una empresa al catálogo de la instalación",
       .ejemplos = {{"utilvel empresas agrega 7 \"Comercial Peña\" --datos 'C:\\Datos\\Empresa07'",
                     "La empresa 7, con su carpeta de datos."}}},
      [o] { return Agrega(*o); });
  AgregaArgumento(agrega, "NUMERO", o->numero, "Número, que no esté en el catálogo").Exige();
  AgregaArgumento(agrega, "NOMBRE", o->nombre, "Nombre de la empresa").Exige();
  AgregaArgumento(agrega, "--datos", o->datos, "Carpeta de los datos").Toma("CARPETA");
  AgregaArgumento(agrega, "--controlador,--driver", o->driver,
                  "Controlador de la base de datos; si no se dice, DEVARTINTERBASE")
      .Toma("NOMBRE");
  AgregaArgumento(agrega, "--trabajo", o->trabajo, "Carpeta de trabajo").Toma("CARPETA");
  AgregaArgumento(agrega, "--version-bd", o->version, "Versión de la base de datos").Toma("VERSION");

  CLI::App& renombra = programa.Agrega(empresas,
                                       {.nombre = "renombra",
                                        .resumen = "Cambia el nombre de una empresa",
                                        .ejemplos = {{"utilvel empresas renombra 7 \"Comercial Peña Núñez\"",
                                                      "La empresa 7 se llama así desde ahora."}}},
                                       [o] { return Renombra(*o); });
  AgregaArgumento(renombra, "NUMERO", o->numero, "Número de la empresa").Exige();
  AgregaArgumento(renombra, "NOMBRE", o->nombre, "Nombre nuevo").Exige();
}

}  // namespace utilvel

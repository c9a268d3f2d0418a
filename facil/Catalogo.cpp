#include "facil/Catalogo.h"

#include <memory>
#include <set>
#include <utility>

#include "Uutilext/config/Empresas.h"
#include "Uutilext/config/Rutas.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "framework/TClientDataSet.h"
#include "platform/Archivos.h"

namespace vel::facil {
namespace {

constexpr std::u16string_view kNumero = u"NumEmp";
constexpr std::u16string_view kNombre = u"Nombre_Empresa";

struct CampoTexto {
  std::u16string_view nombre;
  UnicodeString Empresa::*valor;
  /// Characters; paths take what a path may have.
  int largo;
};

constexpr CampoTexto kTextos[] = {
    {kNombre, &Empresa::nombre, 200},         {u"RutaDatos", &Empresa::rutaDatos, 260},
    {u"Driver", &Empresa::driver, 200},       {u"RutaTrabajo", &Empresa::rutaTrabajo, 260},
    {u"VersionBD", &Empresa::versionBD, 200}, {u"DatosBD", &Empresa::datosBD, 260},
};

/// The catalog's file and those that stand beside it.
struct Archivos {
  UnicodeString catalogo = DameRutaArchEmpresas();
  UnicodeString Otro(std::u16string_view terminacion) const {
    constexpr std::u16string_view kXml = u".xml";
    return catalogo.substr(0, catalogo.size() - kXml.size()).append(terminacion);
  }
  UnicodeString Respaldo() const { return Otro(u".bak"); }
};

std::vector<Empresa> Lee(std::u16string_view ruta) {
  std::unique_ptr<TClientDataSet> datos;
  AbreArchivoEmpresa(datos, ruta);
  std::vector<Empresa> empresas;
  for (datos->First(); !datos->Eof(); datos->Next()) {
    Empresa& empresa = empresas.emplace_back();
    empresa.numero = datos->FieldByName(kNumero).AsInteger();
    for (const CampoTexto& campo : kTextos)
      empresa.*campo.valor = datos->FieldByName(campo.nombre).AsString();
  }
  return empresas;
}

std::string CatalogoVacio() {
  std::vector<TFieldDef> campos{{.Name = UnicodeString(kNumero), .DataType = TFieldType::ftInteger}};
  for (const CampoTexto& campo : kTextos) {
    campos.push_back(
        {.Name = UnicodeString(campo.nombre), .DataType = TFieldType::ftWideString, .Size = campo.largo});
  }
  TClientDataSet datos;
  datos.CreateDataSet(std::move(campos));
  return datos.SaveToXML();
}

void ExigeNombre(std::u16string_view nombre) {
  if (TrimView(nombre).empty()) throw EInvalidOperation(u"La empresa debe tener un nombre.");
}

EstadoCatalogo Revisa(std::u16string_view ruta) {
  EstadoCatalogo estado;
  estado.existe = ExisteArchivo(ruta);
  if (!estado.existe) return estado;
  try {
    std::unique_ptr<TClientDataSet> datos;
    AbreArchivoEmpresa(datos, ruta);
    // Of an empty catalog no field is read.
    datos->FieldByName(kNumero);
    for (const CampoTexto& campo : kTextos) datos->FieldByName(campo.nombre);
    const std::vector<Empresa> empresas = Lee(ruta);
    estado.empresas = empresas.size();
    std::set<int> numeros;
    for (const Empresa& empresa : empresas) {
      if (!numeros.insert(empresa.numero).second) {
        estado.problema = u"La empresa " + IntToStr(empresa.numero) + u" está más de una vez.";
      }
    }
  } catch (const Exception& e) {
    estado.problema = e.Message();
  }
  return estado;
}

}  // namespace

bool CreaCatalogo() {
  const Archivos archivos;
  if (ExisteArchivo(archivos.catalogo) || ExisteArchivo(archivos.Respaldo())) {
    const bool estaba = ExisteArchivo(archivos.catalogo);
    Lee(archivos.catalogo);
    return !estaba;
  }
  const UnicodeString carpeta = DameRutaVELNG();
  ExigeSinFalla(CreaCarpeta(carpeta), u"No se puede crear la carpeta", carpeta);
  const CandadoArchivo candado(archivos.catalogo);
  ExigeSinFalla(candado.Falla(), u"No se puede crear el archivo", archivos.catalogo);
  if (ExisteArchivo(archivos.catalogo)) return false;
  ExigeSinFalla(ReemplazaArchivo(archivos.catalogo, CatalogoVacio()), u"No se puede crear el archivo",
                archivos.catalogo);
  return true;
}

std::vector<Empresa> ListaEmpresas(const Texto& archivo) { return Lee(archivo); }

void AgregaEmpresa(const Empresa& empresa) {
  ExigeNombre(empresa.nombre);
  if (empresa.numero < 0) throw EInvalidOperation(u"El número de una empresa no puede ser negativo.");
  CambiaCatalogoEmpresas([&](TClientDataSet& datos) {
    if (datos.Locate(kNumero, Variant(empresa.numero))) {
      throw EInvalidOperation(u"El catálogo ya contiene la empresa " + IntToStr(empresa.numero) + u".");
    }
    datos.Append();
    datos.FieldByName(kNumero).SetAsInteger(empresa.numero);
    for (const CampoTexto& campo : kTextos) datos.FieldByName(campo.nombre).SetAsString(empresa.*campo.valor);
    datos.Post();
  });
}

void RenombraEmpresa(int numero, const Texto& nombre) {
  ExigeNombre(nombre);
  ActualizaXMLNombreEmpresa(numero, nombre);
}

RevisionCatalogo RevisaCatalogo() {
  const Archivos archivos;
  return {.catalogo = Revisa(archivos.catalogo), .respaldo = Revisa(archivos.Respaldo())};
}

void RestauraCatalogo() {
  const Archivos archivos;
  const UnicodeString respaldo = archivos.Respaldo();
  // Its loader would restore the catalog by itself, so the backup is looked at before the lock is taken.
  const EstadoCatalogo estado = Revisa(respaldo);
  if (!estado.existe) throw EInvalidOperation(u"No hay respaldo del catálogo de empresas.");
  if (!estado.Sirve()) {
    throw EInvalidOperation(u"El respaldo del catálogo de empresas no sirve: " + estado.problema);
  }
  const CandadoArchivo candado(archivos.catalogo);
  constexpr std::u16string_view kNoSePuede = u"No se puede escribir en el archivo";
  ExigeSinFalla(candado.Falla(), kNoSePuede, archivos.catalogo);
  const auto copia = [&](const UnicodeString& origen, const UnicodeString& destino) {
    ExigeSinFalla(CopiaArchivo(origen, destino, true), kNoSePuede, destino);
  };
  // Only a catalog that is not there needs no copy: one that cannot be read now is not lost for it.
  const UnicodeString anterior = archivos.Otro(u" anterior.xml");
  const FallaArchivo falla = CopiaArchivo(archivos.catalogo, anterior, true);
  if (falla.clase != ClaseFalla::NoExiste) ExigeSinFalla(falla, kNoSePuede, anterior);
  copia(respaldo, archivos.Otro(u" copia.bak"));
  copia(respaldo, archivos.catalogo);
}

}  // namespace vel::facil

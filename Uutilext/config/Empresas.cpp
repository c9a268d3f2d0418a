#include "Uutilext/config/Empresas.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "Uutilext/config/Rutas.h"
#include "Uutilext/diagnostics/Traza.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "platform/Archivos.h"

namespace vel {
namespace {

// How long a catalog that would not load is given before the second attempt: another program of the suite
// may be writing it.
constexpr std::chrono::milliseconds kEsperaEscritor{35};

UnicodeString RutaCatalogo(std::u16string_view ruta) {
  return ruta.empty() ? DameRutaArchEmpresas() : UnicodeString(ruta);
}

// The catalog's path with another ending in the place of ".xml".
UnicodeString ConTerminacion(std::u16string_view catalogo, std::u16string_view terminacion) {
  constexpr std::u16string_view kXml = u".xml";
  if (catalogo.size() >= kXml.size() && SameText(catalogo.substr(catalogo.size() - kXml.size()), kXml)) {
    catalogo.remove_suffix(kXml.size());
  }
  return UnicodeString(catalogo).append(terminacion);
}

UnicodeString RutaRespaldo(std::u16string_view catalogo) { return ConTerminacion(catalogo, u".bak"); }

// Loads once; returns the bytes that were loaded.
std::string Carga(TClientDataSet& empresas, std::u16string_view ruta) {
  std::string bytes;
  ExigeSinFalla(LeeArchivo(ruta, bytes), u"No se puede leer el archivo", ruta);
  empresas.LoadFromXML(bytes, ruta);
  return bytes;
}

// Puts the backup in the place of a catalog that is missing, keeping a copy of it first. Nothing is put in
// the place of a catalog that another program made meanwhile.
void Restaura(std::u16string_view ruta) {
  const UnicodeString respaldo = RutaRespaldo(ruta);
  if (ExisteArchivo(ruta) || !ExisteArchivo(respaldo)) return;
  // A copy that cannot be kept must not keep the catalog away.
  CopiaArchivo(respaldo, ConTerminacion(ruta, u" copia.bak"), true);
  CopiaArchivo(respaldo, ruta, false);
}

enum class Candado : std::uint8_t { Falta, Puesto };

std::string CargaConRecuperacion(TClientDataSet& empresas, std::u16string_view ruta, Candado candado) {
  try {
    return Carga(empresas, ruta);
  } catch (const Exception&) {
    if (ExisteArchivo(ruta)) {
      std::this_thread::sleep_for(kEsperaEscritor);
    } else if (candado == Candado::Puesto) {
      Restaura(ruta);
    } else if (ExisteArchivo(RutaRespaldo(ruta))) {
      const CandadoArchivo propio(ruta);
      if (!propio.Falla().Hubo()) Restaura(ruta);
    }
  }
  return Carga(empresas, ruta);
}

constexpr std::u16string_view kNoSePuedeEscribir = u"No se puede escribir en el archivo";

// The catalog with the company's record current; null when there is none.
std::unique_ptr<TClientDataSet> BuscaEmpresa(int numEmp) {
  std::unique_ptr<TClientDataSet> empresas;
  AbreArchivoEmpresa(empresas, {});
  return empresas->Locate(u"NumEmp", Variant(numEmp)) ? std::move(empresas) : nullptr;
}

UnicodeString CampoDeEmpresa(int numEmp, std::u16string_view campo) {
  const std::unique_ptr<TClientDataSet> empresas = BuscaEmpresa(numEmp);
  return empresas == nullptr ? UnicodeString() : empresas->FieldByName(campo).AsString();
}

}  // namespace

void AbreArchivoEmpresa(std::unique_ptr<TClientDataSet>& empresas, std::u16string_view ruta) {
  if (empresas != nullptr) {
    CargaConRecuperacion(*empresas, RutaCatalogo(ruta), Candado::Falta);
    return;
  }
  auto nuevo = std::make_unique<TClientDataSet>();
  CargaConRecuperacion(*nuevo, RutaCatalogo(ruta), Candado::Falta);
  empresas = std::move(nuevo);
}

void DameEmpresasVEL(TStringList& lista) {
  std::unique_ptr<TClientDataSet> empresas;
  AbreArchivoEmpresa(empresas, {});
  const TField& numero = empresas->FieldByName(u"NumEmp");
  const TField& nombre = empresas->FieldByName(u"Nombre_Empresa");
  std::vector<UnicodeString> lineas;
  for (empresas->First(); !empresas->Eof(); empresas->Next())
    lineas.push_back(numero.AsString() + u"=" + nombre.AsString());
  lista.SetStrings(std::move(lineas));
}

UnicodeString DameNombreEmpresa(int numEmp) { return CampoDeEmpresa(numEmp, u"Nombre_Empresa"); }

UnicodeString DameDriverBaseDatos(int numEmp) { return CampoDeEmpresa(numEmp, u"Driver"); }

UnicodeString DameAliasBaseDatos(int numEmp) {
  logInter(u"uUtil::DameAliasBaseDatos...INICIO");
  logInter(u"uUtil::DameAliasBaseDatos...ANumEmp : " + IntToStr(numEmp));
  logInter(u"uUtil::DameAliasBaseDatos...AbreArchivoEmpresa");
  const std::unique_ptr<TClientDataSet> empresas = BuscaEmpresa(numEmp);
  logInter(u"uUtil::DameAliasBaseDatos...AcdsEmpresas");
  UnicodeString rutaDatos =
      empresas == nullptr ? UnicodeString() : empresas->FieldByName(u"RutaDatos").AsString();
  logInter(u"uUtil::DameAliasBaseDatos...ARutaDatos : " + rutaDatos);
  logInter(u"uUtil::DameAliasBaseDatos...FIN");
  return rutaDatos;
}

UnicodeString DameRutaTrabajoEmpresa(std::u16string_view numEmp, UnicodeString& datosBD) {
  std::int32_t numero = 0;
  const std::unique_ptr<TClientDataSet> empresas =
      TryStrToInt(TrimView(numEmp), numero) ? BuscaEmpresa(numero) : nullptr;
  if (empresas == nullptr) {
    datosBD.clear();
    return {};
  }
  UnicodeString datos = empresas->FieldByName(u"DatosBD").AsString();
  UnicodeString ruta = empresas->FieldByName(u"RutaTrabajo").AsString();
  if (ruta.empty()) ruta = empresas->FieldByName(u"RutaDatos").AsString();
  datosBD = std::move(datos);
  return ruta;
}

void AgregaEmpresaXML(int numEmp, std::u16string_view rutaDatos, std::u16string_view driver,
                      std::u16string_view nombre, std::u16string_view rutaTrabajo,
                      std::u16string_view versionBD) {
  CambiaCatalogoEmpresas([&](TClientDataSet& empresas) {
    empresas.Append();
    empresas.FieldByName(u"NumEmp").SetAsInteger(numEmp);
    empresas.FieldByName(u"RutaDatos").SetAsString(rutaDatos);
    empresas.FieldByName(u"Driver").SetAsString(driver);
    empresas.FieldByName(u"Nombre_Empresa").SetAsString(nombre);
    empresas.FieldByName(u"RutaTrabajo").SetAsString(rutaTrabajo);
    empresas.FieldByName(u"VersionBD").SetAsString(versionBD);
    empresas.Post();
  });
}

void ActualizaXMLNombreEmpresa(int numEmp, std::u16string_view nombre) {
  CambiaCatalogoEmpresas([&](TClientDataSet& empresas) {
    if (!empresas.Locate(u"NumEmp", Variant(numEmp))) {
      throw EInvalidOperation(u"El catálogo no contiene la empresa " + IntToStr(numEmp) + u".");
    }
    empresas.Edit();
    empresas.FieldByName(u"Nombre_Empresa").SetAsString(nombre);
    empresas.Post();
  });
}

void CambiaCatalogoEmpresas(const std::function<void(TClientDataSet&)>& cambio) {
  const UnicodeString ruta = DameRutaArchEmpresas();
  const CandadoArchivo candado(ruta);
  ExigeSinFalla(candado.Falla(), kNoSePuedeEscribir, ruta);
  TClientDataSet empresas;
  const std::string anterior = CargaConRecuperacion(empresas, ruta, Candado::Puesto);
  cambio(empresas);
  // The backup gets the bytes that were just loaded, so it always holds a catalog that loads.
  const std::string nuevo = empresas.SaveToXML();
  const UnicodeString respaldo = RutaRespaldo(ruta);
  ExigeSinFalla(ReemplazaArchivo(respaldo, anterior, ruta), kNoSePuedeEscribir, respaldo);
  ExigeSinFalla(ReemplazaArchivo(ruta, nuevo), kNoSePuedeEscribir, ruta);
}

}  // namespace vel

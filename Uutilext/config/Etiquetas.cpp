#include "Uutilext/config/Etiquetas.h"

#include <string>
#include <utility>

#include "Uutilext/config/Rutas.h"
#include "framework/Excepciones.h"
#include "platform/Archivos.h"

namespace vel {

UnicodeString DameRutaEtiqVEL(int /*numEmp*/) { return DameRutaVELNG() + u"EtiqVEL.xml"; }

std::unique_ptr<TClientDataSet> DameCDSEtiqVEL(std::u16string_view ruta, int numEmp) {
  const UnicodeString archivo = ruta.empty() ? DameRutaEtiqVEL(numEmp) : UnicodeString(ruta);
  std::string bytes;
  const FallaArchivo falla = LeeArchivo(archivo, bytes);
  if (falla.clase == ClaseFalla::NoExiste || falla.clase == ClaseFalla::RutaNoExiste) return nullptr;
  ExigeSinFalla(falla, u"No se puede leer el archivo", archivo);
  auto catalogo = std::make_unique<TClientDataSet>();
  catalogo->LoadFromXML(bytes, archivo);
  return catalogo;
}

bool LeeXMLCamposTablasSistema(std::u16string_view etiqueta, TStringList& lista, bool ocultos) {
  const std::unique_ptr<TClientDataSet> catalogo = DameCDSEtiqVEL({}, 0);
  if (catalogo == nullptr || !catalogo->Locate(u"Etiqueta", Variant(etiqueta))) return false;
  TClientDataSet* const campos = catalogo->FieldByName(u"Campos").NestedDataSet();
  if (campos == nullptr)
    throw EDatabaseError(u"El campo 'Campos' del catálogo de etiquetas no es un conjunto de datos");
  const TField& campo = campos->FieldByName(u"Campo");
  const TField& titulo = campos->FieldByName(u"Titulo");
  const TField& disponible = campos->FieldByName(u"Disponible");
  const TField& visible = campos->FieldByName(u"Visible");
  const TField& calculado = campos->FieldByName(u"Calculado");
  TStringList nuevas;
  for (campos->First(); !campos->Eof(); campos->Next()) {
    const bool seOfrece = disponible.AsBoolean() && !calculado.AsBoolean();
    if (seOfrece && (ocultos || visible.AsBoolean())) nuevas.Add(campo.AsString() + u"=" + titulo.AsString());
  }
  lista.AddStrings(std::move(nuevas));
  return true;
}

}  // namespace vel

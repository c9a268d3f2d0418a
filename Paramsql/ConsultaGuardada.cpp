#include "Paramsql/ConsultaGuardada.h"

#include "Paramsql/Persistencia.h"
#include "Paramsql/Redactor.h"
#include "Uutilext/config/ArchivoIni.h"
#include "framework/Excepciones.h"
#include "platform/Archivos.h"

namespace vel {

namespace {

// With parameters: not every value has a literal.
UnicodeString Sentencia(const TParametrosFiltro& definicion) {
  UnicodeString texto;
  int numero = 0;
  Redactor(texto, true, numero).Sentencia(definicion);
  return texto;
}

}  // namespace

void GuardaConsulta(const TParametrosFiltro& definicion, std::u16string_view archivo) {
  if (definicion.NombreTabla.empty()) throw EInvalidOperation(u"La consulta no tiene tabla");
  const FallaArchivo falla = IntentaCambiarIni(archivo, [&](TextoIni& texto) {
    PonDefinicion(texto, definicion, 0, persistencia::Alcance::Entera);
    const auto leida = LeeDefinicion(texto, 0, persistencia::Alcance::Entera);
    if (Sentencia(*leida) != Sentencia(definicion)) {
      throw EInvalidOperation(
          u"La consulta sería otra al leerla del archivo: quite los espacios alrededor de sus nombres");
    }
  });
  ExigeSinFalla(falla, u"No se puede guardar la consulta en", archivo);
}

std::unique_ptr<TParametrosFiltro> LeeConsulta(std::u16string_view archivo) {
  auto definicion = LeeDefinicion(LeeIniEntero(archivo), 0, persistencia::Alcance::Entera);
  if (definicion->NombreTabla.empty()) {
    throw EInvalidOperation(
        UnicodeString(u"El archivo \"").append(archivo).append(u"\" no tiene una consulta"));
  }
  return definicion;
}

}  // namespace vel

#include "facil/Zonas.h"

#include <utility>

#include "Uutilext/time/ConversionZonas.h"
#include "framework/Excepciones.h"
#include "platform/ZonasHorarias.h"

namespace vel::facil {

namespace {

[[noreturn]] void LanzaFecha() { throw EConvertError(u"La fecha no es válida"); }

}  // namespace

Zona::Zona(std::shared_ptr<const ZonaHoraria> reglas) noexcept : reglas_(std::move(reglas)) {}

Zona::Zona(const Texto& nombre) : reglas_(BuscaZona(nombre)) {
  if (reglas_ == nullptr) {
    throw EInvalidOperation(u"Zona horaria desconocida: " + UnicodeString(nombre.Vista()));
  }
}

Zona Zona::DeEstaComputadora() { return Zona(DameZonaActiva()); }

TDateTime CambiaZona(Momento momento, const Zona& de, const Zona& a) {
  return DeUniversal(AUniversal(momento, de), a);
}

MomentoUniversal AUniversal(Momento momento, const Zona& zona) {
  MomentoUniversal universal;
  if (!LocalAUniversal(zona.Reglas(), momento, universal)) LanzaFecha();
  return universal;
}

TDateTime DeUniversal(MomentoUniversal momento, const Zona& zona) {
  TDateTime local;
  if (!UniversalALocal(zona.Reglas(), momento, local)) LanzaFecha();
  return local;
}

}  // namespace vel::facil

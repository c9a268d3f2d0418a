// Names of the database drivers.

#include <algorithm>
#include <iterator>

#include "Uutilext/config/Configuracion.h"
#include "Uutilext/config/Rutas.h"
#include "platform/Caracteres.h"

namespace vel {
namespace {

struct NombreDriver {
  TiposDeDriver tipo;
  std::u16string_view nombre;
};

constexpr NombreDriver kDrivers[] = {
    {TiposDeDriver::DEVARTSQLSERVER, u"DEVARTSQLSERVER"},
    {TiposDeDriver::DEVARTINTERBASE, u"DEVARTINTERBASE"},
    {TiposDeDriver::DEVARTSQLSERVERCOMPACT, u"DEVARTSQLSERVERCOMPACT"},
};

}  // namespace

TiposDeDriver DameTipoDriverEnum(std::u16string_view texto) {
  const auto* const it =
      std::find_if(std::begin(kDrivers), std::end(kDrivers),
                   [nombre = Mayusculas(texto)](const NombreDriver& d) { return d.nombre == nombre; });
  return it == std::end(kDrivers) ? TiposDeDriver::DEVARTINTERBASE : it->tipo;
}

UnicodeString DameTipoDriverStr(TiposDeDriver tipo) {
  const auto* const it = std::find_if(std::begin(kDrivers), std::end(kDrivers),
                                      [tipo](const NombreDriver& d) { return d.tipo == tipo; });
  return it == std::end(kDrivers) ? UnicodeString() : UnicodeString(it->nombre);
}

UnicodeString DameDriverDefault() {
  return DameValor(DameRutaVELNG() + u"Alias.ini", u"Estandar", u"DriverName");
}

}  // namespace vel

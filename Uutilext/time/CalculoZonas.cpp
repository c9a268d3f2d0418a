#include "Uutilext/time/CalculoZonas.h"

#include "platform/ReglasZona.h"

namespace vel {

std::int64_t LocalAUtc(const ZonaHoraria& zona, std::int64_t local) {
  // No offset of any zone reaches a day and two hours.
  constexpr std::int64_t kVentana = std::int64_t{26} * 3600;
  const DesfaseZona antes = DesfaseEnUtc(zona, local - kVentana);
  const DesfaseZona despues = DesfaseEnUtc(zona, local + kVentana);
  if (antes == despues && DesfaseEnUtc(zona, local - antes.segundos) == antes) return local - antes.segundos;
  // A change is near: of the offsets on its two sides, those under which the moment really occurs.
  const bool vale = DesfaseEnUtc(zona, local - antes.segundos).segundos == antes.segundos;
  const bool valeDespues = DesfaseEnUtc(zona, local - despues.segundos).segundos == despues.segundos;
  if (vale != valeDespues) return local - (vale ? antes : despues).segundos;
  // Twice or never: standard time. Where both sides are standard, the time after a repeated hour's change,
  // and before a skipped one's, which is what the clock on the wall shows.
  if (antes.verano != despues.verano) return local - (antes.verano ? despues : antes).segundos;
  return local - (vale ? despues : antes).segundos;
}

}  // namespace vel

#include "platform/ZonasHorarias.h"

namespace vel {

std::shared_ptr<const ZonaHoraria> DameZonaActiva() { return std::make_shared<const ZonaHoraria>(); }
std::shared_ptr<const ZonaHoraria> DameZonaWindows(std::u16string_view) { return nullptr; }
std::shared_ptr<const ZonaHoraria> DameZonaIana(std::u16string_view) { return nullptr; }

}  // namespace vel

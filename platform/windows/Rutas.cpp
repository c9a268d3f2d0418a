#include "platform/Rutas.h"

namespace vel {

UnicodeString RutaNativa(std::u16string_view ruta) { return UnicodeString(ruta); }

}  // namespace vel

#include "Uutilext/diagnostics/Traza.h"

namespace vel {

void logInter(std::u16string_view /*mensaje*/, bool /*bandera*/) noexcept {}

}  // namespace vel

#pragma once

#include <string_view>

#include "utilvel90_export.h"

namespace vel {

/// Checks a list of e-mail addresses separated by ";": each must hold exactly one "@", neither first nor
/// last. No other rule is applied. Raises EInvalidOperation at the first fault: "Debes capturar el correo
/// electrónico." for an empty list, "Correo inválido." otherwise. An address is tested with its ";", so one
/// that ends in "@;" passes, and every later occurrence of the tested text is dropped with it, as the end of
/// a longer address too, whose beginning then runs into the next one. Time grows with the length of the list.
///
///     ValidarCorreo(u"a@x.mx;b@y.mx");   // passes
///     ValidarCorreo(u"a@@x.mx");         // "Correo inválido."
UTILVEL90_EXPORT void ValidarCorreo(std::u16string_view correos);

}  // namespace vel

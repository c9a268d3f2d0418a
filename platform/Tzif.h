#pragma once

#include <optional>
#include <string_view>

#include "platform/ZonasHorarias.h"

namespace vel {

/// A zone from the bytes of a file of the tz database (RFC 8536, version 2 and later); nothing when they are
/// no such file.
std::optional<ZonaHoraria> LeeTzif(std::string_view bytes);

/// Sets what holds after a zone's last change from the text that ends such a file or stands in TZ
/// ("CST6", "EST5EDT,M3.2.0,M11.1.0": POSIX.1-2017, section 8.3); false when it is no such text.
bool LeeReglaPosix(std::string_view texto, ZonaHoraria& zona);

}  // namespace vel

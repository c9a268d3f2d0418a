#pragma once

#include <chrono>
#include <optional>
#include <string_view>

namespace utilvel::cfdi {

/// The moment that a text begins with, yyyy-mm-ddThh:mm:ss; without a value for another form or a day that
/// the calendar lacks. The zone is the caller's to know.
std::optional<std::chrono::sys_seconds> LeeMomento(std::string_view texto);

}  // namespace utilvel::cfdi

#pragma once

#include <string_view>

#include "utilvel90_export.h"

namespace vel {

/// Trace point at a function's entry, steps and exit. Writes nothing in this library: the texts stay at the
/// call sites because they document the steps, and a build for diagnosis has one place to hook into.
/// `bandera` is ignored.
UTILVEL90_EXPORT void logInter(std::u16string_view mensaje, bool bandera = false) noexcept;

}  // namespace vel

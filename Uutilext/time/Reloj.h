#pragma once

#include "framework/TDateTime.h"
#include "utilvel90_export.h"

namespace vel {

/// The present local date and time of this computer, to the millisecond.
UTILVEL90_EXPORT TDateTime AhoraLocal();

}  // namespace vel

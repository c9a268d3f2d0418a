#pragma once

#include <cstdint>

#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// An exact amount as it is printed: a whole number of units of 10^-Decimales. {1050, 2} is 10.50.
/// Threads: const members may be called by all.
struct UTILVEL90_EXPORT TMontoFiscal {
  /// The amount in units of its last decimal.
  std::int64_t Unidades = 0;
  /// 0 to 18.
  int Decimales = 2;

  /// All its decimals, "." always: "10.50", "-0.05", "7".
  UnicodeString Texto() const;
  /// The nearest double.
  double Real() const;

  friend bool operator==(const TMontoFiscal&, const TMontoFiscal&) = default;
};

}  // namespace vel

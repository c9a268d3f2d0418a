#pragma once

#include <span>

#include "utilvel90_export.h"

namespace vel {

/// The only places where the suite rounds and compares amounts. Each has its own rule; the differences are
/// deliberate, and none is expressed through another.

/// Rounds half away from zero in two steps: at decimals + 1 and then at decimals, in 80-bit extended
/// precision, so that 2.675, which is stored a little lower, gives 2.68. Negative decimals round to tens,
/// hundreds and so on. With 7 decimals there is one step, with 8 the value comes back unchanged, and beyond
/// that it comes back divided by 10 for each further decimal: callers rely on it.
///
///     Redondea(1.005, 2) == 1.01    Redondea(1234.5, -1) == 1240 (1235 first, then 1240)
UTILVEL90_EXPORT double Redondea(double valor, int decimales) noexcept;

/// True when both differ by at most 0.000001; false when either is not a number.
///
///     Compara(1, 1.000001) == true    Compara(1, 1.0000011) == false
UTILVEL90_EXPORT bool Compara(double a, double b) noexcept;

/// Rounds to the nearest multiple of `incremento`, halves upward (-2.5 gives -2), after adding 1e-8 to the
/// quotient, so that one a hair below a half goes up too. An increment within 0.000001 of zero returns the
/// value unchanged.
///
///     Redondea8(12.3, 0.25) == 12.25    Redondea8(-2.5, 1) == -2    Redondea8(2.5, 1) == 3
UTILVEL90_EXPORT double Redondea8(double valor, double incremento) noexcept;

/// Rounds to five decimals (multiples of 0.00001), halves upward, and cleans the result at six. The name
/// promises four; callers rely on five.
///
///     Redondea4(1.000005) == 1.00001    Redondea4(1.0000049) == 1
UTILVEL90_EXPORT double Redondea4(double valor) noexcept;

/// Rounds half away from zero through the value's decimal text (FloatToStr, 15 significant digits): a value
/// whose text has no more than `decimales` decimals comes back unchanged, so 1.235 gives 1.24 at two decimals
/// whatever its binary value is. Zero or negative decimals return the value unchanged. A text in exponent
/// form is cut at its point, which loses the exponent; amounts are never that small or large. Raises
/// EConvertError when the value divided by 10^-decimales overflows.
///
///     g_redoTo(1.235, 2) == 1.24    g_redoTo(-1.235, 2) == -1.24    g_redoTo(1.5, 0) == 1.5
UTILVEL90_EXPORT double g_redoTo(double valor, int decimales);

/// g_redoTo of every value of a column, the same bits in less time: `salida[i]` is that of `valores[i]`. Both
/// are as long, else EInvalidOperation; they may be the same memory, but not overlap otherwise. Whatever is
/// raised leaves `salida` as it was.
UTILVEL90_EXPORT void g_redoTo(std::span<const double> valores, int decimales, std::span<double> salida);

}  // namespace vel

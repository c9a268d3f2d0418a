#pragma once

#include <span>
#include <string_view>

namespace vel::formula {

/// A built-in function of the formulas.
struct FuncionInterna {
  std::u16string_view nombre;
  /// Arguments that it needs; more are evaluated and then ignored.
  std::size_t argumentos;
  /// The function of finite arguments. NaN from one that works in 32 bits means that its value does not fit.
  double (*valor)(std::span<const double>);
  bool entero32 = false;
};

/// The function of that name in any case; null when there is none.
const FuncionInterna* BuscaInterna(std::u16string_view nombre) noexcept;

/// The function of its arguments; EInvalidOperation when some are missing or the value does not fit.
double Llama(const FuncionInterna& funcion, std::span<const double> argumentos);

/// The value plus 0.5, truncated toward zero; NaN beyond 32 bits.
double RedondeaMedio(double valor) noexcept;

[[noreturn]] void LanzaNoCabe(double valor);

}  // namespace vel::formula

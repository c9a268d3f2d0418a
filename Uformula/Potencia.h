#pragma once

namespace vel::formula {

/// `base` raised to `exponente`: the double nearest to the true power, the even one of two equally near.
double Potencia(double base, double exponente) noexcept;

}  // namespace vel::formula

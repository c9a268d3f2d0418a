#pragma once

#include <compare>
#include <concepts>
#include <cstdint>
#include <utility>

namespace vel::exacto {

/// A whole number of 128 bits in two's complement, of what all compilers have: those of 32-bit processors
/// know no such type. Wraps where a sum or product does not fit; a division is by a number other than zero.
class EnteroDeDosPartes {
 public:
  constexpr EnteroDeDosPartes() = default;
  template <std::integral T>
  constexpr EnteroDeDosPartes(T valor) noexcept  // NOLINT(google-explicit-constructor): as whole numbers do
      : bajo_(static_cast<std::uint64_t>(valor)), alto_(std::cmp_less(valor, 0) ? ~std::uint64_t{0} : 0) {}
  /// The lower bits.
  template <std::integral T>
  constexpr explicit operator T() const noexcept {
    return static_cast<T>(bajo_);
  }
  /// Rounded once while the number has no more than 64 bits.
  constexpr explicit operator double() const noexcept {
    const bool corto = alto_ == (bajo_ >> 63 != 0 ? ~std::uint64_t{0} : 0);
    return corto
               ? static_cast<double>(static_cast<std::int64_t>(bajo_))
               : static_cast<double>(static_cast<std::int64_t>(alto_)) * 0x1p64 + static_cast<double>(bajo_);
  }

  friend constexpr bool operator==(const EnteroDeDosPartes&, const EnteroDeDosPartes&) = default;
  friend constexpr std::strong_ordering operator<=>(EnteroDeDosPartes a, EnteroDeDosPartes b) noexcept {
    if (a.alto_ != b.alto_) return static_cast<std::int64_t>(a.alto_) <=> static_cast<std::int64_t>(b.alto_);
    return a.bajo_ <=> b.bajo_;
  }

  constexpr EnteroDeDosPartes operator-() const noexcept {
    return {~alto_ + (bajo_ == 0 ? 1 : 0), ~bajo_ + 1};
  }
  friend constexpr EnteroDeDosPartes operator+(EnteroDeDosPartes a, EnteroDeDosPartes b) noexcept {
    const std::uint64_t bajo = a.bajo_ + b.bajo_;
    return {a.alto_ + b.alto_ + (bajo < a.bajo_ ? 1 : 0), bajo};
  }
  friend constexpr EnteroDeDosPartes operator-(EnteroDeDosPartes a, EnteroDeDosPartes b) noexcept {
    return a + -b;
  }
  friend constexpr EnteroDeDosPartes operator*(EnteroDeDosPartes a, EnteroDeDosPartes b) noexcept {
    // By halves of the lower parts; what the upper ones add lies wholly in the upper part.
    const std::uint64_t cruce = Mitad(a.bajo_ >> 32, b.bajo_) + (Mitad(a.bajo_, b.bajo_) >> 32);
    const std::uint64_t otro = Mitad(a.bajo_, b.bajo_ >> 32) + (cruce & kMitad);
    return {Mitad(a.bajo_ >> 32, b.bajo_ >> 32) + (cruce >> 32) + (otro >> 32) + a.alto_ * b.bajo_ +
                a.bajo_ * b.alto_,
            a.bajo_ * b.bajo_};
  }
  /// Toward zero.
  friend constexpr EnteroDeDosPartes operator/(EnteroDeDosPartes a, EnteroDeDosPartes b) noexcept {
    const EnteroDeDosPartes cociente = Divide(a.Magnitud(), b.Magnitud()).first;
    return a.EsNegativo() != b.EsNegativo() ? -cociente : cociente;
  }
  /// Of the sign of the dividend.
  friend constexpr EnteroDeDosPartes operator%(EnteroDeDosPartes a, EnteroDeDosPartes b) noexcept {
    const EnteroDeDosPartes resto = Divide(a.Magnitud(), b.Magnitud()).second;
    return a.EsNegativo() ? -resto : resto;
  }
  /// By 0 to 127 bits, the sign kept.
  friend constexpr EnteroDeDosPartes operator>>(EnteroDeDosPartes a, int bits) noexcept {
    const auto alto = static_cast<std::int64_t>(a.alto_);
    if (bits == 0) return a;
    // Since C++20 the sign fills up.
    if (bits >= 64)
      // cppcheck-suppress shiftTooManyBitsSigned
      return {static_cast<std::uint64_t>(alto >> 63), static_cast<std::uint64_t>(alto >> (bits - 64))};
    // cppcheck-suppress shiftTooManyBitsSigned
    return {static_cast<std::uint64_t>(alto >> bits), a.bajo_ >> bits | a.alto_ << (64 - bits)};
  }

  /// By 0 to 127 bits; those that do not fit are lost.
  friend constexpr EnteroDeDosPartes operator<<(EnteroDeDosPartes a, int bits) noexcept {
    if (bits == 0) return a;
    if (bits >= 64) return {a.bajo_ << (bits - 64), 0};
    return {a.alto_ << bits | a.bajo_ >> (64 - bits), a.bajo_ << bits};
  }

  constexpr EnteroDeDosPartes& operator+=(EnteroDeDosPartes b) noexcept { return *this = *this + b; }
  constexpr EnteroDeDosPartes& operator-=(EnteroDeDosPartes b) noexcept { return *this = *this - b; }
  constexpr EnteroDeDosPartes& operator*=(EnteroDeDosPartes b) noexcept { return *this = *this * b; }
  constexpr EnteroDeDosPartes& operator/=(EnteroDeDosPartes b) noexcept { return *this = *this / b; }
  constexpr EnteroDeDosPartes& operator++() noexcept { return *this += 1; }

 private:
  static constexpr std::uint64_t kMitad = 0xFFFFFFFF;

  constexpr EnteroDeDosPartes(std::uint64_t alto, std::uint64_t bajo) noexcept : bajo_(bajo), alto_(alto) {}

  static constexpr std::uint64_t Mitad(std::uint64_t a, std::uint64_t b) noexcept {
    return (a & kMitad) * (b & kMitad);
  }
  constexpr bool EsNegativo() const noexcept { return alto_ >> 63 != 0; }
  constexpr EnteroDeDosPartes Magnitud() const noexcept { return EsNegativo() ? -*this : *this; }

  // Quotient and remainder of magnitudes, bit by bit when they are long.
  static constexpr std::pair<EnteroDeDosPartes, EnteroDeDosPartes> Divide(EnteroDeDosPartes a,
                                                                          EnteroDeDosPartes b) noexcept {
    if (a.alto_ == 0 && b.alto_ == 0) return {{0, a.bajo_ / b.bajo_}, {0, a.bajo_ % b.bajo_}};
    EnteroDeDosPartes cociente;
    EnteroDeDosPartes resto;
    for (int i = 127; i >= 0; --i) {
      const std::uint64_t bit = (i >= 64 ? a.alto_ >> (i - 64) : a.bajo_ >> i) & 1;
      resto = {resto.alto_ << 1 | resto.bajo_ >> 63, resto.bajo_ << 1 | bit};
      cociente = {cociente.alto_ << 1 | cociente.bajo_ >> 63, cociente.bajo_ << 1};
      if (resto.alto_ < b.alto_ || (resto.alto_ == b.alto_ && resto.bajo_ < b.bajo_)) continue;
      resto -= b;
      cociente.bajo_ |= 1;
    }
    return {cociente, resto};
  }

  std::uint64_t bajo_ = 0;
  std::uint64_t alto_ = 0;
};

#ifdef __SIZEOF_INT128__
__extension__ typedef __int128 Entero128;  // NOLINT(modernize-use-using): ISO C++ has no such type
#else
using Entero128 = EnteroDeDosPartes;
#endif

}  // namespace vel::exacto

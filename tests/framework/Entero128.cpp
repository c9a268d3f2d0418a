#include "framework/Entero128.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <random>

namespace vel::exacto {
namespace {

using Propio = EnteroDeDosPartes;

// Of all lengths, so that carries, borrows and long divisions occur.
Propio Alguno(std::mt19937_64& azar) {
  const Propio n = Propio{azar()} * Propio{azar()} * (azar() % 2 == 0 ? 1 : -1);
  return n >> static_cast<int>(azar() % 127);
}

TEST(Entero128, KeepsTheLawsOfWholeNumbers) {
  std::mt19937_64 azar(128);
  for (int i = 0; i < 100'000; ++i) {
    const Propio a = Alguno(azar);
    const Propio b = Alguno(azar);
    const Propio c = Alguno(azar);
    ASSERT_TRUE(a - b == -(b - a) && (a - b) + b == a && (a + b) * c == a * c + b * c) << i;
    ASSERT_TRUE((a < b) == (b > a) && (a >> 1) * 2 + static_cast<int>(static_cast<std::uint64_t>(a) & 1) == a)
        << i;
    if (b == 0) continue;
    const Propio resto = a % b;
    ASSERT_TRUE(a / b * b + resto == a && (resto < 0 ? -resto : resto) < (b < 0 ? -b : b)) << i;
    ASSERT_TRUE(resto == 0 || (resto < 0) == (a < 0)) << i;
  }
}

#ifdef __SIZEOF_INT128__
TEST(Entero128, CountsAsTheCompilersOwn) {
  std::mt19937_64 azar(129);
  const auto parte = [](auto n) {
    return std::pair(static_cast<std::uint64_t>(n), static_cast<std::uint64_t>(n >> 64));
  };
  for (int i = 0; i < 100'000; ++i) {
    const auto alto = static_cast<std::int64_t>(azar()) >> (azar() % 64);
    const std::int64_t otro = static_cast<std::int64_t>(azar()) >> (azar() % 64);
    const Propio a = Propio{alto} * otro;
    const Propio b = Propio{static_cast<std::int64_t>(azar()) >> (azar() % 64)};
    const Entero128 x = Entero128{alto} * otro;
    const Entero128 y = static_cast<std::int64_t>(b);
    ASSERT_EQ(parte(a), parte(x));
    ASSERT_EQ(parte(a - b), parte(x - y));
    ASSERT_EQ(a < b, x < y);
    ASSERT_EQ(parte(a << i % 128), parte(x << i % 128));
    if (y == 0) continue;
    ASSERT_EQ(parte(a / b), parte(x / y));
    ASSERT_EQ(parte(a % b), parte(x % y));
  }
}
#endif

}  // namespace
}  // namespace vel::exacto

#include "framework/Entero128.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <random>

namespace vel::exacto {
namespace {

using Propio = EnteroDeDosPartes;

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
    ASSERT_EQ(parte(a + b), parte(x + y));
    ASSERT_EQ(parte(-a), parte(-x));
    ASSERT_EQ(parte((a >> 2) * 3), parte((x >> 2) * 3));
    ASSERT_EQ(parte(a >> i % 127), parte(x >> i % 127));
    ASSERT_EQ(a == b, x == y);
    ASSERT_EQ(a < b, x < y);
    ASSERT_EQ(parte(a << i % 128), parte(x << i % 128));
    if (y == 0) continue;
    ASSERT_EQ(parte(a / b), parte(x / y));
    ASSERT_EQ(parte(a % b), parte(x % y));
    if (otro == 0) continue;
    // By more than 64 bits.
    ASSERT_EQ(parte(a / (b * otro)), parte(x / (y * otro)));
    ASSERT_EQ(parte(a % (b * otro)), parte(x % (y * otro)));
  }
}
#endif

}  // namespace
}  // namespace vel::exacto

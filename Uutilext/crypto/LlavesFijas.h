#pragma once

#include <array>

namespace vel {

/// The key material of Enc21. What one installation enciphers every other one must read, so these 32 bytes
/// never change.
struct LlavesFijas {
  using Llave = std::array<unsigned char, 8>;
  Llave primera;
  Llave segunda;
  Llave tercera;
  /// Starting value of the chain.
  Llave vector;
};

extern const LlavesFijas kLlavesFijas;

}  // namespace vel

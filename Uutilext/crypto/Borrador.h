#pragma once

#include <cstddef>

namespace vel {

/// Overwrites memory in a way that no compiler leaves out.
void Borra(void* memoria, std::size_t bytes) noexcept;

/// Wipes the elements of a secret (a text or an array) when it goes out of sight, however that happens.
template <class Secreto>
class Borrador {
 public:
  explicit Borrador(Secreto& secreto) noexcept : secreto_(secreto) {}
  ~Borrador() { Borra(secreto_.data(), secreto_.size() * sizeof(typename Secreto::value_type)); }
  Borrador(const Borrador&) = delete;
  Borrador& operator=(const Borrador&) = delete;

 private:
  Secreto& secreto_;
};

}  // namespace vel

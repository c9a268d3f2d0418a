#pragma once

namespace vel {

/// While one of these lives, what libcrypto adds to this thread's error queue is its own affair: it is
/// dropped at the end, and the entries that the caller had before stay, as far as the queue has room for
/// both.
class ColaErrores {
 public:
  ColaErrores() noexcept;
  ~ColaErrores();
  ColaErrores(const ColaErrores&) = delete;
  ColaErrores& operator=(const ColaErrores&) = delete;
};

}  // namespace vel

#pragma once

#include <functional>
#include <sys/wait.h>
#include <unistd.h>

namespace pruebas {

constexpr unsigned kNadie = 65534;

/// Does the work in a process of an ordinary user, whom permissions bind; whether it gave true.
inline bool ComoUsuario(const std::function<bool()>& trabajo) {
  const pid_t hijo = fork();
  if (hijo == 0) {
    if (geteuid() == 0 && (setgid(kNadie) != 0 || setuid(kNadie) != 0)) _exit(2);
    // What it throws must not lead back into the tests.
    _exit([&trabajo]() noexcept { return trabajo(); }() ? 0 : 1);
  }
  int estado = 0;
  waitpid(hijo, &estado, 0);
  return WIFEXITED(estado) && WEXITSTATUS(estado) == 0;
}

}  // namespace pruebas

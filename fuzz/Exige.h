#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "framework/Texto.h"

namespace fuzz {

/// Ends the program, as libFuzzer wants it of an input that breaks an invariant: the input is kept, and its
/// path printed after what is said here.
[[noreturn]] inline void Falla(std::string_view que, int linea, const char* archivo) {
  std::fprintf(stderr, "%s:%d: %.*s\n", archivo, linea, static_cast<int>(que.size()), que.data());
  std::abort();
}

inline void Exige(bool cierto, std::string_view que, int linea = __builtin_LINE(),
                  const char* archivo = __builtin_FILE()) {
  if (!cierto) Falla(que, linea, archivo);
}

inline std::string Muestra(const std::string& texto) { return "«" + texto + "»"; }
inline std::string Muestra(const vel::UnicodeString& texto) { return Muestra(vel::UTF8Encode(texto)); }
inline std::string Muestra(bool valor) { return valor ? "true" : "false"; }
inline std::string Muestra(double valor) {
  char texto[40];
  std::snprintf(texto, sizeof texto, "%.17g", valor);
  return texto;
}
inline std::string Muestra(long long valor) { return std::to_string(valor); }
inline std::string Muestra(int valor) { return std::to_string(valor); }
inline std::string Muestra(long valor) { return std::to_string(valor); }
inline std::string Muestra(unsigned long valor) { return std::to_string(valor); }

/// Exige that shows both sides.
template <typename T>
void ExigeIgual(const T& obtenido, const T& esperado, std::string_view que, int linea = __builtin_LINE(),
                const char* archivo = __builtin_FILE()) {
  if (obtenido == esperado) return;
  Falla(std::string(que) + "\n  obtained " + Muestra(obtenido) + "\n  expected " + Muestra(esperado), linea,
        archivo);
}

}  // namespace fuzz

#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <fuzzer/FuzzedDataProvider.h>
#include <initializer_list>
#include <string>
#include <string_view>

#include "framework/Texto.h"

namespace fuzz {

/// The bytes of an input, taken as values. Numbers and choices come from its end and texts from its front, so
/// that a file of the kind that a program reads is a seed as it stands.
class Entrada {
 public:
  Entrada(const std::uint8_t* datos, std::size_t largo) : datos_(datos, largo) {}

  template <typename T>
  T Entero(T minimo, T maximo) {
    return datos_.ConsumeIntegralInRange<T>(minimo, maximo);
  }
  bool Moneda() { return datos_.ConsumeBool(); }
  bool Queda() { return datos_.remaining_bytes() > 0; }

  template <typename T>
  T De(std::initializer_list<T> opciones) {
    return *(opciones.begin() + Entero<std::size_t>(0, opciones.size() - 1));
  }

  /// A double: any bits, an amount, or one of those that are easily forgotten.
  double Doble() {
    const int forma = Entero(0, 3);
    if (forma == 0) {
      const auto bits = datos_.ConsumeIntegral<std::uint64_t>();
      double valor = 0;
      std::memcpy(&valor, &bits, sizeof valor);
      return valor;
    }
    if (forma == 1) return De({0.0, -0.0, 0.1, 0.5, 1.005, 2.675, -2.5, 1e15, 999999999999999.4, 1e-5});
    return Importe();
  }
  /// A number of few digits: a whole one over a power of ten.
  double Importe() {
    static constexpr double kPotencias[] = {1, 10, 100, 1000, 1e4, 1e6};
    return static_cast<double>(Entero<std::int64_t>(-99'999'999, 9'999'999'999)) /
           kPotencias[Entero<std::size_t>(0, 5)];
  }

  /// Bytes from the front: to a "\" followed by another character ("\\" is one "\"), or at most so many.
  std::string Bytes(std::size_t maximo = 200) { return datos_.ConsumeRandomLengthString(maximo); }
  vel::UnicodeString Texto(std::size_t maximo = 200) { return ATexto(Bytes(maximo)); }
  /// Bytes from the end, for choices that are made after the rest has been taken.
  std::string Cola(std::size_t maximo) {
    std::string cola;
    while (cola.size() < maximo && Queda()) cola += datos_.ConsumeIntegral<char>();
    return cola;
  }
  std::string Resto() { return datos_.ConsumeRemainingBytesAsString(); }

  /// From UTF-8, where characters U+E000 to U+E7FF stand for halves of surrogate pairs, which it cannot say.
  static vel::UnicodeString ATexto(std::string_view bytes) {
    vel::UnicodeString texto = vel::UTF8ToString(bytes);
    for (char16_t& c : texto) {
      if (c >= 0xE000 && c < 0xE800) c = static_cast<char16_t>(c - 0x800);
    }
    return texto;
  }

 private:
  FuzzedDataProvider datos_;
};

}  // namespace fuzz

/// What libFuzzer calls for each input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo);

// g_redoTo against the same rule written on the C library's texts.

#include "Uutilext/documents/Redondeo.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <span>
#include <vector>

#include "benchmarks/Medicion.h"

namespace {

// "%.15g" writes exponents as "e-07" and "e+15": the digits are ours, the exponent form is not, so it is
// rewritten to "E-7" and "E15" for the counting of characters to be the same.
void Texto(double valor, char* texto) {
  std::snprintf(texto, 40, "%.15g", valor);
  char* const e = std::strchr(texto, 'e');
  if (e == nullptr) return;
  char exponente[8];
  std::snprintf(exponente, sizeof exponente, "E%d", std::atoi(e + 1));
  std::strcpy(e, exponente);
}

double PorTexto(double valor, int n) {
  if (n <= 0) return valor;
  char texto[40];
  Texto(valor, texto);
  const char* const punto = std::strchr(texto, '.');
  if (punto == nullptr || std::strlen(punto + 1) <= static_cast<std::size_t>(n)) return valor;
  char potencia[8];
  std::snprintf(potencia, sizeof potencia, "1e-%d", n);
  const double p = std::strtod(potencia, nullptr);
  Texto(valor < 0 ? valor / p - 0.5 : valor / p + 0.5, texto);
  if (char* const corte = std::strchr(texto, '.')) *corte = '\0';
  return std::strtod(texto, nullptr) * p;
}

// As PorTexto, the power given: the fair peer, since 10^-n need not be made each time.
double PorTextoConPotencia(double valor, int n, double p) {
  char texto[40];
  std::snprintf(texto, sizeof texto, "%.15g", valor);
  const char* const punto = std::strchr(texto, '.');
  if (punto == nullptr || std::strlen(punto + 1) <= static_cast<std::size_t>(n)) return valor;
  std::snprintf(texto, sizeof texto, "%.15g", valor < 0 ? valor / p - 0.5 : valor / p + 0.5);
  if (char* const corte = std::strchr(texto, '.')) *corte = '\0';
  return std::strtod(texto, nullptr) * p;
}

struct Generador {
  std::mt19937_64 azar{20240515};

  double Entero(std::uint64_t maximo) { return static_cast<double>(azar() % maximo); }

  // Money amounts for the most part, and halves, edges of the fifteenth digit, tiny and huge values.
  double Valor(int i) {
    double v = 0;
    switch (i % 8) {
      case 0:
        v = (Entero(10'000'000'000) + 0.5) / 1e6;
        break;
      case 1:
        v = std::nextafter((Entero(10'000'000'000) + 0.5) / 1e3, i % 16 == 1 ? 0 : 1e300);
        break;
      case 2:
        v = Entero(2'000'000'000'000'000) / std::pow(10, Entero(16));
        break;
      case 3:
        v = i % 64 == 3 ? std::ldexp(Entero(1ULL << 53), static_cast<int>(Entero(1600)) - 1000)
                        : Entero(1'000'000) / 7;
        break;
      default:
        v = Entero(100'000'000'000) / 1e6;
    }
    return azar() % 4 == 0 ? -v : v;
  }
};

}  // namespace

int main(int argc, char** argv) {
  Generador generador;
  constexpr int kVerificados = 10'000'000;
  for (int i = 0; i < kVerificados; ++i) {
    const double v = generador.Valor(i);
    const int n = 1 + i / 8 % 8;
    const bool iguales =
        std::bit_cast<std::uint64_t>(vel::g_redoTo(v, n)) == std::bit_cast<std::uint64_t>(PorTexto(v, n));
    if (!iguales) std::fprintf(stderr, "%.17g, %d: %.17g %.17g\n", v, n, vel::g_redoTo(v, n), PorTexto(v, n));
    medicion::Exige(iguales, "g_redoTo");
  }
  std::printf("g_redoTo: identical bits on %d values\n", kVerificados);
  std::vector<double> valores;
  for (int i = 0; i < 4096; ++i) valores.push_back(generador.Valor(i));
  double suma = 0;
  const auto corre = [&](auto redondea) {
    return [&valores, &suma, redondea] {
      for (std::size_t i = 0; i < valores.size(); ++i) suma += redondea(valores[i], i % 2 == 0 ? 6 : 2);
    };
  };
  const auto unidades = static_cast<double>(valores.size());
  // Amounts, and the whole mixture; half of each at six decimals and half at two, as above.
  std::vector<double> montos;
  for (std::size_t i = 0; i < valores.size(); ++i) montos.push_back(generador.Valor(4));
  std::vector<double> salida(valores.size());
  const auto columna = [&salida, &suma](const std::vector<double>& todos) {
    return [&] {
      const std::span<const double> desde(todos);
      const std::size_t mitad = desde.size() / 2;
      vel::g_redoTo(desde.first(mitad), 6, std::span(salida).first(mitad));
      vel::g_redoTo(desde.subspan(mitad), 2, std::span(salida).subspan(mitad));
      suma += salida.back();
    };
  };
  const auto unoPorUno = [&salida, &suma](const std::vector<double>& todos) {
    return [&] {
      const std::size_t mitad = todos.size() / 2;
      for (std::size_t i = 0; i < mitad; ++i) salida[i] = vel::g_redoTo(todos[i], 6);
      for (std::size_t i = mitad; i < todos.size(); ++i) salida[i] = vel::g_redoTo(todos[i], 2);
      suma += salida.back();
    };
  };
  for (const auto* todos : {&montos, &valores}) {
    columna (*todos)();
    const std::vector<double> porColumna = salida;
    unoPorUno (*todos)();
    medicion::Exige(std::memcmp(porColumna.data(), salida.data(), salida.size() * sizeof(double)) == 0,
                    "g_redoTo of a column");
  }
  const int codigo = medicion::Ejecuta(
      argc, argv,
      {{.nombre = "g_redoTo",
        .propio = corre([](double v, int n) { return vel::g_redoTo(v, n); }),
        .par = corre([](double v, int n) { return PorTextoConPotencia(v, n, n == 6 ? 1e-6 : 1e-2); }),
        .limite = 1.0 / 12,
        .nombrePar = "snprintf/strtod",
        .unidades = unidades},
       {.nombre = "g_redoTo, column of amounts",
        .propio = columna(montos),
        .par = unoPorUno(montos),
        .limite = 0.25,
        .nombrePar = "single calls",
        .unidades = unidades},
       {.nombre = "g_redoTo, column of all kinds",
        .propio = columna(valores),
        .par = unoPorUno(valores),
        .limite = 0.25,
        .nombrePar = "single calls",
        .unidades = unidades}});
  std::printf("(sum %g)\n", suma);
  return codigo;
}

#pragma once

#include <functional>
#include <string>
#include <vector>

namespace medicion {

/// What a comparison promises: our time divided by the peer's is at most `limite` ("at least 12 times as
/// fast" is a limit of 1/12). A limit of 0 promises nothing and only reports.
struct Comparacion {
  std::string nombre;
  std::function<void()> propio;
  std::function<void()> par;
  double limite = 0;
  /// Name of the other side in the report.
  std::string nombrePar = "par";
  /// Units of work of one call, so that times are printed per unit.
  double unidades = 1;
};

/// Our own time at sizes 1x, 10x, 100x: each call of `prepara(n)` gives the work for size n; times are
/// printed per unit, with the ratio of the last to the first. `limite` as above (0 only reports).
struct Escala {
  std::string nombre;
  std::vector<std::size_t> tamanos;
  std::function<std::function<void()>(std::size_t)> prepara;
  double limite = 0;
};

/// Measures through Google Benchmark, all in this one process, and prints a line for each comparison (both
/// sides' medians, the median of their ratio, the limit) and each scale; with `--json` in the arguments a
/// JSON object a line. The sides of a comparison run by turns, so that a noisy machine does not decide.
/// Returns the exit code of the program: 0 also when a limit is missed (machines differ; the line says so).
/// Check that both sides give the same result before calling, with Exige.
int Ejecuta(int argc, char** argv, std::vector<Comparacion> comparaciones, std::vector<Escala> escalas = {});

/// Ends the program with an error when both sides do not agree.
void Exige(bool iguales, const std::string& que);

}  // namespace medicion

#include "benchmarks/Medicion.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <utility>

namespace medicion {
namespace {

// Keeps the median of each benchmark and prints nothing by itself.
class Medianas : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& corridas) override {
    for (const Run& r : corridas) {
      if (r.run_type == Run::RT_Aggregate && r.aggregate_name == "median") {
        nanos_[r.run_name.function_name] = r.GetAdjustedRealTime();
      }
    }
  }
  // False for one that a filter of the command line left out.
  bool Corrio(const std::string& nombre) const { return nanos_.count(nombre) != 0; }
  double Nanos(const std::string& nombre) const { return nanos_.at(nombre); }

 private:
  std::map<std::string, double> nanos_;
};

void Registra(const std::string& nombre, std::function<void()> trabajo) {
  benchmark::RegisterBenchmark(nombre.c_str(), [trabajo = std::move(trabajo)](benchmark::State& estado) {
    for (auto _ : estado) trabajo();
  });
}

std::string Veredicto(double razon, double limite) {
  if (limite <= 0) return {};
  char texto[64];
  std::snprintf(texto, sizeof texto, "  limit %.4g: %s", limite, razon <= limite ? "met" : "MISSED");
  return texto;
}

std::string Nombre(const Escala& e, std::size_t n) { return e.nombre + "/" + std::to_string(n); }

}  // namespace

int Ejecuta(int argc, char** argv, std::vector<Comparacion> comparaciones, std::vector<Escala> escalas) {
  for (const Comparacion& c : comparaciones) {
    Registra(c.nombre + "/propio", c.propio);
    Registra(c.nombre + "/par", c.par);
  }
  for (const Escala& e : escalas) {
    for (const std::size_t n : e.tamanos) Registra(Nombre(e, n), e.prepara(n));
  }
  std::string intercala = "--benchmark_enable_random_interleaving=true";
  std::string repite = "--benchmark_repetitions=9";
  std::string minimo = "--benchmark_min_time=0.05";
  std::vector<char*> argumentos{argv[0], intercala.data(), repite.data(), minimo.data()};
  argumentos.insert(argumentos.end(), argv + 1, argv + argc);
  int cuenta = static_cast<int>(argumentos.size());
  argumentos.push_back(nullptr);
  benchmark::Initialize(&cuenta, argumentos.data());
  if (benchmark::ReportUnrecognizedArguments(cuenta, argumentos.data())) return 1;
  Medianas medianas;
  benchmark::RunSpecifiedBenchmarks(&medianas);
  for (const Comparacion& c : comparaciones) {
    if (!medianas.Corrio(c.nombre + "/propio") || !medianas.Corrio(c.nombre + "/par")) continue;
    const double propio = medianas.Nanos(c.nombre + "/propio") / c.unidades;
    const double par = medianas.Nanos(c.nombre + "/par") / c.unidades;
    std::printf("%-44s %12.1f ns  %s %12.1f ns  ratio %.4f (%.1fx)%s\n", c.nombre.c_str(), propio,
                c.nombrePar.c_str(), par, propio / par, par / propio,
                Veredicto(propio / par, c.limite).c_str());
  }
  for (const Escala& e : escalas) {
    if (!medianas.Corrio(Nombre(e, e.tamanos.back()))) continue;
    std::printf("%-44s", e.nombre.c_str());
    double primero = 0;
    double ultimo = 0;
    for (const std::size_t n : e.tamanos) {
      if (!medianas.Corrio(Nombre(e, n))) continue;
      ultimo = medianas.Nanos(Nombre(e, n)) / static_cast<double>(n);
      if (primero == 0) primero = ultimo;
      std::printf("  %zu: %.1f ns/u", n, ultimo);
    }
    std::printf("  last/first %.3f%s\n", ultimo / primero, Veredicto(ultimo / primero, e.limite).c_str());
  }
  return 0;
}

void Exige(bool iguales, const std::string& que) {
  if (iguales) return;
  std::fprintf(stderr, "both sides differ: %s\n", que.c_str());
  std::exit(1);
}

}  // namespace medicion

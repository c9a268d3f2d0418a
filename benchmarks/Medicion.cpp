#include "benchmarks/Medicion.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace medicion {
namespace {

constexpr const char* kPropio = "propio";
constexpr const char* kPar = "par";
constexpr const char* kRazon = "razon";

// The medians of one benchmark over its repetitions.
struct Mediana {
  double nanos = 0;
  // Of a comparison: both sides and their ratio.
  std::map<std::string, double> cuentas;
};

// Keeps the medians of each benchmark and prints nothing by itself.
class Medianas : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& corridas) override {
    for (const Run& r : corridas) {
      if (r.run_type != Run::RT_Aggregate || r.aggregate_name != "median") continue;
      Mediana& mediana = medianas_[r.run_name.function_name];
      mediana.nanos = r.GetAdjustedRealTime();
      for (const auto& [nombre, cuenta] : r.counters) mediana.cuentas[nombre] = cuenta.value;
    }
  }
  // Null for one that a filter of the command line left out.
  const Mediana* De(const std::string& nombre) const {
    const auto lugar = medianas_.find(nombre);
    return lugar == medianas_.end() ? nullptr : &lugar->second;
  }

 private:
  std::map<std::string, Mediana> medianas_;
};

double Nanos(const std::function<void()>& trabajo, std::size_t veces) {
  const auto inicio = std::chrono::steady_clock::now();
  for (std::size_t i = 0; i < veces; ++i) trabajo();
  return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - inicio).count();
}

// As many calls as make the clock's own time small.
std::size_t Tanda(const std::function<void()>& trabajo) {
  constexpr double kMinimo = 200'000;
  std::size_t veces = 1;
  while (Nanos(trabajo, veces) < kMinimo) veces *= 2;
  return veces;
}

// Both sides by turns, in short batches: whatever else the machine does meets both alike, and the median over
// the repetitions is that of the ratio itself.
void RegistraPareja(const Comparacion& c) {
  benchmark::RegisterBenchmark(c.nombre.c_str(), [&c](benchmark::State& estado) {
    const std::size_t tandaPropia = Tanda(c.propio);
    const std::size_t tandaPar = Tanda(c.par);
    double propio = 0;
    double par = 0;
    for (auto _ : estado) {
      propio += Nanos(c.propio, tandaPropia) / static_cast<double>(tandaPropia);
      par += Nanos(c.par, tandaPar) / static_cast<double>(tandaPar);
    }
    const auto vueltas = static_cast<double>(estado.iterations());
    estado.counters[kPropio] = propio / vueltas;
    estado.counters[kPar] = par / vueltas;
    estado.counters[kRazon] = propio / par;
  });
}

void Registra(const std::string& nombre, std::function<void()> trabajo) {
  benchmark::RegisterBenchmark(nombre.c_str(), [trabajo = std::move(trabajo)](benchmark::State& estado) {
    for (auto _ : estado) trabajo();
  });
}

std::string Nombre(const Escala& e, std::size_t n) { return e.nombre + "/" + std::to_string(n); }

// A figure that a line reports: our time a unit, or what it is against.
struct Cifra {
  std::string nombre;
  double nanos = 0;
};

std::string Numero(const char* formato, double valor) {
  char texto[64];
  std::snprintf(texto, sizeof texto, formato, valor);
  return texto;
}

// One line of the report, for people or as a JSON object.
void Informa(bool json, const std::string& nombre, const std::vector<Cifra>& cifras, const char* queRazon,
             double razon, double limite) {
  if (json) {
    std::string texto = "{\"name\": \"" + nombre + "\", \"ns\": {";
    const char* separador = "";
    for (const Cifra& c : cifras) {
      texto.append(separador).append("\"").append(c.nombre).append("\": ").append(Numero("%.2f", c.nanos));
      separador = ", ";
    }
    texto.append("}, \"ratio\": ").append(Numero("%.4f", razon));
    if (limite > 0) texto.append(", \"limit\": ").append(Numero("%.4g", limite));
    std::printf("%s}\n", texto.c_str());
    return;
  }
  std::printf("%-44s", nombre.c_str());
  for (const Cifra& c : cifras) std::printf("  %s %.1f ns", c.nombre.c_str(), c.nanos);
  std::printf("  %s %.4f", queRazon, razon);
  if (limite > 0) std::printf("  limit %.4g: %s", limite, razon <= limite ? "met" : "MISSED");
  std::printf("\n");
}

// Takes our own option out of the command line.
bool QuitaJson(std::vector<char*>& argumentos) {
  const auto fin = std::remove_if(argumentos.begin(), argumentos.end(),
                                  [](const char* a) { return std::string_view(a) == "--json"; });
  const bool hubo = fin != argumentos.end();
  argumentos.erase(fin, argumentos.end());
  return hubo;
}

}  // namespace

int Ejecuta(int argc, char** argv, std::vector<Comparacion> comparaciones, std::vector<Escala> escalas) {
  for (const Comparacion& c : comparaciones) RegistraPareja(c);
  for (const Escala& e : escalas) {
    for (const std::size_t n : e.tamanos) Registra(Nombre(e, n), e.prepara(n));
  }
  std::string intercala = "--benchmark_enable_random_interleaving=true";
  std::string repite = "--benchmark_repetitions=9";
  std::string minimo = "--benchmark_min_time=0.05";
  std::vector<char*> argumentos{argv[0], intercala.data(), repite.data(), minimo.data()};
  argumentos.insert(argumentos.end(), argv + 1, argv + argc);
  const bool json = QuitaJson(argumentos);
  int cuenta = static_cast<int>(argumentos.size());
  argumentos.push_back(nullptr);
  benchmark::Initialize(&cuenta, argumentos.data());
  if (benchmark::ReportUnrecognizedArguments(cuenta, argumentos.data())) return 1;
  Medianas medianas;
  benchmark::RunSpecifiedBenchmarks(&medianas);
  for (const Comparacion& c : comparaciones) {
    const Mediana* const m = medianas.De(c.nombre);
    if (m == nullptr) continue;
    Informa(json, c.nombre,
            {{"ours", m->cuentas.at(kPropio) / c.unidades}, {c.nombrePar, m->cuentas.at(kPar) / c.unidades}},
            "ratio", m->cuentas.at(kRazon), c.limite);
  }
  for (const Escala& e : escalas) {
    std::vector<Cifra> cifras;
    for (const std::size_t n : e.tamanos) {
      if (const Mediana* const m = medianas.De(Nombre(e, n)))
        cifras.push_back({std::to_string(n), m->nanos / static_cast<double>(n)});
    }
    if (cifras.empty()) continue;
    Informa(json, e.nombre, cifras, "last/first", cifras.back().nanos / cifras.front().nanos, e.limite);
  }
  return 0;
}

void Exige(bool iguales, const std::string& que) {
  if (iguales) return;
  std::fprintf(stderr, "both sides differ: %s\n", que.c_str());
  std::exit(1);
}

}  // namespace medicion

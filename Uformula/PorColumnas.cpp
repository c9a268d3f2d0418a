// A formula over columns: the program's steps on blocks of rows.

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>

#include "Uformula/Acarreo.h"
#include "Uformula/Evaluador.h"
#include "framework/Excepciones.h"
#include "framework/Pares.h"
#include "framework/PotenciasDiez.h"
#include "framework/QuinceDigitos.h"

namespace vel::formula {
namespace {

using pares::Mascara;
using pares::Par;

// Rows of a block: few enough for its places to stay in the nearest memory, fewer for long formulas.
constexpr std::size_t kMaxRenglones = 128;
constexpr std::size_t kMinRenglones = 8;
constexpr std::size_t kMaxValores = 16'384;

std::size_t RenglonesPorBloque(std::size_t casillas) noexcept {
  const std::size_t caben = kMaxValores / casillas / 2 * 2;
  return std::clamp(caben, kMinRenglones, kMaxRenglones);
}

// Keeps what is assigned to the variables while rows are assigned to them.
class Asignados {
 public:
  explicit Asignados(std::span<const Evaluador::Columna> columnas) : columnas_(columnas) {
    for (const auto& c : columnas) antes_.push_back(c.variable->valor);
  }
  Asignados(const Asignados&) = delete;
  Asignados& operator=(const Asignados&) = delete;
  ~Asignados() {
    for (std::size_t i = 0; i < antes_.size(); ++i) columnas_[i].variable->valor = antes_[i];
  }

 private:
  std::span<const Evaluador::Columna> columnas_;
  std::vector<double> antes_;
};

}  // namespace

// The places of the program, each with the values of the block's rows.
class Evaluador::Bloque {
 public:
  Bloque(Evaluador& evaluador, std::span<const Columna> columnas);

  /// False when a step that is the same for every row has no value.
  bool Sirve() const noexcept { return sirve_; }
  std::size_t Renglones() const noexcept { return renglones_; }
  /// Values of the root for the rows from `primero` on; where Fallo tells so there is none.
  const double* Calcula(std::size_t primero, std::size_t cuantos);
  bool Fallo(std::size_t renglon) const noexcept { return fallos_[renglon]; }

 private:
  double* Lugar(std::uint32_t casilla) noexcept { return valores_.data() + casilla * renglones_; }
  void Lee(std::size_t columna, std::size_t primero, std::size_t cuantos);
  void Ejecuta(Instruccion& instruccion, std::uint32_t paso);
  void Llama(const Instruccion& instruccion);
  void Completa(Par resultado, std::size_t i, double* hacia);
  void Compara(Operador operador, const double* a, const double* b, double* hacia) const;
  template <class Accion>
  void Opera(const Accion& accion, double& escala, const double* a, const double* b, double* hacia);

  Evaluador& evaluador_;
  std::span<const Columna> columnas_;
  /// For each column its place, none for a variable that the formula does not name, and its scale.
  std::vector<std::uint32_t> casillas_;
  std::vector<double> escalas_;
  /// Steps that change by the row.
  std::vector<std::uint32_t> pasos_;
  std::size_t renglones_;
  bool sirve_ = true;
  std::vector<double> valores_;
  std::array<bool, kMaxRenglones> fallos_{};
  /// Where the arguments of a call stand.
  std::vector<const double*> argumentos_;
  /// Values as a step has them before they are carried.
  std::array<double, kMaxRenglones> crudos_;
  std::array<Mascara, kMaxRenglones / 2> hechos_;
};

// What does not change by the row stands in its place from the beginning.
Evaluador::Bloque::Bloque(Evaluador& evaluador, std::span<const Columna> columnas)
    : evaluador_(evaluador),
      columnas_(columnas),
      casillas_(columnas.size(), kNinguno),
      escalas_(columnas.size(), 1e6),
      renglones_(RenglonesPorBloque(evaluador.casillas_.size())),
      valores_(evaluador.casillas_.size() * renglones_) {
  for (auto c = static_cast<std::uint32_t>(evaluador.programa_.size()); c < evaluador.casillas_.size(); ++c) {
    std::fill_n(Lugar(c), renglones_, evaluador.casillas_[c]);
  }
  for (const DeEnlace& e : evaluador.deEnlace_) {
    for (std::size_t i = 0; i < columnas.size(); ++i) {
      if (columnas[i].variable == e.enlazada) casillas_[i] = e.casilla;
    }
  }
  std::vector<bool> cambia(evaluador.casillas_.size());
  for (const std::uint32_t c : casillas_) {
    if (c != kNinguno) cambia[c] = true;
  }
  for (std::uint32_t i = 0; i < evaluador.programa_.size(); ++i) {
    Instruccion& in = evaluador.programa_[i];
    if (in.operacion == Operacion::llama) {
      const std::span lugares = std::span(evaluador.lugares_).subspan(in.primero, in.cuenta);
      cambia[i] = std::any_of(lugares.begin(), lugares.end(), [&](std::uint32_t c) { return cambia[c]; });
    } else {
      cambia[i] = cambia[in.izquierdo] || cambia[in.derecho];
    }
    if (cambia[i]) {
      pasos_.push_back(i);
    } else {
      Ejecuta(in, i);
    }
  }
  sirve_ = std::none_of(fallos_.begin(), fallos_.end(), [](bool fallo) { return fallo; });
}

const double* Evaluador::Bloque::Calcula(std::size_t primero, std::size_t cuantos) {
  fallos_.fill(false);
  for (std::size_t i = 0; i < columnas_.size(); ++i) {
    if (casillas_[i] != kNinguno) Lee(i, primero, cuantos);
  }
  for (const std::uint32_t i : pasos_) Ejecuta(evaluador_.programa_[i], i);
  return Lugar(evaluador_.arbol_->Raiz());
}

// The rows that a last block lacks are like its last one.
void Evaluador::Bloque::Lee(std::size_t columna, std::size_t primero, std::size_t cuantos) {
  const double* desde = columnas_[columna].valores + primero;
  if (cuantos < renglones_) {
    std::copy_n(desde, cuantos, crudos_.begin());
    std::fill(crudos_.begin() + static_cast<std::ptrdiff_t>(cuantos), crudos_.end(), desde[cuantos - 1]);
    desde = crudos_.data();
  }
  Opera([](Par a, Par) { return a; }, escalas_[columna], desde, desde, Lugar(casillas_[columna]));
}

void Evaluador::Bloque::Ejecuta(Instruccion& in, std::uint32_t paso) {
  const double* const a = Lugar(in.izquierdo);
  const double* const b = Lugar(in.derecho);
  double* const hacia = Lugar(paso);
  const auto opera = [&](auto accion) {
    if (paso < evaluador_.arbol_->Raiz()) return Opera(accion, in.escala, a, b, hacia);
    // The root's value is given as it is.
    for (std::size_t i = 0; i < renglones_; i += 2) {
      pares::Guarda(accion(pares::Carga(a + i), pares::Carga(b + i)), hacia + i);
    }
  };
  switch (in.operacion) {
    case Operacion::entre:
      return opera([](Par x, Par y) { return x / y; });
    case Operacion::por:
      return opera([](Par x, Par y) { return x * y; });
    case Operacion::menos:
      return opera([](Par x, Par y) { return x - y; });
    case Operacion::mas:
      return opera([](Par x, Par y) { return x + y; });
    case Operacion::compara:
      return Compara(in.operador, a, b, hacia);
    case Operacion::llama:
      Llama(in);
      return Opera([](Par x, Par) { return x; }, in.escala, crudos_.data(), crudos_.data(), hacia);
  }
}

// What is written at `hacia` is never what is read at `a` or `b`.
template <class Accion>
void Evaluador::Bloque::Opera(const Accion& accion, double& escala, const double* a, const double* b,
                              double* hacia) {
  const std::size_t renglones = renglones_;
  const auto resultado = [&](std::size_t i) { return accion(pares::Carga(a + i), pares::Carga(b + i)); };
  Mascara todos = ~Mascara{};
  for (std::size_t i = 0; i < renglones; i += 2) {
    Mascara hechos;
    pares::Guarda(Acarrea(resultado(i), escala, hechos), hacia + i);
    hechos_[i / 2] = hechos;
    todos &= hechos;
  }
  if (pares::Ambos(todos)) return;
  Par mayor{};
  for (std::size_t i = 0; i < renglones; i += 2) {
    if (!pares::Ambos(hechos_[i / 2])) Completa(resultado(i), i, hacia);
    const Par magnitud = pares::Abs(pares::Carga(hacia + i));
    mayor = pares::Elige(pares::De(magnitud > mayor), magnitud, mayor);
  }
  // The next rows are mostly as large; ten times as large still goes.
  std::size_t k = 0;
  if (quince::Decimales(std::max(mayor[0], mayor[1]), k))
    escala = diez::kPotencias[std::max<std::size_t>(k, 1) - 1];
}

// The two rows from `i` on, of which one at least has more digits, or no value.
void Evaluador::Bloque::Completa(Par resultado, std::size_t i, double* hacia) {
  Mascara hechos;
  const Par largos = AcarreaLargo(resultado, hechos);
  pares::Guarda(pares::Elige(hechos_[i / 2], pares::Carga(hacia + i), largos), hacia + i);
  hechos |= hechos_[i / 2];
  if (pares::Ambos(hechos)) [[likely]]
    return;
  for (std::size_t lado = 0; lado < 2; ++lado) {
    double potencia = 1;
    if (pares::Lado(hechos, lado) || AcarreaLargo(resultado[lado], potencia, hacia[i + lado])) continue;
    fallos_[i + lado] = true;
    hacia[i + lado] = 0;
  }
}

void Evaluador::Bloque::Compara(Operador operador, const double* a, const double* b, double* hacia) const {
  const auto con = [&](auto comparacion) {
    for (std::size_t i = 0; i < renglones_; i += 2) {
      pares::Guarda(pares::UnoOCero(comparacion(pares::Carga(a + i), pares::Carga(b + i))), hacia + i);
    }
  };
  switch (operador) {
    case Operador::distinto:
      return con([](Par x, Par y) { return pares::De(x != y); });
    case Operador::menorIgual:
      return con([](Par x, Par y) { return pares::De(x <= y); });
    case Operador::mayorIgual:
      return con([](Par x, Par y) { return pares::De(x >= y); });
    case Operador::mayor:
      return con([](Par x, Par y) { return pares::De(x > y); });
    default:
      return con([](Par x, Par y) { return pares::De(x < y); });
  }
}

void Evaluador::Bloque::Llama(const Instruccion& in) {
  argumentos_.clear();
  for (std::uint32_t j = 0; j < in.cuenta; ++j) {
    argumentos_.push_back(Lugar(evaluador_.lugares_[in.primero + j]));
  }
  double* const argumentos = evaluador_.argumentos_.data();
  const std::size_t cuenta = argumentos_.size();
  for (std::size_t i = 0; i < renglones_; ++i) {
    for (std::size_t j = 0; j < cuenta; ++j) argumentos[j] = argumentos_[j][i];
    crudos_[i] = in.funcion->valor({argumentos, cuenta});
  }
}

std::vector<TFallaRenglon> Evaluador::Ejecuta(std::span<const Columna> columnas, std::span<double> salida) {
  if (!preparado_ || version_ != Version()) Actualiza();
  if (arbol_->Raiz() == kNinguno) throw EInvalidOperation(u"No hay fórmula que evaluar");
  std::vector<TFallaRenglon> fallas;
  const Asignados asignados(columnas);
  const auto porSi = [&](std::size_t renglon) {
    for (const Columna& c : columnas) c.variable->valor = c.valores[renglon];
    try {
      return Ejecuta();
    } catch (const Exception& e) {
      fallas.push_back({renglon, e.Message()});
      return std::numeric_limits<double>::quiet_NaN();
    }
  };
  bool directo = directo_;
  for (DeEnlace& e : deEnlace_) {
    const bool fija = std::none_of(columnas.begin(), columnas.end(),
                                   [&e](const Columna& c) { return c.variable == e.enlazada; });
    if (fija && !Acarrea(e.enlazada->valor, e.potencia, casillas_[e.casilla])) directo = false;
  }
  std::optional<Bloque> bloques;
  if (directo) bloques.emplace(*this, columnas);
  if (!directo || !bloques->Sirve()) {
    for (std::size_t r = 0; r < salida.size(); ++r) salida[r] = porSi(r);
    return fallas;
  }
  Bloque& bloque = *bloques;
  for (std::size_t primero = 0; primero < salida.size(); primero += bloque.Renglones()) {
    const std::size_t cuantos = std::min(bloque.Renglones(), salida.size() - primero);
    const double* const valores = bloque.Calcula(primero, cuantos);
    for (std::size_t i = 0; i < cuantos; ++i) {
      salida[primero + i] = bloque.Fallo(i) ? porSi(primero + i) : valores[i];
    }
  }
  return fallas;
}

}  // namespace vel::formula

// Formulas that our evaluator, muParser and FParser take with the same meaning: building and evaluating a
// formula, evaluating a built one, and the scale of building.
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fparser.hh>
#include <memory>
#include <muParser.h>
#include <omp.h>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "Uformula/Potencia.h"
#include "Uformula/Uformula.h"
#include "benchmarks/Medicion.h"
#include "framework/Numeros.h"

namespace {

// The functions are spelled as each side has them; `mu` and `fp` are given where they differ.
struct Formula {
  const char* propia;
  const char* mu = nullptr;
  const char* fp = nullptr;

  const char* Mu() const { return mu != nullptr ? mu : propia; }
  const char* Fp() const { return fp != nullptr ? fp : mu != nullptr ? mu : propia; }
};

const Formula kFormulas[] = {
    {"PRECIO*CANTIDAD"},
    {"PRECIO*CANTIDAD*(1+IVA)"},
    {"PRECIO*CANTIDAD-DESCUENTO"},
    {"(PRECIO*CANTIDAD-DESCUENTO)*(1+IVA)"},
    {"(PRECIO-COSTO)/PRECIO"},
    {"(PRECIO-COSTO)/COSTO*100"},
    {"COSTO/(1-MARGEN)"},
    {"COSTO*(1+MARGEN)+FLETE"},
    {"COSTO+FLETE+SEGURO+MANIOBRAS"},
    {"(COSTO+FLETE+SEGURO)*CAMBIO"},
    {"VENTA*0.05"},
    {"(VENTA-META)*0.05+SUELDO"},
    {"VENTA*0.03+(VENTA-META)*0.02"},
    {"SUELDO/30*DIAS"},
    {"SUELDO*12/365*DIAS"},
    {"120+KG*7.5"},
    {"120+(KG-20)*7.5"},
    {"KG*7.5+M3*380+SEGURO"},
    {"PRECIO/CAMBIO"},
    {"PRECIO*(1-DESCUENTO/100)"},
    {"PRECIO*(1-0.1)*(1-0.05)"},
    {"VENTA>META"},
    {"KG<20"},
    {"(VENTA-COSTO)>META"},
    {"(KG<20)*180+(KG>=20)*240"},
    {"SI(VENTA>=META,VENTA*0.05,VENTA*0.02)", "VENTA>=META?VENTA*0.05:VENTA*0.02",
     "if(VENTA>=META,VENTA*0.05,VENTA*0.02)"},
    {"SI(KG<=5,120,SI(KG<=20,180,180+(KG-20)*7.5))", "KG<=5?120:(KG<=20?180:180+(KG-20)*7.5)",
     "if(KG<=5,120,if(KG<=20,180,180+(KG-20)*7.5))"},
    {"MAX(120,KG*7.5)", "max(120,KG*7.5)"},
    {"MIN(VENTA*0.05,2500)", "min(VENTA*0.05,2500)"},
    {"MAX(0,VENTA-META)*0.05+SUELDO", "max(0,VENTA-META)*0.05+SUELDO"},
    {"RAIZ(KG*M3)", "sqrt(KG*M3)"},
    {"PTENCIA(1+MARGEN,12)*VENTA", "(1+MARGEN)^12*VENTA"},
    {"VENTA*MARGEN/(1-1/PTENCIA(1+MARGEN,12))", "VENTA*MARGEN/(1-1/(1+MARGEN)^12)"},
    {"(PRECIO*CANTIDAD+FLETE)*(1+IVA)-(PRECIO*CANTIDAD)*0.0125"},
};

struct Dato {
  const char* nombre;
  double valor;
};
const Dato kDatos[] = {{"PRECIO", 349.9},  {"CANTIDAD", 12},   {"IVA", 0.16},    {"DESCUENTO", 15.5},
                       {"COSTO", 210.35},  {"MARGEN", 0.35},   {"FLETE", 85},    {"SEGURO", 12.75},
                       {"MANIOBRAS", 40},  {"CAMBIO", 17.325}, {"VENTA", 48250}, {"META", 30000},
                       {"SUELDO", 9200.5}, {"DIAS", 14},       {"KG", 23.4},     {"M3", 1.25}};
constexpr std::size_t kCuenta = std::size(kDatos);

bool Cerca(double a, double b) { return std::abs(a - b) <= 1e-12 * std::max(std::abs(a), std::abs(b)); }

// Everything built once: a formula object of each side for each formula, with the variables it uses.
struct Banco {
  explicit Banco(const Formula& f) : formula(f), texto(vel::UTF8ToString(f.propia)) {
    for (std::size_t i = 0; i < kCuenta; ++i) {
      valores[i] = kDatos[i].valor;
      mu.DefineVar(kDatos[i].nombre, &valores[i]);
      nombres += (i > 0 ? "," : "") + std::string(kDatos[i].nombre);
      if (std::string(f.propia).find(kDatos[i].nombre) != std::string::npos) usadas.push_back(i);
    }
    for (int juego = 0; juego < 2; ++juego) {
      for (const std::size_t i : usadas) {
        listas[juego].SetValue(vel::UTF8ToString(kDatos[i].nombre), vel::FloatToStr(Valor(i, juego)));
      }
    }
    propia.SetVariables(listas[0]);
    propia.NewFormula(texto);
    for (const std::size_t i : usadas) {
      enlaces.push_back(enlazada.EnlazaVariable(vel::UTF8ToString(kDatos[i].nombre)));
    }
    Asigna(0);
    enlazada.NewFormula(texto);
    mu.SetExpr(f.Mu());
    fp.Parse(f.Fp(), nombres);
    for (const int juego : {1, 0}) {
      for (const std::size_t i : usadas) valores[i] = Valor(i, juego);
      propia.SetVariables(listas[juego]);
      const double v = propia.Execute();
      medicion::Exige(Cerca(v, mu.Eval()) && Cerca(v, fp.Eval(valores)), f.propia);
      Asigna(juego);
      medicion::Exige(v == enlazada.Execute(), f.propia);
    }
  }
  void Asigna(int juego) {
    for (std::size_t j = 0; j < usadas.size(); ++j) enlaces[j].Asigna(Valor(usadas[j], juego));
  }
  static double Valor(std::size_t i, int juego) {
    return juego == 0 ? kDatos[i].valor : kDatos[i].valor * 1.5;
  }

  const Formula& formula;
  vel::UnicodeString texto;
  std::string nombres;
  double valores[kCuenta] = {};
  std::vector<std::size_t> usadas;
  vel::TStringList listas[2];
  vel::TFormula propia;
  vel::TFormula enlazada;
  std::vector<vel::TVariableEnlazada> enlaces;
  mu::Parser mu;
  FunctionParser fp;
};

// The formulas over columns of amounts, against the peer's own form for many rows, on one thread. The rows
// are the same for all formulas.
class PorColumnas {
 public:
  explicit PorColumnas(std::size_t renglones) : salida_(renglones) {
    std::mt19937 azar(3);
    for (std::size_t i = 0; i < kCuenta; ++i) {
      for (std::size_t r = 0; r < renglones; ++r) {
        const double factor = 0.5 + static_cast<double>(azar() % 10'000) / 10'000;
        columnas_[i].push_back(std::round(kDatos[i].valor * factor * 1e4) / 1e4);
      }
    }
    for (const Formula& f : kFormulas) {
      formulas_.push_back(std::make_unique<Una>());
      Una& una = *formulas_.back();
      for (std::size_t i = 0; i < kCuenta; ++i) {
        una.mu.DefineVar(kDatos[i].nombre, columnas_[i].data());
        if (std::string(f.propia).find(kDatos[i].nombre) == std::string::npos) continue;
        una.columnas.push_back(
            {una.propia.EnlazaVariable(vel::UTF8ToString(kDatos[i].nombre)), columnas_[i]});
        una.columnas.back().Variable.Asigna(kDatos[i].valor);
      }
      una.propia.NewFormula(vel::UTF8ToString(f.propia));
      una.mu.SetExpr(f.Mu());
      Compara(una, f.propia);
    }
  }
  void Propio() {
    for (const auto& f : formulas_) f->propia.Ejecuta(f->columnas, salida_);
  }
  void Mu() {
    for (const auto& f : formulas_) f->mu.Eval(salida_.data(), static_cast<int>(salida_.size()));
  }
  double Unidades() const { return static_cast<double>(formulas_.size() * salida_.size()); }

 private:
  struct Una {
    vel::TFormula propia;
    std::vector<vel::TColumnaFormula> columnas;
    mu::Parser mu;
  };

  void Compara(Una& una, const char* texto) {
    std::vector<double> suya(salida_.size());
    una.mu.Eval(suya.data(), static_cast<int>(suya.size()));
    medicion::Exige(una.propia.Ejecuta(una.columnas, salida_).empty(), texto);
    for (std::size_t r = 0; r < salida_.size(); ++r) {
      for (vel::TColumnaFormula& c : una.columnas) c.Variable.Asigna(c.Valores[r]);
      const bool mismos =
          std::bit_cast<std::uint64_t>(salida_[r]) == std::bit_cast<std::uint64_t>(una.propia.Execute());
      medicion::Exige(mismos && Cerca(salida_[r], suya[r]), texto);
    }
  }

  std::vector<double> columnas_[kCuenta];
  std::vector<double> salida_;
  std::vector<std::unique_ptr<Una>> formulas_;
};

// Rates raised to months and to parts of years, against the C library's function.
class Potencias {
 public:
  Potencias() {
    std::mt19937 azar(12);
    int distintas = 0;
    for (auto& [tasa, exponente] : pares_) {
      tasa = 1 + static_cast<double>(azar() % 200'000) / 1e6;
      exponente = static_cast<double>(azar() % 361) / (azar() % 2 == 0 ? 1 : 12);
      const double propia = vel::formula::Potencia(tasa, exponente);
      const double par = std::pow(tasa, exponente);
      medicion::Exige(propia == std::nextafter(par, propia), "pow, to a bit");
      distintas += propia != par ? 1 : 0;
    }
    std::fprintf(stderr, "Potencia: %d of %zu differ from pow, by the last bit\n", distintas, pares_.size());
  }
  template <double (*Funcion)(double, double)>
  double Suma() const {
    double suma = 0;
    for (const auto& [tasa, exponente] : pares_) suma += Funcion(tasa, exponente);
    return suma;
  }
  double Unidades() const { return static_cast<double>(pares_.size()); }

 private:
  std::array<std::pair<double, double>, 4096> pares_;
};

// Building with every variable known, on one object of each side, as a program that reads formulas would.
struct Lectores {
  explicit Lectores(std::vector<std::unique_ptr<Banco>>& b) : bancos(b) {
    vel::TStringList lista;
    for (const Dato& d : kDatos) lista.SetValue(vel::UTF8ToString(d.nombre), vel::FloatToStr(d.valor));
    propia.SetVariables(lista);
    for (std::size_t i = 0; i < kCuenta; ++i) {
      valores[i] = kDatos[i].valor;
      mu.DefineVar(kDatos[i].nombre, &valores[i]);
    }
  }
  void Propia() {
    for (const auto& b : bancos) propia.NewFormula(b->texto);
  }
  void Mu() {
    for (const auto& b : bancos) {
      mu.SetExpr(b->formula.Mu());
      suma += mu.Eval();
    }
  }
  void Fp() {
    for (const auto& b : bancos) {
      fp.Parse(b->formula.Fp(), b->nombres);
      suma = suma + fp.Eval(valores);
    }
  }

  std::vector<std::unique_ptr<Banco>>& bancos;
  vel::TFormula propia;
  mu::Parser mu;
  FunctionParser fp;
  double valores[kCuenta] = {};
  double suma = 0;
};

std::function<void()> Construye(vel::UnicodeString texto) {
  return
      [formula = std::make_shared<vel::TFormula>(), texto = std::move(texto)] { formula->NewFormula(texto); };
}

}  // namespace

int main(int argc, char** argv) {
  omp_set_num_threads(1);
  std::vector<std::unique_ptr<Banco>> bancos;
  for (const Formula& f : kFormulas) bancos.push_back(std::make_unique<Banco>(f));
  Lectores lectores(bancos);
  const double cuenta = static_cast<double>(bancos.size());
  double suma = 0;
  int juego = 0;

  const auto construye = [&] { lectores.Propia(); };
  const auto ejecuta = [&] {
    for (const auto& b : bancos) suma += b->propia.Execute();
  };
  const auto pon = [&] {
    juego = 1 - juego;
    for (const auto& b : bancos) b->propia.SetVariables(b->listas[juego]);
  };
  const auto asigna = [&] {
    juego = 1 - juego;
    for (const auto& b : bancos) b->Asigna(juego);
  };
  const auto ejecutaEnlazada = [&] {
    for (const auto& b : bancos) suma += b->enlazada.Execute();
  };
  // Its variables are read through pointers, so that changing them is a plain assignment.
  const auto ponMu = [&] {
    juego = 1 - juego;
    for (const auto& b : bancos) {
      for (const std::size_t i : b->usadas) b->valores[i] = Banco::Valor(i, juego);
    }
  };
  const auto evaluaMu = [&] {
    for (const auto& b : bancos) suma += b->mu.Eval();
  };

  PorColumnas mil(1'000);
  PorColumnas millon(1'000'000);
  const Potencias potencias;

  return medicion::Ejecuta(
      argc, argv,
      {
          {"NewFormula | SetExpr + Eval", construye, [&] { lectores.Mu(); }, 1.0 / 5, "muParser", cuenta},
          {"NewFormula | Parse + Eval", construye, [&] { lectores.Fp(); }, 1, "FParser", cuenta},
          {"Execute | Eval", ejecuta, evaluaMu, 3, "muParser", cuenta},
          {"SetVariables + Execute | assign + Eval", [&] { pon(), ejecuta(); }, [&] { ponMu(), evaluaMu(); },
           0, "muParser", cuenta},
          {"bound assign + Execute | assign + Eval", [&] { asigna(), ejecutaEnlazada(); },
           [&] { ponMu(), evaluaMu(); }, 1.2, "muParser", cuenta},
          {"Ejecuta, 1,000 rows | Eval, bulk", [&] { mil.Propio(); }, [&] { mil.Mu(); }, 1, "muParser",
           mil.Unidades()},
          {"Ejecuta, 1,000,000 rows | Eval, bulk", [&] { millon.Propio(); }, [&] { millon.Mu(); }, 1,
           "muParser", millon.Unidades()},
          {"Potencia | pow", [&] { suma += potencias.Suma<vel::formula::Potencia>(); },
           [&] { suma += potencias.Suma<std::pow>(); }, 4, "libm", potencias.Unidades()},
          // SetVariables + Execute less this one is Execute with changed variables.
          {"SetVariables | assign", pon, ponMu, 0, "muParser", cuenta},
      },
      {
          {"NewFormula, operators",
           {100, 1'000, 10'000},
           [](std::size_t n) {
             vel::UnicodeString texto = u"1";
             for (std::size_t i = 0; i < n; ++i) texto += u"+-*/"[i % 4], texto += u"2.5";
             return Construye(std::move(texto));
           },
           1.5},
          {"NewFormula, groups side by side",
           {10, 100, 1'000},
           [](std::size_t n) {
             vel::UnicodeString texto = u"1";
             for (std::size_t i = 0; i < n; ++i) texto += u"+(2*3-SUMA(1,2))";
             return Construye(std::move(texto));
           },
           1.5},
          {"NewFormula, groups nested",
           {10, 100, 1'000},
           [](std::size_t n) {
             vel::UnicodeString texto;
             for (std::size_t i = 0; i < n; ++i) texto += u"(2+";
             texto += u"1" + vel::UnicodeString(n, u')');
             return Construye(std::move(texto));
           },
           1.5},
      });
}

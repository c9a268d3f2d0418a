#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <map>
#include <numeric>
#include <set>
#include <vector>

#include "Uformula/Potencia.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "framework/Texto.h"
#include "tests/Reales.h"

namespace pruebas {

using namespace vel;
using Texto = UnicodeString;

inline bool EsOp(char16_t c) { return Texto(u"*+-/<=>").find(c) != Texto::npos; }
inline bool ConOp(const Texto& t) { return t.find_first_of(u"*+-/<=>") != Texto::npos; }

/// Formulas by their definition: the text is rewritten once for each parenthesis, values travel as text.
/// Their parentheses must be balanced.
struct Literal {
  struct Nodo {
    Texto op, izq, der;
  };
  struct Interna {
    Texto nombre;
    std::vector<Texto> args;
  };
  std::map<Texto, Nodo, LessText> nodos;
  std::map<Texto, Interna, LessText> internas;
  std::map<Texto, Texto, LessText> variables;
  std::vector<Texto> tokens;
  std::set<Texto, LessText> abiertos;
  Texto raiz;

  /// The built-ins, with the arguments that each needs.
  static const std::map<Texto, std::size_t, LessText>& Internas() {
    static const std::map<Texto, std::size_t, LessText> internas{
        {u"SUMA", 1}, {u"PRODCTO", 1}, {u"ABS", 1},  {u"TRUNCAR", 1}, {u"RDONDEA", 1}, {u"FRACC", 1},
        {u"RAIZ", 1}, {u"PTENCIA", 2}, {u"CUBO", 1}, {u"QADRADO", 1}, {u"SIGNO", 1},   {u"INVERSO", 1},
        {u"MIN", 1},  {u"MAX", 1},     {u"SI", 3},   {u"NO", 1}};
    return internas;
  }
  static bool EsInterna(const Texto& nombre) { return Internas().contains(nombre); }

  double Formula(Texto t) {
    t = StringReplace(t, u" ", u"");
    ExigeGrupos(t);
    if (t.starts_with(u'-')) t = u"0" + t;
    for (auto n = std::count(t.begin(), t.end(), u'('); n > 0; --n) t = Pasada(t, t.rfind(u'('));
    FuncionN(t + u"+0");
    return nodos.empty() ? throw EInvalidOperation(u"No hay fórmula que evaluar") : Result(raiz);
  }

  static Texto NombreAntes(const Texto& t, std::size_t abre) {
    const std::size_t corte = t.find_last_of(u"*+-/<=>(,", abre == 0 ? 0 : abre - 1);
    return abre == 0 ? u"" : t.substr(corte == Texto::npos ? 0 : corte + 1, abre - (corte + 1));
  }

  static void ExigeGrupos(const Texto& t) {
    for (std::size_t cierra = t.find(u')'); cierra != Texto::npos; cierra = t.find(u')', cierra + 1)) {
      const std::size_t abre = t.find_last_of(u"*+-/<=>(),", cierra - 1);
      const bool vacio = t[abre] == u'(' && Trim(t.substr(abre + 1, cierra - abre - 1)).empty();
      if (!vacio || EsInterna(NombreAntes(t, abre))) continue;
      throw EInvalidOperation(u"No hay nada en el paréntesis que se abre en la posición " +
                              IntToStr(static_cast<std::int64_t>(abre) + 1) +
                              u" de la fórmula, contada sin los espacios en blanco");
    }
  }

  Texto Pasada(const Texto& t, std::size_t abre) {
    const std::size_t cierra = t.find(u')', abre);
    const Texto nombre = NombreAntes(t, abre);
    Texto dentro = t.substr(abre + 1, cierra - abre - 1);
    const Texto resto = t.substr(cierra + 1);
    if (!EsInterna(nombre)) {
      CreaFuncionN(dentro);
      return t.substr(0, abre) + (tokens.empty() ? u"" : Trim(tokens[0])) + resto;
    }
    Interna llamada{nombre, {}};
    for (dentro += u','; !dentro.empty(); dentro.erase(0, dentro.find(u',') + 1)) {
      llamada.args.push_back(FuncionN(dentro.substr(0, dentro.find(u','))));
    }
    const Texto numero = IntToStr(static_cast<std::int64_t>(internas.size()));
    internas[nombre + numero] = llamada;
    return t.substr(0, abre) + numero + resto;
  }

  Texto FuncionN(const Texto& t) {
    if (!ConOp(t.starts_with(u'-') ? t.substr(1) : t)) return t;
    CreaFuncionN(t);
    return Trim(tokens[0]);
  }

  void CreaFuncionN(const Texto& t) {
    bool dobles = false;
    for (const char16_t* d : {u"<>", u"<=", u">="}) dobles = dobles || t.find(d) != Texto::npos;
    tokens.clear();
    Texto pendiente;
    for (std::size_t i = 0; i < t.size(); ++i) {
      if (EsOp(t[i])) {
        if (!pendiente.empty()) tokens.push_back(pendiente);
        pendiente = t[i];
        if ((dobles || t[i] == u'+' || t[i] == u'-') && i + 1 < t.size()) pendiente += t[++i];
      } else {
        pendiente += t[i];
      }
    }
    if (!pendiente.empty()) tokens.push_back(pendiente);
    for (const char16_t* op : {u"<>", u"<=", u">=", u"/", u"*", u"-", u"+", u"=", u">", u"<"}) {
      if (dobles || Texto(op).size() == 1) CreaFunciones(op);
    }
  }

  void CreaFunciones(const Texto& op) {
    for (std::size_t i = 1; i < tokens.size(); ++i) {
      if (tokens[i].substr(0, op.size()) != op) continue;
      Texto izq = tokens[i - 1], prefijo;
      if (i > 1 && EsOp(izq[0])) {
        prefijo = izq[0];
        izq.erase(0, 1);
      }
      const Texto nombre = u"FUN" + IntToStr(static_cast<std::int64_t>(nodos.size()));
      nodos[nombre] = {op, izq, StringReplace(tokens[i], op, u"")};
      raiz = nombre;
      tokens[i - 1] = prefijo + nombre;
      tokens.erase(tokens.begin() + static_cast<std::ptrdiff_t>(i));
      i = 0;
    }
  }

  Texto Remplaza(const Texto& t) {
    double numero = 0;
    if (TryStrToFloat(t, numero)) return t;
    if (variables.contains(t)) return variables[t];
    if (nodos.contains(t)) return FloatToStr(Result(nodos.find(t)->first));
    if (internas.contains(t)) return FloatToStr(ResultIn(internas.find(t)->first));
    return t;
  }

  void Abre(const Texto& nombre) {
    if (!abiertos.insert(nombre).second) {
      throw EInvalidOperation(u"La fórmula se refiere a sí misma en " + nombre);
    }
  }

  double Result(const Texto& nombre) {
    Abre(nombre);
    const Nodo nodo = nodos[nombre];
    const Texto izq = Remplaza(nodo.izq), der = Remplaza(nodo.der);
    abiertos.erase(nombre);
    const double a = StrToFloat(izq), b = StrToFloat(der);
    if (nodo.op == u"+") return a + b;
    if (nodo.op == u"-") return a - b;
    if (nodo.op == u"*") return a * b;
    if (nodo.op == u"/") return a / b;
    if (nodo.op == u"<") return a < b;
    if (nodo.op == u">") return a > b;
    if (nodo.op == u"<=") return a <= b;
    if (nodo.op == u">=") return a >= b;
    if (nodo.op == u"<>") return a != b;
    throw Exception(u"Operador desconocido");
  }

  double ResultIn(const Texto& nombre) {
    Abre(nombre);
    const Interna llamada = internas[nombre];
    std::vector<double> a;
    for (const Texto& arg : llamada.args) a.push_back(StrToFloat(Remplaza(arg)));
    abiertos.erase(nombre);
    const auto& [nombreInterna, minimo] = *Internas().find(llamada.nombre);
    if (a.size() < minimo) {
      throw EInvalidOperation(u"Faltan argumentos en la función [" + nombreInterna + u"]");
    }
    return Valor(nombreInterna, a);
  }

  static double Valor(const Texto& nombre, const std::vector<double>& a) {
    if (nombre == u"PRODCTO") return std::accumulate(a.begin(), a.end(), 1.0, std::multiplies<>());
    if (nombre == u"ABS") return std::fabs(Entero32(a[0], std::trunc(a[0])));
    if (nombre == u"PTENCIA") return Potencia(a[0], a[1]);
    if (nombre == u"CUBO") return Potencia(a[0], 3.0);
    if (nombre == u"QADRADO") return a[0] * a[0];
    if (nombre == u"MIN") return *std::min_element(a.begin(), a.end());
    if (nombre == u"MAX") return *std::max_element(a.begin(), a.end());
    if (nombre == u"RAIZ") return std::sqrt(a[0]);
    if (nombre == u"RDONDEA") return Entero32(a[0], std::trunc(a[0] + 0.5));
    if (nombre == u"TRUNCAR") return std::floor(a[0]);
    if (nombre == u"FRACC") return a[0] - std::trunc(a[0]);
    if (nombre == u"SIGNO") return a[0] > 0 ? 1 : a[0] < 0 ? -1 : 0;
    if (nombre == u"INVERSO") return a[0] * -1;
    if (nombre == u"SI") return a[0] != 0 ? a[1] : a[2];
    if (nombre == u"NO") return a[0] == 0;
    return std::accumulate(a.begin(), a.end(), 0.0);
  }

  // Of the runtime's, the last bits differ between systems; where those alone differ it is the library's own.
  static double Potencia(double base, double exponente) {
    const double propia = formula::Potencia(base, exponente);
    const double ajena = std::pow(base, exponente);
    return std::abs(propia / ajena - 1) <= 0x1p-50 ? propia : ajena;
  }

  static double Entero32(double valor, double entero) {
    if (entero >= -0x1p31 && entero < 0x1p31) return entero;
    throw EInvalidOperation(u"El valor " + FloatToStr(valor) + u" no cabe en un entero de 32 bits");
  }
};

/// The value with all its bits, or the message.
template <class Accion>
Texto Resultado(Accion accion) {
  try {
    return UTF8ToString(Exacto(accion()));
  } catch (const Exception& e) {
    return e.Message();
  }
}

}  // namespace pruebas

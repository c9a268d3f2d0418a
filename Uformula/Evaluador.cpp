#include "Uformula/Evaluador.h"

#include <cmath>

#include "Uformula/Acarreo.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel::formula {
namespace {

double AcarreaOLanza(double valor) {
  double acarreado = 0;
  return Acarrea(valor, acarreado) ? acarreado : StrToFloat(FloatToStr(valor));
}

}  // namespace

// False when a value does not survive as text: then the walk decides.
inline bool Evaluador::EjecutaDirecto(double& valor) {
  double* const casillas = casillas_.data();
  for (DeEnlace& e : deEnlace_) {
    if (!Acarrea(e.enlazada->valor, e.potencia, casillas[e.casilla])) return false;
  }
  Instruccion* const programa = programa_.data();
  const std::uint32_t raiz = arbol_->Raiz();
  for (std::uint32_t i = 0; i < raiz; ++i) {
    Instruccion& in = programa[i];
    const double a = casillas[in.izquierdo];
    const double b = casillas[in.derecho];
    double resultado = 0;
    switch (in.operacion) {
      case Operacion::entre:
        resultado = a / b;
        break;
      case Operacion::por:
        resultado = a * b;
        break;
      case Operacion::menos:
        resultado = a - b;
        break;
      case Operacion::mas:
        resultado = a + b;
        break;
      case Operacion::compara:
        casillas[i] = Aplica(in.operador, a, b);
        continue;
      case Operacion::llama:
        resultado = Llama(in);
        break;
    }
    if (!Acarrea(resultado, in.potencia, casillas[i])) return false;
  }
  const Instruccion& ultima = programa[raiz];
  valor = Aplica(ultima.operador, casillas[ultima.izquierdo], casillas[ultima.derecho]);
  return true;
}

double Evaluador::Ejecuta() {
  if (!preparado_ || version_ != Version()) Actualiza();
  double valor = 0;
  if (directo_ && EjecutaDirecto(valor)) return valor;
  if (arbol_->Raiz() == kNinguno) throw EInvalidOperation(u"No hay fórmula que evaluar");
  return Evalua(arbol_->Raiz());
}

void Evaluador::Actualiza() {
  directo_ = false;
  if (arbol_->Raiz() == kNinguno) return;
  if (!preparado_ || versionArbol_ != arbol_->Version() || versionVariables_ != variables_.Version() ||
      versionEnlazadas_ != enlazadas_.Version()) {
    preparado_ = false;
    enOrden_ = Prepara();
    preparado_ = true;
    versionArbol_ = arbol_->Version();
    versionVariables_ = variables_.Version();
    versionEnlazadas_ = enlazadas_.Version();
  }
  directo_ = enOrden_ && LeeVariables();
  version_ = Version();
}

// Makes the program. False when a step cannot be run in its turn.
bool Evaluador::Prepara() {
  const Serie<Operando>& operandos = arbol_->Operandos();
  const std::uint32_t raiz = arbol_->Raiz();
  programa_.resize(raiz + 1);
  casillas_.resize(raiz + 1);
  lugares_.clear();
  deLista_.clear();
  deEnlace_.clear();
  for (std::uint32_t i = 0; i <= raiz; ++i) {
    const Paso& p = arbol_->Pasos()[i];
    Instruccion& in = programa_[i];
    if (!p.esLlamada) {
      in.operacion = OperacionDe(p.operador);
      in.operador = p.operador;
      in.izquierdo = Casilla(operandos[p.primero], i);
      in.derecho = Casilla(operandos[p.primero + 1], i);
      if (in.izquierdo == kNinguno || in.derecho == kNinguno || p.operador == Operador::igual) return false;
      continue;
    }
    if (p.funcion == nullptr || p.cuenta < p.funcion->argumentos) return false;
    in.operacion = Operacion::llama;
    in.izquierdo = in.derecho = 0;
    in.primero = static_cast<std::uint32_t>(lugares_.size());
    in.cuenta = p.cuenta;
    in.funcion = p.funcion;
    for (std::uint32_t j = p.primero; j < p.primero + p.cuenta; ++j) {
      lugares_.push_back(Casilla(operandos[j], i));
      if (lugares_.back() == kNinguno) return false;
    }
    if (argumentos_.size() < p.cuenta) argumentos_.resize(p.cuenta);
  }
  return true;
}

Evaluador::Operacion Evaluador::OperacionDe(Operador operador) noexcept {
  switch (operador) {
    case Operador::entre:
      return Operacion::entre;
    case Operador::por:
      return Operacion::por;
    case Operador::menos:
      return Operacion::menos;
    case Operador::mas:
      return Operacion::mas;
    default:
      return Operacion::compara;
  }
}

// The place where the operand's value stands when the step's turn comes; kNinguno when it has none by then.
inline std::uint32_t Evaluador::Casilla(const Operando& operando, std::uint32_t paso) {
  if (operando.esNumero) return Reserva(operando.numero);
  if (operando.paso != kNinguno && !variables_.NombranPasos() && !enlazadas_.NombranPasos()) {
    return operando.paso;
  }
  // A bound variable may yet get its value.
  if (enlazadas_.Hay()) {
    if (Enlazada* const enlazada = enlazadas_.Busca(arbol_->Texto(operando))) return CasillaDe(*enlazada);
  }
  const Enlace enlace = Enlaza(operando);
  if (enlace.origen == Origen::paso && enlace.lugar < paso) return enlace.lugar;
  if (enlace.origen != Origen::variable) return kNinguno;
  deLista_.push_back({enlace.lugar, Reserva(0)});
  return deLista_.back().casilla;
}

std::uint32_t Evaluador::CasillaDe(Enlazada& enlazada) {
  if (enlazada.uso < deEnlace_.size() && deEnlace_[enlazada.uso].enlazada == &enlazada) {
    return deEnlace_[enlazada.uso].casilla;
  }
  deEnlace_.push_back({&enlazada, Reserva(0)});
  enlazada.uso = static_cast<std::uint32_t>(deEnlace_.size() - 1);
  return deEnlace_.back().casilla;
}

std::uint32_t Evaluador::Reserva(double valor) {
  casillas_.push_back(valor);
  return static_cast<std::uint32_t>(casillas_.size() - 1);
}

// A number, a variable with a value, a node or a call, in this order; a step that the reduction put in its
// place has a name too, and gives way to a variable called like it. A bound variable hides the list's.
Evaluador::Enlace Evaluador::Enlaza(const Operando& operando) const {
  if (operando.esNumero) return {Origen::numero};
  std::uint32_t paso = operando.paso;
  const bool porNombre = paso == kNinguno || variables_.NombranPasos() || enlazadas_.NombranPasos();
  if (porNombre) {
    UnicodeString propio;
    if (paso != kNinguno) propio = arbol_->NombrePaso(paso);
    const std::u16string_view nombre = paso != kNinguno ? propio : arbol_->Vista(operando.texto);
    if (const Enlazada* const enlazada = enlazadas_.Busca(nombre)) {
      if (!std::isnan(enlazada->valor)) return {Origen::enlazada, 0, enlazada};
    } else if (const std::ptrdiff_t variable = variables_.Busca(nombre); variable >= 0) {
      return {Origen::variable, static_cast<std::uint32_t>(variable)};
    }
    if (paso == kNinguno) paso = arbol_->BuscaPaso(nombre);
  }
  return {paso == kNinguno ? Origen::nada : Origen::paso, paso};
}

// Takes the values of the list's variables. False when one that the program reads is no number.
bool Evaluador::LeeVariables() {
  bool numericas = true;
  for (const DeLista& v : deLista_) {
    casillas_[v.casilla] = variables_[v.lugar].numero;
    numericas = numericas && variables_[v.lugar].esNumero;
  }
  return numericas;
}

double Evaluador::Llama(const Instruccion& llamada) {
  for (std::uint32_t j = 0; j < llamada.cuenta; ++j) {
    argumentos_[j] = casillas_[lugares_[llamada.primero + j]];
  }
  return llamada.funcion->valor({argumentos_.data(), llamada.cuenta});
}

// The walk by definition, from the step down, with a stack of its own. A step is resolved once, however often
// it is named: its value cannot change.
double Evaluador::Evalua(std::uint32_t raiz) {
  const std::size_t n = arbol_->Pasos().Cuenta();
  estados_.assign(n, Estado::pendiente);
  resultados_.resize(n);
  marcos_.assign(1, Marco{raiz});
  estados_[raiz] = Estado::abierto;
  while (!marcos_.empty()) {
    Marco& marco = marcos_.back();
    const Paso& p = arbol_->Pasos()[marco.paso];
    if (p.esLlamada && p.funcion == nullptr) LanzaFuncionDesconocida(arbol_->Vista(p.nombre));
    // A call converts each argument before it looks at the next; a node resolves both operands first.
    if (p.esLlamada && marco.resueltos > 0) Convierte(arbol_->Operandos()[p.primero + marco.resueltos - 1]);
    if (marco.resueltos == p.cuenta) {
      resultados_[marco.paso] = Resuelve(marco.paso);
      estados_[marco.paso] = Estado::listo;
      marcos_.pop_back();
      continue;
    }
    const Enlace e = Enlaza(arbol_->Operandos()[p.primero + marco.resueltos++]);
    if (e.origen != Origen::paso || estados_[e.lugar] == Estado::listo) continue;
    if (estados_[e.lugar] == Estado::abierto) {
      throw EInvalidOperation(u"La fórmula se refiere a sí misma en " + arbol_->NombrePaso(e.lugar));
    }
    estados_[e.lugar] = Estado::abierto;
    marcos_.push_back(Marco{e.lugar});
  }
  return resultados_[raiz];
}

// Value of a step whose operands are resolved.
double Evaluador::Resuelve(std::uint32_t paso) {
  const Paso& p = arbol_->Pasos()[paso];
  if (argumentos_.size() < p.cuenta) argumentos_.resize(p.cuenta);
  for (std::uint32_t j = 0; j < p.cuenta; ++j) argumentos_[j] = Convierte(arbol_->Operandos()[p.primero + j]);
  if (p.esLlamada) return formula::Llama(*p.funcion, {argumentos_.data(), p.cuenta});
  if (p.operador == Operador::igual) LanzaOperadorDesconocido();
  return formula::Aplica(p.operador, argumentos_[0], argumentos_[1]);
}

// The resolved operand as a number; EConvertError when its text is none.
double Evaluador::Convierte(const Operando& operando) const {
  const Enlace e = Enlaza(operando);
  switch (e.origen) {
    case Origen::numero:
      return operando.numero;
    case Origen::variable:
      return variables_[e.lugar].esNumero ? variables_[e.lugar].numero
                                          : StrToFloat(variables_[e.lugar].Valor());
    case Origen::enlazada:
      return AcarreaOLanza(e.enlazada->valor);
    case Origen::paso:
      return AcarreaOLanza(resultados_[e.lugar]);
    case Origen::nada:
      break;
  }
  return StrToFloat(arbol_->Vista(operando.texto));
}

void LanzaOperadorDesconocido() { throw Exception(u"Operador desconocido"); }

void LanzaFuncionDesconocida(std::u16string_view nombre) {
  throw Exception(u"Funcion desconocida [" + UnicodeString(nombre) + u"]");
}

}  // namespace vel::formula

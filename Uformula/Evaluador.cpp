#include "Uformula/Evaluador.h"

#include "Uformula/Acarreo.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel::formula {

double Evaluador::Ejecuta() {
  if (versionArbol_ != arbol_->Version() || versionVariables_ != variables_.Version()) {
    directo_ = Prepara();
    versionArbol_ = arbol_->Version();
    versionVariables_ = variables_.Version();
  }
  double valor = 0;
  return directo_ && EjecutaDirecto(valor) ? valor : Evalua(arbol_->Raiz());
}

// Makes the program. False when a step cannot be run in its turn.
bool Evaluador::Prepara() {
  const Serie<Operando>& operandos = arbol_->Operandos();
  const std::uint32_t raiz = arbol_->Raiz();
  programa_.resize(raiz + 1);
  fuentes_.clear();
  usadas_.clear();
  for (std::uint32_t i = 0; i <= raiz; ++i) {
    const Paso& p = arbol_->Pasos()[i];
    Instruccion& in = programa_[i];
    in.operador = p.operador;
    in.funcion = p.funcion;
    if (!p.esLlamada) {
      in.izquierdo = Fuente(operandos[p.primero], i);
      in.derecho = Fuente(operandos[p.primero + 1], i);
      if (in.izquierdo == nullptr || in.derecho == nullptr || p.operador == Operador::igual) return false;
      continue;
    }
    if (p.funcion == nullptr || p.cuenta < p.funcion->argumentos) return false;
    in.primero = static_cast<std::uint32_t>(fuentes_.size());
    in.cuenta = p.cuenta;
    for (std::uint32_t j = p.primero; j < p.primero + p.cuenta; ++j) {
      fuentes_.push_back(Fuente(operandos[j], i));
      if (fuentes_.back() == nullptr) return false;
    }
    if (argumentos_.size() < p.cuenta) argumentos_.resize(p.cuenta);
  }
  return true;
}

// Where the operand's value stands when the step's turn comes; null when it has none by then.
inline const double* Evaluador::Fuente(const Operando& operando, std::uint32_t paso) {
  if (operando.esNumero) return &operando.numero;
  if (operando.paso != kNinguno && !variables_.NombranPasos()) return &programa_[operando.paso].resultado;
  return FuenteDe(Enlaza(operando), paso);
}

const double* Evaluador::FuenteDe(Enlace enlace, std::uint32_t paso) {
  if (enlace.origen == Origen::paso && enlace.lugar < paso) return &programa_[enlace.lugar].resultado;
  if (enlace.origen != Origen::variable) return nullptr;
  usadas_.push_back(enlace.lugar);
  return &variables_[enlace.lugar].numero;
}

// A number, a variable with a value, a node or a call, in this order; a step that the reduction put in its
// place has a name too, and gives way to a variable called like it.
Evaluador::Enlace Evaluador::Enlaza(const Operando& operando) const {
  if (operando.esNumero) return {Origen::numero};
  std::ptrdiff_t variable = -1;
  std::uint32_t paso = operando.paso;
  if (paso == kNinguno) {
    const std::u16string_view nombre = arbol_->Vista(operando.texto);
    variable = variables_.Busca(nombre);
    if (variable < 0) paso = arbol_->BuscaPaso(nombre);
  } else if (variables_.NombranPasos()) {
    variable = variables_.Busca(arbol_->NombrePaso(paso));
  }
  if (variable >= 0) return {Origen::variable, static_cast<std::uint32_t>(variable)};
  return {paso == kNinguno ? Origen::nada : Origen::paso, paso};
}

// False when a variable is no number or a value does not survive as text: then the walk decides.
bool Evaluador::EjecutaDirecto(double& valor) {
  if (variables_.HayTextos()) {
    for (const std::uint32_t lugar : usadas_) {
      if (!variables_[lugar].esNumero) return false;
    }
  }
  Instruccion* const raiz = programa_.data() + arbol_->Raiz();
  for (Instruccion* in = programa_.data(); in != raiz; ++in) {
    if (!Acarrea(Aplica(*in), in->resultado)) return false;
  }
  valor = Aplica(*raiz);
  return true;
}

inline double Evaluador::Aplica(const Instruccion& instruccion) {
  if (instruccion.funcion == nullptr) {
    return formula::Aplica(instruccion.operador, *instruccion.izquierdo, *instruccion.derecho);
  }
  for (std::uint32_t j = 0; j < instruccion.cuenta; ++j) {
    argumentos_[j] = *fuentes_[instruccion.primero + j];
  }
  return instruccion.funcion->valor({argumentos_.data(), instruccion.cuenta});
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
  if (p.esLlamada) return Llama(*p.funcion, {argumentos_.data(), p.cuenta});
  if (p.operador == Operador::igual) LanzaOperadorDesconocido();
  return formula::Aplica(p.operador, argumentos_[0], argumentos_[1]);
}

// The resolved operand as a number; EConvertError when its text is none.
double Evaluador::Convierte(const Operando& operando) const {
  const Enlace e = Enlaza(operando);
  double acarreado = 0;
  switch (e.origen) {
    case Origen::numero:
      return operando.numero;
    case Origen::variable:
      return variables_[e.lugar].esNumero ? variables_[e.lugar].numero
                                          : StrToFloat(variables_[e.lugar].Valor());
    case Origen::paso:
      return Acarrea(resultados_[e.lugar], acarreado) ? acarreado
                                                      : StrToFloat(FloatToStr(resultados_[e.lugar]));
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

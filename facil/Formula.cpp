#include "facil/Formula.h"

#include <algorithm>
#include <cmath>

#include "Uformula/TFormula.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel::facil {

namespace {

using Valor = ValoresFormula::Valor;

bool VaAntes(const Valor& a, std::u16string_view nombre) { return CompareText(a.nombre, nombre) < 0; }

}  // namespace

ValoresFormula::ValoresFormula(std::initializer_list<Valor> valores) : valores_(valores) { Ordena(); }

void ValoresFormula::Ordena() {
  std::stable_sort(valores_.begin(), valores_.end(),
                   [](const Valor& a, const Valor& b) { return VaAntes(a, b.nombre); });
  for (std::size_t i = 0; i < valores_.size(); ++i) {
    const UnicodeString& nombre = valores_[i].nombre;
    if (nombre.empty() || nombre.find(u'=') != UnicodeString::npos) {
      throw EInvalidOperation(u"El nombre de variable \"" + nombre + u"\" no es válido");
    }
    if (i > 0 && SameText(nombre, valores_[i - 1].nombre)) {
      throw EInvalidOperation(u"La variable " + nombre + u" tiene dos valores");
    }
  }
}

std::optional<double> ValoresFormula::Busca(std::u16string_view nombre) const noexcept {
  const auto lugar = std::lower_bound(valores_.begin(), valores_.end(), nombre, VaAntes);
  if (lugar == valores_.end() || !SameText(lugar->nombre, nombre)) return {};
  return lugar->numero;
}

struct Formula::Motor {
  TFormula formula;
  /// Of `formula`, in the order of the variables.
  std::vector<TVariableEnlazada> enlaces;
};

Formula::Formula(Formula&&) noexcept = default;
Formula& Formula::operator=(Formula&&) noexcept = default;
Formula::~Formula() = default;

Formula::Formula(const Texto& texto) : motor_(std::make_unique<Motor>()) {
  RevisionFormula revision = Revisa(texto);
  if (!revision.Sirve()) {
    const NotaFormula& problema = revision.problemas.front();
    throw EInvalidOperation(u"Fórmula, posición " + IntToStr(static_cast<std::int64_t>(problema.posicion)) +
                            u": " + problema.mensaje);
  }
  variables_ = std::move(revision.variables);
  for (const UnicodeString& nombre : variables_)
    motor_->enlaces.push_back(motor_->formula.EnlazaVariable(nombre));
  try {
    motor_->formula.NewFormula(texto);
  } catch (const Exception&) {
    // It is built: only its first evaluation failed, as its variables have no values yet.
  }
}

double Formula::Evalua(const ValoresFormula& valores) {
  if (motor_ == nullptr) throw EInvalidOperation(u"La fórmula ya se entregó");
  for (std::size_t i = 0; i < variables_.size(); ++i) {
    const std::optional<double> valor = valores.Busca(variables_[i]);
    if (!valor.has_value()) throw EInvalidOperation(u"Falta el valor de la variable " + variables_[i]);
    if (!std::isfinite(*valor))
      throw EConvertError(u"El valor de la variable " + variables_[i] + u" no es un número");
    motor_->enlaces[i].Asigna(*valor);
  }
  return motor_->formula.Execute();
}

double Evalua(const Texto& formula, const ValoresFormula& valores) {
  return Formula(formula).Evalua(valores);
}

}  // namespace vel::facil

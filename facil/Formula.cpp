#include "facil/Formula.h"

#include <algorithm>
#include <cmath>

#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel::facil {

namespace {

using Valor = ValoresFormula::Valor;

bool VaAntes(const Valor& a, std::u16string_view nombre) { return CompareText(a.nombre, nombre) < 0; }

}  // namespace

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

Formula::Formula(const Texto& texto) : formula_(std::make_unique<TFormula>()) {
  RevisionFormula revision = Revisa(texto);
  if (!revision.Sirve()) {
    const NotaFormula& problema = revision.problemas.front();
    throw EInvalidOperation(u"Fórmula, posición " + IntToStr(static_cast<std::int64_t>(problema.posicion)) +
                            u": " + problema.mensaje);
  }
  variables_ = std::move(revision.variables);
  for (const UnicodeString& nombre : variables_) enlaces_.push_back(formula_->EnlazaVariable(nombre));
  try {
    formula_->NewFormula(texto);
  } catch (const Exception&) {
    // It is built: only its first evaluation failed, as its variables have no values yet.
  }
}

double Formula::Evalua(const ValoresFormula& valores) {
  for (std::size_t i = 0; i < variables_.size(); ++i) {
    const std::optional<double> valor = valores.Busca(variables_[i]);
    if (!valor.has_value()) throw EInvalidOperation(u"Falta el valor de la variable " + variables_[i]);
    if (!std::isfinite(*valor))
      throw EConvertError(u"El valor de la variable " + variables_[i] + u" no es un número");
    enlaces_[i].Asigna(*valor);
  }
  return formula_->Execute();
}

double Evalua(const Texto& formula, const ValoresFormula& valores) {
  return Formula(formula).Evalua(valores);
}

}  // namespace vel::facil

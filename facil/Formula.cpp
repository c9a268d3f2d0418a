#include "facil/Formula.h"

#include <algorithm>

#include "Uformula/TFormula.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "framework/TStringList.h"

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

bool ValoresFormula::Contiene(std::u16string_view nombre) const noexcept {
  const auto lugar = std::lower_bound(valores_.begin(), valores_.end(), nombre, VaAntes);
  return lugar != valores_.end() && SameText(lugar->nombre, nombre);
}

Formula::Formula(const Texto& texto) : formula_(std::make_unique<TFormula>()) {
  RevisionFormula revision = Revisa(texto);
  if (!revision.Sirve()) {
    const NotaFormula& problema = revision.problemas.front();
    throw EInvalidOperation(u"Fórmula, posición " + IntToStr(static_cast<std::int64_t>(problema.posicion)) +
                            u": " + problema.mensaje);
  }
  variables_ = std::move(revision.variables);
  try {
    formula_->NewFormula(texto);
  } catch (const Exception&) {
    // It is built: only its first evaluation failed, as its variables have no values yet.
  }
}

Formula::Formula(Formula&&) noexcept = default;
Formula& Formula::operator=(Formula&&) noexcept = default;
Formula::~Formula() = default;

double Formula::Evalua(const ValoresFormula& valores) {
  for (const UnicodeString& nombre : variables_) {
    if (!valores.Contiene(nombre)) throw EInvalidOperation(u"Falta el valor de la variable " + nombre);
  }
  TStringList lineas;
  for (const Valor& valor : valores.Lista()) lineas.Add(valor.nombre + u'=' + FloatToStr(valor.numero));
  formula_->SetVariables(lineas);
  return formula_->Execute();
}

double Evalua(const Texto& formula, const ValoresFormula& valores) {
  return Formula(formula).Evalua(valores);
}

}  // namespace vel::facil

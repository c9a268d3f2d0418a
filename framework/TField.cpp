#include <utility>

#include "framework/Columnas.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "framework/TClientDataSet.h"

namespace vel {

using conjunto::Clase;
using conjunto::Columna;

TField::TField(conjunto::Estado& estado, const TFieldDef& def)
    : estado_(estado), columna_(std::make_unique<Columna>(def)) {}

TField::~TField() = default;

const UnicodeString& TField::FieldName() const noexcept { return columna_->def.Name; }

TFieldType TField::DataType() const noexcept { return columna_->def.DataType; }

int TField::Size() const noexcept { return columna_->def.Size; }

bool TField::Required() const noexcept { return columna_->def.Required; }

bool TField::IsNull() const noexcept {
  if (estado_.actual >= estado_.registros) return true;
  if (columna_->clase == Clase::Anidado) {
    const auto& anidado = columna_->anidados[estado_.actual];
    return anidado == nullptr || anidado->IsEmpty();
  }
  return columna_->conValor[estado_.actual] == 0;
}

UnicodeString TField::AsString() const {
  return estado_.actual < estado_.registros ? columna_->LeeTexto(estado_.actual) : UnicodeString();
}

double TField::AsFloat() const {
  if (estado_.actual >= estado_.registros) return 0;
  const Columna& c = *columna_;
  const std::size_t i = estado_.actual;
  switch (c.clase) {
    case Clase::Real:
    case Clase::Fecha:
      return c.reales[i];
    case Clase::Entero:
      return static_cast<double>(c.enteros[i]);
    case Clase::Booleano:
      return c.enteros[i] != 0 ? -1 : 0;
    case Clase::Texto:
      break;
    case Clase::Anidado:
      c.FallaTipo();
  }
  if (c.conValor[i] == 0) return 0;
  try {
    return StrToFloat(c.textos[i]);
  } catch (const EConvertError& e) {
    throw EConvertError(e.Message() + u" (campo '" + c.def.Name + u"')");
  }
}

std::int64_t TField::AsLargeInt() const {
  if (IsNull()) return 0;
  if (columna_->clase == Clase::Entero) return columna_->enteros[estado_.actual];
  if (columna_->clase == Clase::Anidado) columna_->FallaTipo();
  try {
    return Value().AsInt64();
  } catch (const Exception& e) {
    throw EConvertError(e.Message() + u" (campo '" + FieldName() + u"')");
  }
}

std::int32_t TField::AsInteger() const {
  const std::int64_t ancho = AsLargeInt();
  if (!std::in_range<std::int32_t>(ancho)) {
    throw EConvertError(IntToStr(ancho) + u" está fuera de rango (campo '" + FieldName() + u"')");
  }
  return static_cast<std::int32_t>(ancho);
}

bool TField::AsBoolean() const {
  if (IsNull()) return false;
  if (columna_->clase == Clase::Booleano) return columna_->enteros[estado_.actual] != 0;
  try {
    return Value().AsBoolean();
  } catch (const EConvertError& e) {
    throw EConvertError(e.Message() + u" (campo '" + FieldName() + u"')");
  }
}

TDateTime TField::AsDateTime() const {
  if (IsNull()) return {};
  try {
    return Value().AsDateTime();
  } catch (const EConvertError& e) {
    throw EConvertError(e.Message() + u" (campo '" + FieldName() + u"')");
  }
}

Variant TField::Value() const {
  return estado_.actual < estado_.registros ? columna_->Lee(estado_.actual) : Variant::Null();
}

std::u16string_view TField::TextView() const {
  if (columna_->clase != Clase::Texto) columna_->FallaTipo();
  return estado_.actual < estado_.registros ? std::u16string_view(columna_->textos[estado_.actual])
                                            : std::u16string_view();
}

Columna& TField::EnEdicion() {
  if (estado_.modo == conjunto::Estado::Modo::Lectura) {
    throw EDatabaseError(u"El conjunto de datos no está en edición (campo '" + FieldName() + u"')");
  }
  return *columna_;
}

void TField::SetAsString(std::u16string_view valor) { EnEdicion().PonTexto(estado_.actual, valor); }

void TField::SetAsFloat(double valor) { EnEdicion().PonReal(estado_.actual, valor); }

void TField::SetAsInteger(std::int32_t valor) { EnEdicion().PonEntero(estado_.actual, valor); }

void TField::SetAsLargeInt(std::int64_t valor) { EnEdicion().PonEntero(estado_.actual, valor); }

void TField::SetAsBoolean(bool valor) { EnEdicion().PonBooleano(estado_.actual, valor); }

void TField::SetAsDateTime(TDateTime valor) { EnEdicion().PonFecha(estado_.actual, valor); }

void TField::SetValue(const Variant& valor) { EnEdicion().Pon(estado_.actual, valor); }

void TField::Clear() { EnEdicion().Anula(estado_.actual); }

TClientDataSet* TField::NestedDataSet() const {
  if (columna_->clase != Clase::Anidado || estado_.actual >= estado_.registros) return nullptr;
  return &columna_->Anidado(estado_.actual);
}

}  // namespace vel

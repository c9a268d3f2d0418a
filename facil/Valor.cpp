#include "facil/Valor.h"

#include "framework/Excepciones.h"

namespace vel::facil {

namespace {

TFieldType TipoDe(const Variant& valor) {
  switch (valor.GetKind()) {
    case Variant::Kind::Integer:
    case Variant::Kind::Int64:
      return TFieldType::ftInteger;
    case Variant::Kind::Double:
      return TFieldType::ftFloat;
    case Variant::Kind::Date:
      return TFieldType::ftDateTime;
    case Variant::Kind::Boolean:
      return TFieldType::ftBoolean;
    case Variant::Kind::String:
      return TFieldType::ftString;
    case Variant::Kind::Empty:
    case Variant::Kind::Null:
    case Variant::Kind::Array:
      break;
  }
  throw EInvalidOperation(u"Una condición necesita un valor: ni un nulo ni un arreglo lo son");
}

}  // namespace

Sql::Sql(const Texto& sql) : texto(sql.Vista()) {
  if (TrimView(texto).empty()) throw EInvalidOperation(u"Falta el SQL de una condición");
}

Valor::Valor(TFieldType tipo, Variant valor) noexcept : tipo_(tipo), valor_(std::move(valor)) {}

Valor::Valor(const Variant& valor) : Valor(TipoDe(valor), valor) {}

Valor::Valor(const Sql& sql) : Valor(TFieldType::ftDataSet, Variant(sql.texto)) {}

TFieldType Valor::TipoComun(TFieldType uno, TFieldType otro) {
  const auto esNumero = [](TFieldType tipo) {
    return tipo == TFieldType::ftInteger || tipo == TFieldType::ftFloat;
  };
  if (uno == otro) return uno;
  if (esNumero(uno) && esNumero(otro)) return TFieldType::ftFloat;
  throw EInvalidOperation(u"Los valores de una condición son de tipos distintos");
}

Valores::Valores(std::initializer_list<Valor> valores) {
  valores_.reserve(valores.size());
  for (const Valor& valor : valores) Agrega(valor);
}

Valores::Valores(const Sql& subconsulta) : tipo_(TFieldType::ftDataSet), subconsulta_(true) {
  valores_.emplace_back(subconsulta.texto);
}

void Valores::Agrega(Valor valor) {
  if (!valor.Hay()) {
    faltan_ = true;
    return;
  }
  tipo_ = valores_.empty() ? valor.Tipo() : Valor::TipoComun(tipo_, valor.Tipo());
  valores_.push_back(valor.Saca());
}

Variant Valores::Saca() {
  return subconsulta_ ? std::move(valores_.front()) : VarArrayOf(std::move(valores_));
}

}  // namespace vel::facil

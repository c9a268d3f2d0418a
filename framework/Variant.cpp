#include "framework/Variant.h"

#include <cmath>
#include <utility>

#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel {
namespace {

constexpr std::u16string_view kNombres[] = {u"vacío",    u"nulo",  u"entero",   u"entero de 64 bits",
                                            u"flotante", u"fecha", u"booleano", u"texto",
                                            u"arreglo"};

[[noreturn]] void FallaConversion(Variant::Kind de, std::u16string_view a) {
  throw EVariantTypeCastError(u"No se puede convertir un valor de tipo " +
                              UnicodeString(kNombres[static_cast<std::size_t>(de)]) + u" a " +
                              UnicodeString(a));
}

// Rounds half to even, which is the floating-point unit's standing mode.
std::int64_t AEntero(double valor, Variant::Kind de) {
  const double redondo = std::nearbyint(valor);
  // 2^63 itself is a double and does not fit.
  constexpr double kLimite = 9223372036854775808.0;
  if (!(redondo >= -kLimite && redondo < kLimite)) FallaConversion(de, u"entero: está fuera de rango");
  return static_cast<std::int64_t>(redondo);
}

}  // namespace

Variant Variant::Null() {
  Variant v;
  v.valor_ = Nulo{};
  return v;
}

void Variant::LanzaFueraDeRango() { FallaConversion(Kind::Int64, u"entero: está fuera de rango"); }

UnicodeString Variant::AsString() const {
  switch (GetKind()) {
    case Kind::Empty:
    case Kind::Null:
      return {};
    case Kind::Integer:
      return IntToStr(std::get<std::int32_t>(valor_));
    case Kind::Int64:
      return IntToStr(std::get<std::int64_t>(valor_));
    case Kind::Double:
      return FloatToStr(std::get<double>(valor_));
    case Kind::Date:
      return DateTimeToStr(std::get<TDateTime>(valor_));
    case Kind::Boolean:
      return std::get<bool>(valor_) ? u"True" : u"False";
    case Kind::String:
      return std::get<UnicodeString>(valor_);
    case Kind::Array:
      break;
  }
  FallaConversion(GetKind(), u"texto");
}

double Variant::AsDouble() const {
  switch (GetKind()) {
    case Kind::Empty:
      return 0;
    case Kind::Integer:
      return std::get<std::int32_t>(valor_);
    case Kind::Int64:
      return static_cast<double>(std::get<std::int64_t>(valor_));
    case Kind::Double:
      return std::get<double>(valor_);
    case Kind::Date:
      return std::get<TDateTime>(valor_).Val();
    case Kind::Boolean:
      return std::get<bool>(valor_) ? -1 : 0;
    case Kind::String:
      return StrToFloat(std::get<UnicodeString>(valor_));
    case Kind::Null:
    case Kind::Array:
      break;
  }
  FallaConversion(GetKind(), u"flotante");
}

std::int64_t Variant::AsInt64() const {
  switch (GetKind()) {
    case Kind::Int64:
      return std::get<std::int64_t>(valor_);
    case Kind::String: {
      std::int64_t entero = 0;
      if (TryStrToInt64(std::get<UnicodeString>(valor_), entero)) return entero;
      return AEntero(AsDouble(), GetKind());
    }
    default:
      return AEntero(AsDouble(), GetKind());
  }
}

std::int32_t Variant::AsInteger() const {
  const std::int64_t ancho = AsInt64();
  if (!std::in_range<std::int32_t>(ancho)) FallaConversion(GetKind(), u"entero: está fuera de rango");
  return static_cast<std::int32_t>(ancho);
}

bool Variant::AsBoolean() const {
  if (GetKind() == Kind::String) return StrToBool(std::get<UnicodeString>(valor_));
  return AsDouble() != 0;
}

TDateTime Variant::AsDateTime() const {
  if (GetKind() == Kind::String) return StrToDateTime(std::get<UnicodeString>(valor_));
  return TDateTime(AsDouble());
}

const VariantArray& Variant::AsArray() const {
  const VariantArray* const arreglo = std::get_if<VariantArray>(&valor_);
  if (arreglo == nullptr) FallaConversion(GetKind(), u"arreglo");
  return *arreglo;
}

VariantArray& Variant::AsArray() {
  // The const twin does the test; the object itself is not const.
  return const_cast<VariantArray&>(std::as_const(*this).AsArray());
}

bool operator==(const Variant& a, const Variant& b) { return a.valor_ == b.valor_; }

bool operator==(const VariantArray& a, const VariantArray& b) { return a.low == b.low && a.items == b.items; }

Variant VarArrayOf(std::vector<Variant> valores) { return Variant(VariantArray{0, std::move(valores)}); }

}  // namespace vel

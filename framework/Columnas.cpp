#include "framework/Columnas.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel::conjunto {
namespace {

// Room for more values, doubled when it has to grow.
template <typename Valores>
void HazLugar(Valores& valores, std::size_t mas) {
  if (valores.capacity() - valores.size() < mas)
    valores.reserve(std::max(valores.size() + mas, 2 * valores.capacity()));
}

UnicodeString EnCampo(const TFieldDef& def) { return u" (campo '" + def.Name + u"')"; }

}  // namespace

Columna::Columna(const TFieldDef& definicion) : def(definicion) {
  const TipoDeCampo& tipo = TipoDe(def.DataType);
  if (!tipo.clase) {
    throw EDatabaseError(u"El tipo del campo '" + def.Name +
                         u"' no se puede guardar en un conjunto de datos");
  }
  clase = *tipo.clase;
  rango = tipo.rango;
}

void Columna::FallaTipo() const {
  throw EDatabaseError(u"El valor no corresponde al tipo del campo '" + def.Name + u"'");
}

void Columna::Dimensiona(std::size_t registros) {
  conValor.resize(registros);
  switch (clase) {
    case Clase::Entero:
    case Clase::Booleano:
      enteros.resize(registros);
      break;
    case Clase::Real:
    case Clase::Fecha:
      reales.resize(registros);
      break;
    case Clase::Texto:
      textos.resize(registros);
      break;
    case Clase::Anidado:
      anidados.resize(registros);
      break;
  }
}

void Columna::Reserva(std::size_t registros) {
  conValor.reserve(registros);
  switch (clase) {
    case Clase::Entero:
    case Clase::Booleano:
      enteros.reserve(registros);
      break;
    case Clase::Real:
    case Clase::Fecha:
      reales.reserve(registros);
      break;
    case Clase::Texto:
      textos.reserve(registros);
      break;
    case Clase::Anidado:
      anidados.reserve(registros);
      break;
  }
}

void Columna::Borra(std::size_t registro) {
  const auto quita = [registro](auto& valores) {
    if (!valores.empty()) valores.erase(valores.begin() + static_cast<std::ptrdiff_t>(registro));
  };
  quita(conValor);
  quita(enteros);
  quita(reales);
  quita(textos);
  quita(anidados);
}

void Columna::Anula(std::size_t registro) {
  conValor[registro] = 0;
  switch (clase) {
    case Clase::Entero:
    case Clase::Booleano:
      enteros[registro] = 0;
      break;
    case Clase::Real:
    case Clase::Fecha:
      reales[registro] = 0;
      break;
    case Clase::Texto:
      textos[registro].clear();
      break;
    case Clase::Anidado:
      anidados[registro].reset();
      break;
  }
}

TClientDataSet& Columna::Anidado(std::size_t registro) {
  std::unique_ptr<TClientDataSet>& anidado = anidados[registro];
  if (anidado == nullptr) {
    auto nuevo = std::make_unique<TClientDataSet>();
    nuevo->CreateDataSet(def.ChildDefs);
    anidado = std::move(nuevo);
  }
  return *anidado;
}

void Columna::Trae(std::size_t registro, Columna& guardado) noexcept {
  const auto cambia = [registro](auto& valores, auto& previos) {
    if (!previos.empty()) std::swap(valores[registro], previos.front());
  };
  cambia(conValor, guardado.conValor);
  cambia(enteros, guardado.enteros);
  cambia(reales, guardado.reales);
  cambia(textos, guardado.textos);
  cambia(anidados, guardado.anidados);
}

void Columna::AgregaCopias(const Columna& otra, std::size_t cuenta) {
  // Room first: the other column may be this one, whose values must not move while they are read.
  const auto copia = [cuenta](auto& hacia, const auto& desde) {
    HazLugar(hacia, cuenta);
    if (&hacia != &desde) {
      hacia.insert(hacia.end(), desde.begin(), desde.begin() + static_cast<std::ptrdiff_t>(cuenta));
      return;
    }
    for (std::size_t i = 0; i < cuenta; ++i) hacia.push_back(desde[i]);
  };
  switch (clase) {
    case Clase::Entero:
    case Clase::Booleano:
      copia(enteros, otra.enteros);
      break;
    case Clase::Real:
    case Clase::Fecha:
      copia(reales, otra.reales);
      break;
    case Clase::Texto:
      copia(textos, otra.textos);
      break;
    case Clase::Anidado:
      HazLugar(anidados, cuenta);
      for (std::size_t i = 0; i < cuenta; ++i) {
        auto copiado = otra.anidados[i] == nullptr ? nullptr : std::make_unique<TClientDataSet>();
        if (copiado != nullptr) copiado->AssignData(*otra.anidados[i]);
        anidados.push_back(std::move(copiado));
      }
      break;
  }
  copia(conValor, otra.conValor);
}

Variant Columna::Lee(std::size_t registro) const {
  if (clase == Clase::Anidado) FallaTipo();
  if (conValor[registro] == 0) return Variant::Null();
  switch (clase) {
    case Clase::Entero:
      if (std::in_range<std::int32_t>(enteros[registro]))
        return Variant(static_cast<std::int32_t>(enteros[registro]));
      return Variant(enteros[registro]);
    case Clase::Booleano:
      return Variant(enteros[registro] != 0);
    case Clase::Real:
      return Variant(reales[registro]);
    case Clase::Fecha:
      return Variant(TDateTime(reales[registro]));
    default:
      return Variant(textos[registro]);
  }
}

UnicodeString Columna::LeeTexto(std::size_t registro) const {
  if (def.DataType == TFieldType::ftTime && conValor[registro] != 0) {
    // A time has no date to show.
    const UnicodeString texto = DateTimeToStr(TDateTime(reales[registro]));
    const std::size_t blanco = texto.find(u' ');
    return blanco == UnicodeString::npos ? u"00:00:00" : texto.substr(blanco + 1);
  }
  return Lee(registro).AsString();
}

bool Columna::CabeEntero(std::int64_t valor) const noexcept { return CabeReal(static_cast<double>(valor)); }

bool Columna::CabeReal(double valor) const noexcept {
  // What is no number is left to those who write it.
  return !(valor < rango.minimo || valor > rango.maximo);
}

double Columna::MomentoPropio(double valor) const {
  try {
    DecodeDate(TDateTime(valor));
  } catch (const EConvertError&) {
    throw EDatabaseError(FloatToStr(valor) + u" no es una fecha válida" + EnCampo(def));
  }
  if (def.DataType == TFieldType::ftDate) return std::trunc(valor);
  return def.DataType == TFieldType::ftTime ? std::abs(valor - std::trunc(valor)) : valor;
}

bool Columna::CabeTexto(std::u16string_view valor) const noexcept {
  return def.Size <= 0 || valor.size() <= static_cast<std::size_t>(def.Size);
}

void Columna::PonEntero(std::size_t registro, std::int64_t valor) {
  switch (clase) {
    case Clase::Entero:
      if (!CabeEntero(valor)) throw EDatabaseError(IntToStr(valor) + u" está fuera de rango" + EnCampo(def));
      enteros[registro] = valor;
      break;
    case Clase::Booleano:
      enteros[registro] = valor != 0 ? 1 : 0;
      break;
    case Clase::Real:
    case Clase::Fecha:
      return PonReal(registro, static_cast<double>(valor));
    case Clase::Texto:
      return PonTexto(registro, IntToStr(valor));
    case Clase::Anidado:
      FallaTipo();
  }
  conValor[registro] = 1;
}

void Columna::PonReal(std::size_t registro, double valor) {
  switch (clase) {
    case Clase::Entero:
      try {
        return PonEntero(registro, Variant(valor).AsInt64());
      } catch (const EVariantTypeCastError&) {
        throw EDatabaseError(FloatToStr(valor) + u" está fuera de rango" + EnCampo(def));
      }
    case Clase::Booleano:
      enteros[registro] = valor != 0 ? 1 : 0;
      break;
    case Clase::Real:
      if (!CabeReal(valor)) throw EDatabaseError(FloatToStr(valor) + u" está fuera de rango" + EnCampo(def));
      reales[registro] = valor;
      break;
    case Clase::Fecha:
      reales[registro] = MomentoPropio(valor);
      break;
    case Clase::Texto:
      return PonTexto(registro, FloatToStr(valor));
    case Clase::Anidado:
      FallaTipo();
  }
  conValor[registro] = 1;
}

void Columna::PonFecha(std::size_t registro, TDateTime valor) {
  if (clase == Clase::Texto) return PonTexto(registro, DateTimeToStr(valor));
  PonReal(registro, valor.Val());
}

void Columna::PonBooleano(std::size_t registro, bool valor) {
  if (clase == Clase::Texto) return PonTexto(registro, Variant(valor).AsString());
  // Only a boolean field keeps a truth value as 1; numbers keep the framework's -1.
  PonEntero(registro, valor && clase != Clase::Booleano ? -1 : static_cast<std::int64_t>(valor));
}

void Columna::PonTexto(std::size_t registro, std::u16string_view valor) {
  if (clase == Clase::Texto) {
    if (!CabeTexto(valor)) throw EDatabaseError(u"El texto es más largo que el campo '" + def.Name + u"'");
    textos[registro] = valor;
    conValor[registro] = 1;
    return;
  }
  if (clase == Clase::Anidado) FallaTipo();
  // What a user left empty is no value.
  if (TrimView(valor).empty()) return Anula(registro);
  try {
    switch (clase) {
      case Clase::Entero:
        return PonEntero(registro, StrToInt64(valor));
      case Clase::Booleano:
        return PonBooleano(registro, StrToBool(valor));
      case Clase::Fecha:
        return PonFecha(registro, StrToDateTime(valor));
      default:
        return PonReal(registro, StrToFloat(valor));
    }
  } catch (const EConvertError& e) {
    throw EConvertError(e.Message() + EnCampo(def));
  }
}

void Columna::Pon(std::size_t registro, const Variant& valor) {
  switch (valor.GetKind()) {
    case Variant::Kind::Empty:
    case Variant::Kind::Null:
      return Anula(registro);
    case Variant::Kind::Integer:
    case Variant::Kind::Int64:
      return PonEntero(registro, valor.AsInt64());
    case Variant::Kind::Double:
      return PonReal(registro, valor.AsDouble());
    case Variant::Kind::Date:
      return PonFecha(registro, valor.AsDateTime());
    case Variant::Kind::Boolean:
      return PonBooleano(registro, valor.AsBoolean());
    case Variant::Kind::String:
      return PonTexto(registro, *valor.TextPtr());
    case Variant::Kind::Array:
      FallaTipo();
  }
}

bool Columna::Iguala(std::size_t registro, const Variant& valor) const {
  if (clase == Clase::Anidado) FallaTipo();
  if (valor.IsEmpty() || valor.IsNull()) return conValor[registro] == 0;
  if (conValor[registro] == 0) return false;
  try {
    switch (clase) {
      case Clase::Entero:
        return enteros[registro] == valor.AsInt64() &&
               valor.AsDouble() == static_cast<double>(enteros[registro]);
      case Clase::Booleano:
        return (enteros[registro] != 0) == valor.AsBoolean();
      case Clase::Real:
        return reales[registro] == valor.AsDouble();
      case Clase::Fecha:
        return reales[registro] == MomentoPropio(valor.AsDateTime().Val());
      default:
        return valor.TextPtr() != nullptr ? textos[registro] == *valor.TextPtr()
                                          : textos[registro] == valor.AsString();
    }
  } catch (const Exception&) {
    // A value that cannot be one of this column's.
    return false;
  }
}

}  // namespace vel::conjunto

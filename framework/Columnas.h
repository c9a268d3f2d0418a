#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "framework/TClientDataSet.h"
#include "framework/Texto.h"
#include "framework/TiposDeCampo.h"
#include "framework/Variant.h"

// How a client data set keeps its records: one column for each field, each with the values of one kind.
namespace vel::conjunto {

/// The values of one field, by record. Only the vector of the column's kind is used; a null record holds
/// zero or "" there, so that readers need not look at the flag.
struct Columna {
  explicit Columna(const TFieldDef& definicion);

  TFieldDef def;
  Clase clase = Clase::Texto;
  Rango rango;
  std::vector<std::uint8_t> conValor;
  std::vector<std::int64_t> enteros;
  std::vector<double> reales;
  std::vector<UnicodeString> textos;
  /// Null for a record whose nested data set was not needed yet; it is empty.
  std::vector<std::unique_ptr<TClientDataSet>> anidados;

  /// Makes the column `registros` long; new records are null (nested ones empty).
  void Dimensiona(std::size_t registros);
  /// Makes room for that many records, so that growing up to them moves none.
  void Reserva(std::size_t registros);
  void Borra(std::size_t registro);
  void Anula(std::size_t registro);
  /// The nested data set of a record, made when it is first needed.
  TClientDataSet& Anidado(std::size_t registro);
  /// Takes back the record that a column of one record keeps: needs no memory.
  void Trae(std::size_t registro, Columna& guardado) noexcept;
  /// Appends copies of the other column's first `cuenta` records; both have the same definition. Throws
  /// with the column as it was, or longer than before; the caller cuts it back.
  void AgregaCopias(const Columna& otra, std::size_t cuenta);

  Variant Lee(std::size_t registro) const;
  UnicodeString LeeTexto(std::size_t registro) const;
  /// Writers convert to the column's kind and check its range; they raise EConvertError or EDatabaseError
  /// naming the field, and the record keeps what it had.
  void PonEntero(std::size_t registro, std::int64_t valor);
  void PonReal(std::size_t registro, double valor);
  void PonFecha(std::size_t registro, TDateTime valor);
  void PonBooleano(std::size_t registro, bool valor);
  void PonTexto(std::size_t registro, std::u16string_view valor);
  void Pon(std::size_t registro, const Variant& valor);

  /// True when the value, converted to the column's kind, is the one of the record.
  bool Iguala(std::size_t registro, const Variant& valor) const;

  bool CabeEntero(std::int64_t valor) const noexcept;
  bool CabeReal(double valor) const noexcept;
  /// The part of a date that the field's type keeps. Raises EDatabaseError for what is no date.
  double MomentoPropio(double valor) const;
  bool CabeTexto(std::u16string_view valor) const noexcept;
  [[noreturn]] void FallaTipo() const;
};

/// What a packet held that a data set has no place for, as XML in UTF-8 ready to be written back: other
/// programs read the same files.
struct Resto {
  /// Attributes of a FIELD, each with a blank before it.
  std::string atributos;
  /// Elements within a FIELD, or within METADATA, beside its FIELDS.
  std::string elementos;
  /// Of each field, in order; empty for fields that come from no packet.
  std::vector<Resto> campos;
};

/// Everything of a data set but its handle.
struct Estado {
  enum class Modo : std::uint8_t { Lectura, Edicion, Alta };

  /// Another one for each structure: who keeps a copy can tell whether the fields are still those it looked
  /// up.
  std::shared_ptr<const void> estructura = std::make_shared<char>();
  std::vector<TFieldDef> defs;
  std::vector<std::unique_ptr<TField>> campos;
  /// Indexes of `campos` in the order of their names.
  std::vector<std::size_t> porNombre;
  std::size_t registros = 0;
  std::size_t actual = 0;
  bool eof = true;
  bool bof = true;
  Modo modo = Modo::Lectura;
  /// The record under edit as it was: one-record columns, in field order.
  std::vector<Columna> previo;
  Resto resto;

  static std::unique_ptr<Estado> Crea(std::vector<TFieldDef> definiciones, int nivel = 1);
  /// The state of a data set.
  static Estado& De(const TClientDataSet& conjunto) noexcept;
  Columna& ColumnaDe(std::size_t campo) const;
  /// Index of the field of that name, or -1.
  std::ptrdiff_t Busca(std::u16string_view nombre) const noexcept;
  /// Makes every column this long; throws with all of them as they were.
  void Dimensiona(std::size_t nuevos);
  void Reserva(std::size_t cuantos);
  /// Raises EDatabaseError when the record under edit lacks a required value.
  void ExigeCompleto() const;
  /// Ends the edit: what stands in the record stays.
  void Publica() noexcept;
  /// Bof and Eof of a data set that was just filled: the first record is current.
  void AlPrincipio() noexcept;
};

/// Reads a packet into a new state; SaveToXML's inverse.
std::unique_ptr<Estado> LeePaquete(std::string_view bytes, std::u16string_view nombre);

/// Attribute of a row that tells what a change log says of it.
inline constexpr std::string_view kEstadoFila = "RowState";
/// More levels than any catalog of the suite; a bound for hostile packets.
inline constexpr int kNivelesMaximos = 16;

}  // namespace vel::conjunto

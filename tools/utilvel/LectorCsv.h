#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/utilvel/Sistema.h"

namespace utilvel {

/// Reads CSV record by record (RFC 4180): fields parted by commas, those between quotes may hold commas, line
/// breaks and doubled quotes. "\r\n" and "\n" end a record; empty lines and a byte-order mark are skipped.
/// Constant memory: a record of more than kMaximo bytes, which is mostly a quote that is never closed, raises
/// Falla (Datos).
///
/// A quote inside a field that does not begin with one is a character like others. What follows the closing
/// quote of a field is added to it.
class LectorCsv {
 public:
  static constexpr std::size_t kMaximo = 1U << 20U;
  /// "-" is standard input.
  explicit LectorCsv(const std::string& ruta) : lector_(ruta) {}

  /// Reads the next record; false at the end.
  bool Siguiente();
  /// The record as it is written, without its line break. As all that this class gives, valid until
  /// Siguiente.
  std::string_view Registro() const noexcept { return registro_; }
  /// Its fields, without their quotes.
  const std::vector<std::string_view>& Campos() const noexcept { return campos_; }
  /// True for a last record whose last field has no closing quote.
  bool SinCerrar() const noexcept { return sinCerrar_; }
  /// 1-based line on which the record begins.
  std::uint64_t Linea() const noexcept { return linea_; }

  /// Bytes read so far, and those of the file (0 when they are not known).
  std::uint64_t Leido() const noexcept { return leido_; }
  std::uint64_t Total() const noexcept { return lector_.Total(); }

 private:
  std::size_t FinDeRegistro();
  std::size_t FinEntreComillas();
  bool Llena();
  void Parte();
  std::string_view SinComillas(std::size_t& lugar);

  Lector lector_;
  std::vector<char> bloque_;
  std::size_t inicio_ = 0;
  std::size_t fin_ = 0;
  bool acabo_ = false;
  std::uint64_t leido_ = 0;
  std::uint64_t linea_ = 0;
  std::uint64_t lineaSiguiente_ = 1;
  bool conComillas_ = false;
  bool sinCerrar_ = false;
  std::string_view registro_;
  std::vector<std::string_view> campos_;
  // Fields whose text is not one piece of the record.
  std::string textos_;
};

}  // namespace utilvel

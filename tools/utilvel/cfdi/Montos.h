#pragma once

#include <string>
#include <string_view>

#include "Ucalculocfdi/TMontoFiscal.h"

// Exact decimals of an invoice: whole numbers of 128 bits, never doubles.
namespace utilvel::cfdi {

__extension__ typedef __int128 Entero128;  // NOLINT(modernize-use-using): ISO C++ has no such type

using vel::TMontoFiscal;

/// Decimals that a printed figure may have (Anexo 20, type t_Importe), and those of an equivalence between
/// currencies (complement of payments 2.0).
inline constexpr int kDecimales = 6;
inline constexpr int kDecimalesEquivalencia = 10;
/// Decimals with which quotients are added.
inline constexpr int kDecimalesCociente = 12;

/// An amount that was read, or why it was not, as the end of a Spanish sentence; null when it was.
struct Lectura {
  TMontoFiscal monto;
  const char* falla = nullptr;
};

/// Reads digits with an optional "." and at most `maximo` decimals, which stay as many as are written; blanks
/// around are ignored. A sign, an exponent, and a number of more than 9 x 10^12 at six decimals are refused.
///
///     LeeMonto("10.50", 6).monto    // {1050, 2}
Lectura LeeMonto(std::string_view texto, int maximo) noexcept;

/// Raises vel::EInvalidOperation: a figure does not fit.
[[noreturn]] void FallaTamano();

/// 10^exponente, for 0 to 30.
Entero128 Potencia(int exponente);

/// The product; raises as FallaTamano when it does not fit.
Entero128 Multiplica(Entero128 a, Entero128 b);
/// The amount in units of 10^-decimales, which are no fewer than its own.
Entero128 Unidades(const TMontoFiscal& monto, int decimales);
/// n / d for d > 0, halves away from zero.
Entero128 DivideRedondea(Entero128 n, Entero128 d);
/// `unidades` of 10^-escala with `decimales` decimals, no more than `escala`; halves away from zero.
TMontoFiscal Redondea(Entero128 unidades, int escala, int decimales);

/// A sum of amounts, in units of 10^-escala.
class Suma {
 public:
  explicit Suma(int escala = kDecimales) noexcept : escala_(escala) {}
  void Agrega(const TMontoFiscal& monto) { Agrega(Unidades(monto, escala_)); }
  void Quita(const TMontoFiscal& monto) { Agrega(-Unidades(monto, escala_)); }
  /// Units of 10^-escala.
  void Agrega(Entero128 unidades);
  TMontoFiscal Redondeada(int decimales) const { return Redondea(unidades_, escala_, decimales); }
  Entero128 DameUnidades() const noexcept { return unidades_; }

 private:
  Entero128 unidades_ = 0;
  int escala_;
};

/// A sum of which some parts were converted from another currency by a printed equivalence: between what it
/// lies when each printed figure stands for all that round to it. Kept with kDecimalesCociente decimals.
class SumaConMargen {
 public:
  /// monto / equivalencia, which is above zero; an equivalence of one has no margin.
  void Agrega(const TMontoFiscal& monto, const TMontoFiscal& equivalencia = {1, 0});
  bool ConMargen() const noexcept { return conMargen_; }
  TMontoFiscal Redondeada(int decimales) const { return valor_.Redondeada(decimales); }
  /// Down and up to the decimals given.
  TMontoFiscal Inferior(int decimales) const;
  TMontoFiscal Superior(int decimales) const;

 private:
  bool conMargen_ = false;
  Suma valor_{kDecimalesCociente};
  // What the margin takes off and adds.
  Suma menos_{kDecimalesCociente};
  Suma mas_{kDecimalesCociente};
};

/// -1, 0 or 1 as a is below, equal to or above b, whatever decimals they are written with.
int Compara(const TMontoFiscal& a, const TMontoFiscal& b);
/// a - b, with the decimals of the one that has more.
TMontoFiscal Resta(const TMontoFiscal& a, const TMontoFiscal& b);

/// In UTF-8.
std::string Texto(const TMontoFiscal& monto);

}  // namespace utilvel::cfdi

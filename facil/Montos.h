#pragma once

#include "Ucalculocfdi/TMontoFiscal.h"
#include "facil/Texto.h"
#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel::facil {

/// An amount with commas between thousands and all its decimals (0 to 18): "1,234,567.89".
///
/// A double is rounded as g_redoTo rounds the suite's amounts, half away from zero on its decimal text of 15
/// significant digits; to 0 decimals too, where g_redoTo does nothing. Digits past the fifteenth are zeros.
/// What rounds to zero has no sign. Raises EInvalidOperation for what is not a finite number and for decimals
/// out of range.
///
///     FormateaMonto(1234567.885) == u"1,234,567.89"    FormateaMonto(-0.001) == u"0.00"
///     FormateaMonto(2.5, 0) == u"3"                    FormateaMonto(1e15) == u"1,000,000,000,000,000.00"
UTILVEL90_EXPORT UnicodeString FormateaMonto(double valor, int decimales = 2);
/// An exact amount, with the decimals that it has or rounded half away from zero to others.
UTILVEL90_EXPORT UnicodeString FormateaMonto(const TMontoFiscal& monto);
UTILVEL90_EXPORT UnicodeString FormateaMonto(const TMontoFiscal& monto, int decimales);

/// The words of a currency, in capitals; what follows the cents may be empty.
/// Threads: const members may be called by all.
struct UTILVEL90_EXPORT Moneda {
  /// Pesos: "UN PESO 00/100 M.N."
  Moneda();
  /// A currency by its words, in capitals.
  Moneda(const Texto& singular, const Texto& plural, const Texto& sufijo, bool femenina = false);

  /// "PESO"
  UnicodeString Singular;
  /// "PESOS"
  UnicodeString Plural;
  /// What follows the cents: "M.N."; may be empty.
  UnicodeString Sufijo;
  /// "UNA LIBRA", "DOSCIENTAS LIBRAS".
  bool Femenina;
};

/// The currency of an ISO 4217 code, in capitals: MXN (pesos), USD, EUR, CAD, GBP, JPY, CHF; any other raises
/// EInvalidOperation: give its words.
///
///     DameMoneda("USD")    // "DÓLAR", "DÓLARES", "USD"
UTILVEL90_EXPORT Moneda DameMoneda(const Texto& clave);

/// An amount in words, as Mexican invoices print it: whole units in words, cents over 100, what the currency
/// ends with. One thousand is "UN MIL". Rounded to cents as FormateaMonto does, and in its range of 15
/// digits: beyond 9,999,999,999,999.99 of either sign, as for what is no number, it raises EInvalidOperation.
/// Numerals and "DE" after millions by the Diccionario panhispánico de dudas ("cardinales").
///
///     MontoEnLetra(1200.5)                          // "UN MIL DOSCIENTOS PESOS 50/100 M.N."
///     MontoEnLetra(1000000)                         // "UN MILLÓN DE PESOS 00/100 M.N."
///     MontoEnLetra(-21, DameMoneda("USD"))          // "MENOS VEINTIÚN DÓLARES 00/100 USD"
///     MontoEnLetra(1, {u"RUPIA", u"RUPIAS", u"INR", true})   // "UNA RUPIA 00/100 INR"
UTILVEL90_EXPORT UnicodeString MontoEnLetra(double valor, const Moneda& moneda = {});
UTILVEL90_EXPORT UnicodeString MontoEnLetra(const TMontoFiscal& monto, const Moneda& moneda = {});

}  // namespace vel::facil

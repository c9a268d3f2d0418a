#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "tools/utilvel/cfdi/Informe.h"

namespace utilvel::cfdi {

/// Where a figure stands: up to three numbered parts ("Pago 1, documento 2, traslado 1") and the tax that it
/// belongs to. Made into a text only when something is said of it.
struct Lugar {
  struct Parte {
    const char* nombre = nullptr;
    /// 1-based; 0 for a part without a number.
    std::size_t numero = 0;
  };
  std::array<Parte, 3> partes = {};
  const Impuesto* impuesto = nullptr;
};

/// Holds printed figures against computed ones and keeps what differs.
class Cotejo {
 public:
  /// `fecha` is the invoice's; the codes of the rules are those of version 4.0.
  Cotejo(Version version, const std::string& fecha, int decimalesMoneda);

  int DecimalesMoneda() const noexcept { return resumen_.DecimalesMoneda; }
  void PonDecimales(int decimales) noexcept { resumen_.DecimalesMoneda = decimales; }

  /// A sum, which has no margin: `calculado` is rounded already. A figure that is not printed counts as zero.
  void Exacto(const Lugar& lugar, const char* cifra, const std::optional<TMontoFiscal>& impreso,
              const TMontoFiscal& calculado, std::u16string_view regla = {});
  /// A sum of which parts may be converted: with their margin, or without one as Exacto.
  void ConMargen(const Lugar& lugar, const char* cifra, const std::optional<TMontoFiscal>& impreso,
                 const SumaConMargen& suma, int decimales, std::u16string_view regla = {});
  /// A line's amount.
  void Importe(const Lugar& lugar, const Concepto& concepto);
  /// A tax of a line or of a paid document. `regla` is the code of its limits.
  void ImporteImpuesto(const Lugar& lugar, const char* cifra, const Impuesto& impuesto,
                       std::u16string_view regla);

  std::vector<Diferencia> Diferencias() && { return std::move(diferencias_); }

 private:
  void ConLimites(const Lugar& lugar, const char* cifra, const TMontoFiscal& impreso,
                  const TMontoFiscal& calculado, const Diferencia::Limites& limites,
                  std::u16string_view regla);
  std::string Vigente(std::u16string_view regla) const;

  bool conReglas_;
  std::u16string dia_;
  /// Gives the limits.
  vel::TResumenFiscal resumen_;
  std::vector<Diferencia> diferencias_;
};

/// What the taxes of lines are told apart by: tax, factor and rate (millionths); withheld ones by the tax.
using ClaveImpuesto = std::tuple<vel::ENUM_IMPUESTO_FISCAL, bool, vel::ENUM_FACTOR_FISCAL, std::int64_t>;
ClaveImpuesto Clave(const Impuesto& impuesto);

/// The sums of the taxes of lines by their key.
struct SumaImpuesto {
  SumaConMargen base;
  SumaConMargen importe;
  /// One of those added, to name them.
  const Impuesto* uno = nullptr;
  /// It was held against a printed one.
  bool cotejada = false;

  /// Adds a tax of a line, which must live on. An exempt one has no amount, whatever is printed.
  void Agrega(const Impuesto& impuesto, const TMontoFiscal& equivalencia = {1, 0});
};
using SumasImpuestos = std::map<ClaveImpuesto, SumaImpuesto>;

/// What the printed taxes of a document or of a payment are called.
struct NombresResumen {
  const char* base;
  const char* importe;
  std::u16string_view reglaBase = {};
  std::u16string_view reglaTraslado = {};
  std::u16string_view reglaRetencion = {};
};

/// Holds the printed taxes of a document or of a payment against the sums of those of its lines, in the order
/// in which they are printed and then those that are not printed. Sums are rounded to the currency's
/// decimals, or to those that are printed where there may be more (`masDecimales`).
void CotejaResumen(Cotejo& cotejo, const Lugar& lugar, const std::vector<Impuesto>& impresos,
                   SumasImpuestos& sumas, const NombresResumen& nombres, bool masDecimales);

/// Appends what is wrong with the complement of payments.
void CotejaPagos(Cotejo& cotejo, const Pagos& pagos);

}  // namespace utilvel::cfdi

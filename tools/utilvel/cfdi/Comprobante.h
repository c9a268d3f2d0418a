#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "Ucalculocfdi/TResumenFiscal.h"
#include "tools/utilvel/cfdi/Montos.h"

namespace utilvel::cfdi {

// The printed figures of an electronic invoice, as they stand in its file. Every figure has the decimals that
// it is written with.
//
// Sources: Anexo 20 of the Resolución Miscelánea Fiscal, versions 3.3 and 4.0; complements of payments 1.0
// and 2.0 and of local taxes 1.0.

/// A tax of a line, of the document, or of a payment. What the standard does not print there is empty: the
/// base in the document's taxes of version 3.3, all but the amount in its withheld ones, rate and amount of
/// an exempt one.
struct Impuesto {
  vel::ENUM_IMPUESTO_FISCAL impuesto = vel::ENUM_IMPUESTO_FISCAL::NINGUNO;
  bool retenido = false;
  vel::ENUM_FACTOR_FISCAL factor = vel::ENUM_FACTOR_FISCAL::TASA;
  std::optional<TMontoFiscal> base;
  /// Fraction (0.160000), or the quota for each unit.
  std::optional<TMontoFiscal> tasa;
  std::optional<TMontoFiscal> importe;
};

struct Concepto {
  TMontoFiscal cantidad;
  TMontoFiscal valorUnitario;
  TMontoFiscal importe;
  std::optional<TMontoFiscal> descuento;
  std::vector<Impuesto> impuestos;
};

/// The taxes of the document, of which it may print none.
struct ResumenImpuestos {
  std::vector<Impuesto> impuestos;
  std::optional<TMontoFiscal> totalTrasladados;
  std::optional<TMontoFiscal> totalRetenidos;
};

struct ImpuestosLocales {
  std::vector<TMontoFiscal> trasladados;
  std::vector<TMontoFiscal> retenidos;
  TMontoFiscal totalTrasladados;
  TMontoFiscal totalRetenidos;
};

/// A document that a payment is for.
struct DocumentoPagado {
  std::string moneda;
  /// Units of the document's currency for one of the payment's.
  std::optional<TMontoFiscal> equivalencia;
  std::optional<TMontoFiscal> saldoAnterior;
  std::optional<TMontoFiscal> pagado;
  std::optional<TMontoFiscal> saldoInsoluto;
  std::vector<Impuesto> impuestos;
};

struct Pago {
  std::string moneda;
  /// MXN for one unit of the payment's currency.
  std::optional<TMontoFiscal> tipoCambio;
  TMontoFiscal monto;
  std::vector<DocumentoPagado> documentos;
  ResumenImpuestos impuestos;
};

/// One of the totals of payments of version 2.0, in MXN: what it adds up. NINGUNO adds the payments' amounts.
struct TotalPagos {
  std::string_view atributo;
  vel::ENUM_IMPUESTO_FISCAL impuesto;
  bool retenido;
  vel::ENUM_FACTOR_FISCAL factor = vel::ENUM_FACTOR_FISCAL::TASA;
  /// Millionths.
  int tasa = 0;
  bool base = false;
};

inline constexpr TotalPagos kTotalesPagos[] = {
    {"TotalRetencionesIVA", vel::ENUM_IMPUESTO_FISCAL::IVA, true},
    {"TotalRetencionesISR", vel::ENUM_IMPUESTO_FISCAL::ISR, true},
    {"TotalRetencionesIEPS", vel::ENUM_IMPUESTO_FISCAL::IEPS, true},
    {"TotalTrasladosBaseIVA16", vel::ENUM_IMPUESTO_FISCAL::IVA, false, vel::ENUM_FACTOR_FISCAL::TASA, 160000,
     true},
    {"TotalTrasladosImpuestoIVA16", vel::ENUM_IMPUESTO_FISCAL::IVA, false, vel::ENUM_FACTOR_FISCAL::TASA,
     160000},
    {"TotalTrasladosBaseIVA8", vel::ENUM_IMPUESTO_FISCAL::IVA, false, vel::ENUM_FACTOR_FISCAL::TASA, 80000,
     true},
    {"TotalTrasladosImpuestoIVA8", vel::ENUM_IMPUESTO_FISCAL::IVA, false, vel::ENUM_FACTOR_FISCAL::TASA,
     80000},
    {"TotalTrasladosBaseIVA0", vel::ENUM_IMPUESTO_FISCAL::IVA, false, vel::ENUM_FACTOR_FISCAL::TASA, 0, true},
    {"TotalTrasladosImpuestoIVA0", vel::ENUM_IMPUESTO_FISCAL::IVA, false, vel::ENUM_FACTOR_FISCAL::TASA, 0},
    {"TotalTrasladosBaseIVAExento", vel::ENUM_IMPUESTO_FISCAL::IVA, false, vel::ENUM_FACTOR_FISCAL::EXENTO, 0,
     true},
    {"MontoTotalPagos", vel::ENUM_IMPUESTO_FISCAL::NINGUNO, false}};

struct Pagos {
  /// Version 2.0 of the complement; 1.0 prints no totals and no taxes of the paid documents.
  bool dos = false;
  std::array<std::optional<TMontoFiscal>, std::size(kTotalesPagos)> totales;
  std::vector<Pago> pagos;
};

enum class Version : std::uint8_t { V33, V40 };

struct Comprobante {
  Version version = Version::V40;
  std::string serie;
  std::string folio;
  /// Of the stamp; empty without one.
  std::string uuid;
  /// yyyy-mm-ddThh:mm:ss, in the time of the place where it was made.
  std::string fecha;
  /// I, E, T, N or P.
  char tipo = 'I';
  std::string moneda;
  std::string emisor;
  std::string receptor;
  std::string numeroCertificado;
  /// In Base64.
  std::string certificado;
  TMontoFiscal subTotal;
  std::optional<TMontoFiscal> descuento;
  TMontoFiscal total;
  std::vector<Concepto> conceptos;
  ResumenImpuestos impuestos;
  std::optional<ImpuestosLocales> locales;
  std::vector<Pagos> pagos;
  /// Names of the complements that are not read.
  std::vector<std::string> otrosComplementos;
};

/// What is no invoice, or a broken one: where in the file, and why, as a Spanish clause without capital.
class Rechazo : public std::runtime_error {
 public:
  Rechazo(std::size_t linea_, std::size_t columna_, const std::string& razon)
      : std::runtime_error(razon), linea(linea_), columna(columna_) {}
  /// 1-based; the column counts bytes.
  const std::size_t linea;
  const std::size_t columna;
};

/// What an invoice may have at most, so that no file takes memory or time without end.
inline constexpr std::size_t kMaxBytes = std::size_t{64} << 20;
inline constexpr std::size_t kMaxProfundidad = 64;
inline constexpr std::size_t kMaxElementos = 2'000'000;
inline constexpr std::size_t kMaxAtributos = 64;

/// Reads the bytes of a file. Linear in them. Raises Rechazo for what is no well-formed XML in UTF-8, holds a
/// zero byte or a document type, goes beyond the limits above, is no invoice of these versions, or lacks a
/// figure or has one that is no number.
Comprobante LeeComprobante(std::string_view bytes);

/// Decimals of a currency of the standard's catalogue (c_Moneda, after ISO 4217); 2 for one that is not
/// there.
int DecimalesMoneda(std::string_view moneda) noexcept;

/// "IVA 0.160000", "IEPS cuota 6.450000", "IVA exento"; a withheld tax of the document has no rate: "ISR".
std::string Nombre(const Impuesto& impuesto);

}  // namespace utilvel::cfdi

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/utilvel/cfdi/Comprobante.h"
#include "tools/utilvel/cfdi/Montos.h"

namespace utilvel::cfdi {

/// A printed figure that is not what follows from the others.
struct Diferencia {
  /// "Concepto 2, traslado 1 (IVA 0.160000)", "Comprobante".
  std::string lugar;
  /// The attribute's name in the standard.
  std::string cifra;
  /// Without a value when the invoice does not print it.
  std::optional<TMontoFiscal> impreso;
  /// What the printed figures give, rounded once, halves up: with the decimals of the currency, or with those
  /// of the printed amount where a line may have more.
  TMontoFiscal calculado;
  /// Printed less computed.
  TMontoFiscal diferencia;
  /// Between what the authority accepts the amount; sums have no margin.
  struct Limites {
    TMontoFiscal inferior;
    TMontoFiscal superior;
  };
  std::optional<Limites> limites;
  /// Accepted by the authority all the same.
  bool enLimites = false;
  /// Code of the rule of the validation matrix in force on the invoice's date; empty where none is known.
  std::string regla;
};

enum class EstadoCertificado : std::uint8_t {
  Correcto,
  /// The invoice carries none.
  Falta,
  /// What it carries is no certificate.
  Ilegible,
  /// It carries another than the one that it names.
  OtroNumero,
  /// Not valid on the invoice's date.
  NoVigente,
};

/// The certificate that an invoice names and the one that it carries. No signature is checked.
struct Certificado {
  EstadoCertificado estado = EstadoCertificado::Falta;
  std::string numeroNombrado;
  std::string numero;
  /// First and last moment of validity, yyyy-mm-ddThh:mm:ssZ.
  std::string desde;
  std::string hasta;
};

enum class Estado : std::uint8_t {
  Correcta,
  /// Some line differs from its recomputed amount within what the authority accepts.
  EnLimites,
  /// A sum differs, a line lies outside of its limits, or the certificate is not the one named, cannot be
  /// read, or was not valid.
  ConDiferencias,
};

/// What is found of one invoice.
struct Informe {
  Comprobante comprobante;
  Estado estado = Estado::Correcta;
  std::vector<Diferencia> diferencias;
  Certificado certificado;
  /// What the engine (TCalculoCFDI) totals for these lines, with the printed local taxes; without a value
  /// when its fields cannot express them. It rounds the sum of all taxes once, so that a few cents of
  /// difference are no fault of the invoice (docs/resumen-fiscal.md).
  std::optional<TMontoFiscal> totalMotor;
};

}  // namespace utilvel::cfdi

#pragma once

#include <memory>
#include <optional>

#include "tools/utilvel/cfdi/Comprobante.h"

namespace utilvel::cfdi {

/// What the engine (vel::TCalculoCFDI) totals for an invoice's lines, in the fields that the suite gives it.
class TotalMotor {
 public:
  TotalMotor();
  TotalMotor(const TotalMotor&) = delete;
  TotalMotor& operator=(const TotalMotor&) = delete;
  ~TotalMotor();

  /// The engine's total with the printed local taxes. Without a value where its fields cannot express a line:
  /// documents other than of income and credit notes; two taxes of one kind; a base that is neither the
  /// amount less discount nor that with the excise tax; a quota beside another excise tax of the document,
  /// which the engine's total would lose; a discount of an amount of zero; or a total too large for its
  /// cents.
  std::optional<TMontoFiscal> Calcula(const Comprobante& comprobante);

 private:
  struct Motor;
  std::unique_ptr<Motor> motor_;
};

}  // namespace utilvel::cfdi

#pragma once

#include <string>
#include <unordered_map>

#include "tools/utilvel/cfdi/Informe.h"

namespace utilvel::cfdi {

/// Reads the certificates that invoices carry and keeps the last ones: a taxpayer's invoices carry the same.
class Certificados {
 public:
  /// What is found of an invoice's certificate. The invoice's date is in the time of its place, which is not
  /// printed; it is not valid when it lies outside of the validity by every zone of Mexico, UTC-8 to UTC-5.
  Certificado Revisa(const Comprobante& comprobante);

 private:
  struct Leido {
    bool legible = false;
    std::string numero;
    std::string desde;
    std::string hasta;
  };
  static Leido Lee(const std::string& base64);

  std::unordered_map<std::string, Leido> leidos_;
};

}  // namespace utilvel::cfdi

#pragma once

#include <memory>
#include <string_view>

#include "tools/utilvel/cfdi/Informe.h"

namespace utilvel::cfdi {

/// Verifies invoices, one after the other. It keeps what invoices share (certificates, the engine), so one
/// object for a whole run is faster than one for each file. Not for several threads at once.
class Verificador {
 public:
  Verificador();
  Verificador(const Verificador&) = delete;
  Verificador& operator=(const Verificador&) = delete;
  ~Verificador();

  /// Recomputes each printed figure from the printed figures that it follows from:
  ///
  ///     line      amount = quantity x price; tax = base x rate or quota; none of an exempt one
  ///     document  taxes by tax, factor and rate, with their bases in version 4.0, withheld ones by tax;
  ///     their
  ///               totals; subtotal, discount (zero subtotal for documents of transport and payment)
  ///               total = subtotal - discount + transferred - withheld, local taxes included
  ///     payments  balance left = balance before - paid; each tax = base x rate; taxes and amounts by payment
  ///               in its currency; totals in MXN; the payment covers what it pays
  ///
  /// Line amounts and line taxes are held against the limits of the authority, by vel::TResumenFiscal.
  ///
  /// Raises Rechazo for what is no invoice, as LeeComprobante, and vel::EInvalidOperation for figures too
  /// large to be multiplied exactly.
  Informe Verifica(std::string_view bytes);

 private:
  struct Estado;
  std::unique_ptr<Estado> estado_;
};

}  // namespace utilvel::cfdi

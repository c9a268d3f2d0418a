#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

#include "Ucalculocfdi/Cascada.h"
#include "Ucalculocfdi/TCalculoCFDI.h"
#include "framework/TClientDataSet.h"

namespace vel {

/// The fields of a line, looked up once for a calculation. A required one may be missing until it is read.
struct TCalculoCFDI::CamposPartida {
  CamposPartida(const TClientDataSet& partidas, ENUM_MODULO modulo);

  /// A field with the name to complain about when it is missing.
  class Campo {
   public:
    Campo(const TClientDataSet& partidas, std::u16string_view nombre)
        : partidas_(partidas), nombre_(nombre), campo_(partidas.FindField(nombre)) {}
    /// Raises EDatabaseError when the data set has no such field.
    const TField& operator*() const { return campo_ != nullptr ? *campo_ : partidas_.FieldByName(nombre_); }
    bool Existe() const noexcept { return campo_ != nullptr; }
    double Real() const { return (**this).AsFloat(); }
    /// True when the field's text is exactly this.
    bool Es(std::u16string_view texto) const;

   private:
    const TClientDataSet& partidas_;
    std::u16string_view nombre_;
    const TField* campo_;
  };

  // What the steps of a line ask (Cascada.h).
  double Cantidad() const { return cantidad.Real(); }
  double Precio() const { return precioPartida.Real(); }
  double Cambio() const { return cambio.Real(); }
  double Tasa(std::size_t i) const { return tasa[i].Real(); }
  /// Whether the current line counts in the document, and whether it is taxed.
  bool SeCuenta() const;
  bool SeMuestra() const;
  /// Base code of a tax (0-based) on the current line, and whether one with such a code applies at all.
  int Codigo(std::size_t impuesto) const;
  static bool Aplica(int codigo) noexcept { return cascada::Aplica(codigo); }
  /// Whether the tax is the current line's quota.
  bool ConCuota(std::size_t impuesto) const;

  Campo cantidad, precio, precioPartida, cambio;
  std::array<Campo, kImpuestos> tasa, aplica;
  Campo manejaIeps, impuestoConCuota, modoCuota, cuota;
  Campo documento, tipoProducto, tipoElemento, muestra;
  std::array<Campo, kDescuentos> descuento;
  Campo descuentoCompra;
};

/// The fields as they were last looked up, and what they were looked up in.
struct TCalculoCFDI::CamposBuscados {
  CamposBuscados(const TClientDataSet& partidas, ENUM_MODULO de, std::shared_ptr<const void> en)
      : campos(partidas, de), estructura(std::move(en)), modulo(de) {}

  CamposPartida campos;
  std::shared_ptr<const void> estructura;
  ENUM_MODULO modulo;
};

}  // namespace vel

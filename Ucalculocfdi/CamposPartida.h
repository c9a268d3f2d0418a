#pragma once

#include <array>
#include <string_view>

#include "Ucalculocfdi/Partida.h"
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
  int Codigo(std::size_t i) const {
    return aplica[i].Existe() ? (*aplica[i]).AsInteger() : TDatosPartida::kNoAplica;
  }
  double Tasa(std::size_t i) const { return tasa[i].Real(); }
  bool LlevaCuota(std::size_t i) const {
    return manejaIeps.Es(u"S") && (*impuestoConCuota).AsInteger() == static_cast<int>(i) + 1;
  }

  Campo cantidad, precio, precioPartida, cambio;
  std::array<Campo, kImpuestos> tasa, aplica;
  Campo manejaIeps, impuestoConCuota, modoCuota;
  Campo documento, tipoProducto, tipoElemento, muestra;
  std::array<Campo, kDescuentos> descuento;
  Campo descuentoCompra;
};

}  // namespace vel

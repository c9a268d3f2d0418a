#pragma once

#include <array>
#include <vector>

#include "Ucalculocfdi/Partida.h"
#include "framework/TClientDataSet.h"

namespace medicion {

/// Rates that prices with taxes usually include, in percent; the IVA falls on the IEPS too.
struct JuegoImpuestos {
  const char* nombre;
  double ieps;
  double iva;
};

constexpr std::array<JuegoImpuestos, 7> kJuegos = {{{"16", 0, 16},
                                                    {"8", 0, 8},
                                                    {"0", 0, 0},
                                                    {"8 + 16", 8, 16},
                                                    {"26.5 + 16", 26.5, 16},
                                                    {"53 + 16", 53, 16},
                                                    {"160 + 16", 160, 16}}};

/// A line with the taxes of the set: IEPS is tax 1 and IVA tax 4.
inline vel::TDatosPartida PartidaDe(const JuegoImpuestos& juego, double cantidad) {
  vel::TDatosPartida p;
  p.Cantidad = cantidad;
  if (juego.ieps != 0) {
    p.Tasa[0] = juego.ieps;
    p.Codigo[0] = 0;
  }
  p.Tasa[3] = juego.iva;
  p.Codigo[3] = juego.ieps != 0 ? 1 : 0;
  return p;
}

/// The fields that the engine reads of such lines, of sales.
inline std::vector<vel::TFieldDef> CamposDePartidas() {
  std::vector<vel::TFieldDef> campos;
  for (const char16_t* texto : {u"CVE_DOC", u"TIPO_PROD", u"TIPO_ELEM", u"MAN_IEPS"}) {
    campos.push_back({.Name = texto, .DataType = vel::TFieldType::ftString, .Size = 20});
  }
  for (const char16_t* real :
       {u"CANT", u"PREC", u"TIP_CAM", u"DESC1", u"DESC2", u"DESC3", u"IMPU1", u"IMPU4"}) {
    campos.push_back({.Name = real, .DataType = vel::TFieldType::ftFloat});
  }
  for (const char16_t* codigo : {u"IMP1APLA", u"IMP4APLA"}) {
    campos.push_back({.Name = codigo, .DataType = vel::TFieldType::ftInteger});
  }
  return campos;
}

inline void AgregaPartida(vel::TClientDataSet& lineas, const vel::TDatosPartida& p) {
  const auto pon = [&lineas](const char16_t* campo, double valor) {
    lineas.FieldByName(campo).SetAsFloat(valor);
  };
  lineas.Append();
  pon(u"CANT", p.Cantidad);
  pon(u"PREC", p.Precio);
  pon(u"TIP_CAM", p.TipoCambio);
  pon(u"DESC1", p.PorcDescuento[0]);
  pon(u"DESC2", p.PorcDescuento[1]);
  pon(u"DESC3", p.PorcDescuento[2]);
  pon(u"IMPU1", p.Tasa[0]);
  pon(u"IMPU4", p.Tasa[3]);
  lineas.FieldByName(u"IMP1APLA").SetAsInteger(p.Codigo[0]);
  lineas.FieldByName(u"IMP4APLA").SetAsInteger(p.Codigo[3]);
  lineas.Post();
}

}  // namespace medicion

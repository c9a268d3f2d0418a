#include "Uutilext/documents/TiposDocto.h"

#include <gtest/gtest.h>

namespace vel {
namespace {

TEST(TiposDocto, NamesAndNumbersEveryLetter) {
  const std::u16string_view letras = u"FVTRPCDEAGNcroqd";
  for (std::size_t i = 0; i < letras.size(); ++i) {
    EXPECT_EQ(DameTipoDoctoInt(static_cast<TIPO_DOCTO>(letras[i])), static_cast<int>(i));
  }
  EXPECT_EQ(DameTipoDoctoInt(static_cast<TIPO_DOCTO>('X')), -1);
  const struct {
    char letra;
    const char16_t* formas[3];
  } casos[] = {{'T', {u"traslados-carta porte", u"Traslado-carta porte", u"Traslados-carta porte"}},
               {'R', {u"remisiones", u"Remisión", u"Remisiones"}},
               {'D', {u"devoluciones", u"Devolución", u"Devoluciones de ventas"}},
               {'G', {u"comprobantes de pago", u"Comprobantes de pago", u"Comprobantes de pago"}},
               {'N', {u"ninguno", u"Ninguno", u"Ninguno"}},
               {'o', {u"órdenes", u"Orden", u"Órdenes"}},
               {'d', {u"devoluciones", u"Devolución", u"Devoluciones de compras"}},
               {'X', {u"", u"", u""}}};
  for (const auto& c : casos) {
    for (int forma = 0; forma < 3; ++forma) {
      EXPECT_EQ(DameTipoDoctoStr(static_cast<TIPO_DOCTO>(c.letra), forma), c.formas[forma])
          << c.letra << forma;
    }
  }
  EXPECT_EQ(DameTipoDoctoStr(TIPO_DOCTO::TD_FACTURA, 3), u"");
  EXPECT_EQ(DameTipoDoctoStr(TIPO_DOCTO::TD_FACTURA, -1), u"");
}

TEST(TiposDocto, ListsTheTypesOfAModule) {
  EXPECT_EQ(DameAllTiposDoctosStr(ENUM_MODULO::MODULO_VENTAS),
            u"Facturas,\"Notas de venta\",\"Traslados-carta "
            u"porte\",Remisiones,Pedidos,Cotizaciones,Devoluciones,\"Notas "
            u"de crédito\",Parcialidades,\"Comprobantes de pago\"");
  EXPECT_EQ(DameAllTiposDoctosStr(ENUM_MODULO::MODULO_COMPRAS),
            u"Compras,Recepciones,Órdenes,Requisiciones,Devoluciones");
  EXPECT_EQ(DameAllTiposDoctosStr(static_cast<ENUM_MODULO>(1)), u"");
}

TEST(TiposDocto, NamesTheTables) {
  const struct {
    char letra;
    const char16_t* tablas[4];
  } casos[] = {{'F', {u"[FACTF][EE]", u"[PAR_FACTF][EE]", u"[FACTF_CLIB][EE]", u"[PAR_FACF_CLIB][EE]"}},
               {'T', {u"[FACTT][EE]", u"[PAR_FACTT][EE]", u"[FACTT_CLIB][EE]", u"[PAR_FACT_CLIB][EE]"}},
               {'c', {u"[COMPC][EE]", u"[PAR_COMPC][EE]", u"[COMPC_CLIB][EE]", u"[PAR_COMC_CLIB][EE]"}},
               {'d', {u"[COMPD][EE]", u"[PAR_COMPD][EE]", u"[COMPD_CLIB][EE]", u"[PAR_COMD_CLIB][EE]"}},
               {'N', {u"", u"", u"", u""}},
               {'x', {u"", u"", u"", u""}}};
  for (const auto& c : casos) {
    const auto tipo = static_cast<TIPO_DOCTO>(c.letra);
    EXPECT_EQ(DameTablaCabecera(tipo), c.tablas[0]);
    EXPECT_EQ(DameTablaPartidas(tipo), c.tablas[1]);
    EXPECT_EQ(DameTablaCabCLib(tipo), c.tablas[2]);
    EXPECT_EQ(DameTablaPartCLib(tipo), c.tablas[3]);
  }
}

}  // namespace
}  // namespace vel

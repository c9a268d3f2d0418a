#include "Uutilext/documents/TiposDocto.h"

#include <gtest/gtest.h>
#include <string>

#include "tests/Casos.h"

namespace vel {
namespace {

TEST(TiposDocto, HaveTheNumbersNamesAndTablesOfTheCaseFile) {
  for (const auto& c : pruebas::Casos("documentos/tipos.txt", "|")) {
    ASSERT_EQ(c.size(), 9U);
    const auto tipo = static_cast<TIPO_DOCTO>(c[0][0]);
    EXPECT_EQ(std::to_string(DameTipoDoctoInt(tipo)), c[1]);
    for (int forma = 0; forma < 3; ++forma) {
      EXPECT_EQ(UTF8Encode(DameTipoDoctoStr(tipo, forma)), c[2 + static_cast<std::size_t>(forma)]);
    }
    EXPECT_EQ(UTF8Encode(DameTablaCabecera(tipo)), c[5]);
    EXPECT_EQ(UTF8Encode(DameTablaPartidas(tipo)), c[6]);
    EXPECT_EQ(UTF8Encode(DameTablaCabCLib(tipo)), c[7]);
    EXPECT_EQ(UTF8Encode(DameTablaPartCLib(tipo)), c[8]);
  }
  for (const int forma : {-1, 3}) EXPECT_EQ(DameTipoDoctoStr(TIPO_DOCTO::TD_FACTURA, forma), u"");
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

}  // namespace
}  // namespace vel

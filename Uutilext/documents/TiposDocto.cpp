#include "Uutilext/documents/TiposDocto.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

namespace vel {
namespace {

struct Tipo {
  char16_t letra;
  /// The names, by form.
  std::array<std::u16string_view, 3> nombres;
};

// In the canonical order, which gives the ordinals.
constexpr Tipo kTipos[] = {
    {u'F', {u"facturas", u"Factura", u"Facturas"}},
    {u'V', {u"notas de venta", u"Nota de venta", u"Notas de venta"}},
    {u'T', {u"traslados-carta porte", u"Traslado-carta porte", u"Traslados-carta porte"}},
    {u'R', {u"remisiones", u"Remisión", u"Remisiones"}},
    {u'P', {u"pedidos", u"Pedido", u"Pedidos"}},
    {u'C', {u"cotizaciones", u"Cotización", u"Cotizaciones"}},
    {u'D', {u"devoluciones", u"Devolución", u"Devoluciones de ventas"}},
    {u'E', {u"notas de crédito", u"Nota de crédito", u"Notas de crédito"}},
    {u'A', {u"parcialidades", u"Parcialidad", u"Parcialidades"}},
    {u'G', {u"comprobantes de pago", u"Comprobantes de pago", u"Comprobantes de pago"}},
    {u'N', {u"ninguno", u"Ninguno", u"Ninguno"}},
    {u'c', {u"compras", u"Compra", u"Compras"}},
    {u'r', {u"recepciones", u"Recepción", u"Recepciones"}},
    {u'o', {u"órdenes", u"Orden", u"Órdenes"}},
    {u'q', {u"requisiciones", u"Requisición", u"Requisiciones"}},
    {u'd', {u"devoluciones", u"Devolución", u"Devoluciones de compras"}},
};

// The letter of a type that has tables; 0 for TD_NINGUNO and for what is no type.
char16_t LetraConTablas(TIPO_DOCTO tipo) noexcept {
  if (tipo == TIPO_DOCTO::TD_NINGUNO || DameTipoDoctoInt(tipo) < 0) return 0;
  return static_cast<char16_t>(tipo);
}

// "[" + prefix + the letter as capital + suffix + "][EE]", the prefix of sales or of purchases.
UnicodeString Tabla(TIPO_DOCTO tipo, std::u16string_view ventas, std::u16string_view compras,
                    std::u16string_view sufijo) {
  const char16_t letra = LetraConTablas(tipo);
  if (letra == 0) return {};
  const bool esCompra = letra >= u'a';
  UnicodeString nombre(u"[");
  nombre.append(esCompra ? compras : ventas);
  nombre.push_back(esCompra ? static_cast<char16_t>(letra - 32) : letra);
  return nombre.append(sufijo).append(u"][EE]");
}

}  // namespace

int DameTipoDoctoInt(TIPO_DOCTO tipo) noexcept {
  const auto letra = static_cast<char16_t>(tipo);
  const auto* const it =
      std::find_if(std::begin(kTipos), std::end(kTipos), [letra](const Tipo& t) { return t.letra == letra; });
  return it == std::end(kTipos) ? -1 : static_cast<int>(it - std::begin(kTipos));
}

UnicodeString DameTipoDoctoStr(TIPO_DOCTO tipo, int forma) {
  const int ordinal = DameTipoDoctoInt(tipo);
  if (ordinal < 0 || forma < 0 || forma > 2) return {};
  return UnicodeString(kTipos[ordinal].nombres[static_cast<std::size_t>(forma)]);
}

UnicodeString DameAllTiposDoctosStr(ENUM_MODULO modulo) {
  switch (modulo) {
    case ENUM_MODULO::MODULO_SIN_DOCTOS_0:
    case ENUM_MODULO::MODULO_SIN_DOCTOS_1:
      break;
    case ENUM_MODULO::MODULO_VENTAS:
      return u"Facturas,\"Notas de venta\",\"Traslados-carta porte\",Remisiones,Pedidos,Cotizaciones,"
             u"Devoluciones,\"Notas de crédito\",Parcialidades,\"Comprobantes de pago\"";
    case ENUM_MODULO::MODULO_COMPRAS:
      return u"Compras,Recepciones,Órdenes,Requisiciones,Devoluciones";
  }
  return {};
}

UnicodeString DameTablaCabecera(TIPO_DOCTO tipo) { return Tabla(tipo, u"FACT", u"COMP", u""); }

UnicodeString DameTablaPartidas(TIPO_DOCTO tipo) { return Tabla(tipo, u"PAR_FACT", u"PAR_COMP", u""); }

UnicodeString DameTablaCabCLib(TIPO_DOCTO tipo) { return Tabla(tipo, u"FACT", u"COMP", u"_CLIB"); }

UnicodeString DameTablaPartCLib(TIPO_DOCTO tipo) { return Tabla(tipo, u"PAR_FAC", u"PAR_COM", u"_CLIB"); }

}  // namespace vel

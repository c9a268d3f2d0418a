#pragma once

#include <cstdint>

#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// Document type: the character code of its letter, upper case for sales, lower case for purchases. Other
/// values are legal input.
enum class TIPO_DOCTO : std::uint8_t {
  TD_FACTURA = 'F',
  TD_NOTA_VENTA = 'V',
  TD_TRASLADO = 'T',
  TD_REMISION = 'R',
  TD_PEDIDO = 'P',
  TD_COTIZACION = 'C',
  TD_DEVOLUCION = 'D',
  TD_NOTA_CREDITO = 'E',
  TD_PARCIALIDAD = 'A',
  TD_COMPROBANTE_PAGO = 'G',
  TD_NINGUNO = 'N',
  TD_COMPRA = 'c',
  TD_RECEPCION = 'r',
  TD_ORDEN = 'o',
  TD_REQUISICION = 'q',
  TD_DEVOLUCION_COMPRA = 'd',
};

/// Module of the suite; the first two have no documents here.
enum class ENUM_MODULO : std::int32_t {
  MODULO_SIN_DOCTOS_0 = 0,
  MODULO_SIN_DOCTOS_1 = 1,
  MODULO_VENTAS = 2,
  MODULO_COMPRAS = 3
};

/// Ordinal of the type, its 0-based position in "FVTRPCDEAGNcroqd"; -1 for any other letter.
UTILVEL90_EXPORT int DameTipoDoctoInt(TIPO_DOCTO tipo) noexcept;

/// Name of the type: form 0 the plural in small letters, 1 the singular, 2 the plural; empty for another
/// form or type. Payment receipts have no singular of their own, and only form 2 tells sales returns from
/// purchase returns.
///
///     TD_FACTURA:      "facturas", "Factura", "Facturas"
///     TD_DEVOLUCION:   "devoluciones", "Devolución", "Devoluciones de ventas"
UTILVEL90_EXPORT UnicodeString DameTipoDoctoStr(TIPO_DOCTO tipo, int forma);

/// Comma-separated picking list of the module's types, names that hold a blank in double quotes; empty for
/// a module without documents.
///
///     MODULO_COMPRAS: "Compras,Recepciones,Órdenes,Requisiciones,Devoluciones"
UTILVEL90_EXPORT UnicodeString DameAllTiposDoctosStr(ENUM_MODULO modulo);

/// Templates of the tables of a type's headers, lines, and free fields of both: "[FACTF][EE]" and so on. The
/// brackets quote the name; the caller puts the company's number in the place of "[EE]". Empty for
/// TD_NINGUNO and for what is no type.
///
///     TD_FACTURA: "[FACTF][EE]", "[PAR_FACTF][EE]", "[FACTF_CLIB][EE]", "[PAR_FACF_CLIB][EE]"
UTILVEL90_EXPORT UnicodeString DameTablaCabecera(TIPO_DOCTO tipo);
UTILVEL90_EXPORT UnicodeString DameTablaPartidas(TIPO_DOCTO tipo);
UTILVEL90_EXPORT UnicodeString DameTablaCabCLib(TIPO_DOCTO tipo);
UTILVEL90_EXPORT UnicodeString DameTablaPartCLib(TIPO_DOCTO tipo);

}  // namespace vel

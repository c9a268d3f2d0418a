#pragma once

/// Discounts, taxes and totals of a document, and what its invoice prints.

#include "Ucalculocfdi/AjusteCentavos.h"
#include "Ucalculocfdi/Partida.h"
#include "Ucalculocfdi/PrecioInverso.h"
#include "Ucalculocfdi/ReglasFiscales.h"
#include "Ucalculocfdi/TCalculoCFDI.h"
#include "Ucalculocfdi/TResumenFiscal.h"
#include "framework/Excepciones.h"

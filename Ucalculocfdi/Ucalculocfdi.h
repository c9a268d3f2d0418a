#pragma once

/// Discounts, taxes and totals of a document.

#include "Ucalculocfdi/Partida.h"
#include "Ucalculocfdi/TCalculoCFDI.h"
#include "framework/Excepciones.h"

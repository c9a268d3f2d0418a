#pragma once

/// The whole library in one line: every chief header, the front's among them, and what they are used with. A
/// header that is included alone compiles sooner.

#include "Fechas/Fechas.h"
#include "Paramsql/Paramsql.h"
#include "Ucalculocfdi/Ucalculocfdi.h"
#include "Uformula/Uformula.h"
#include "Uutilext/Uutilext.h"
#include "facil/facil.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "framework/TClientDataSet.h"
#include "framework/TDateTime.h"
#include "framework/TParams.h"
#include "framework/TStringList.h"
#include "framework/Texto.h"
#include "framework/Variant.h"
#include "platform/Rutas.h"
#include "version/Version.h"

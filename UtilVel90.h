#pragma once

/// The whole library in one line: every chief header, the front among them. A header that is included alone
/// compiles sooner.

#include "Fechas/Fechas.h"
#include "Paramsql/Paramsql.h"
#include "Ucalculocfdi/Ucalculocfdi.h"
#include "Uformula/Uformula.h"
#include "Uutilext/Uutilext.h"
#include "facil/facil.h"
#include "version/Version.h"

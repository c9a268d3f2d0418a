#pragma once

/// Named date ranges defined by date macros.

#include "Fechas/TConfigVEL.h"
#include "framework/Excepciones.h"

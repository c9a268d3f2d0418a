#pragma once

/// The statement builder: definitions of SELECT statements, their text and their parameters.

#include "Paramsql/ConsultaGuardada.h"
#include "Paramsql/Enumeraciones.h"
#include "Paramsql/TParamSelect.h"
#include "Paramsql/TParamWhereSimple.h"
#include "Paramsql/TParametrosFiltro.h"
#include "framework/Excepciones.h"

#pragma once

/// The formula evaluator: everything of this folder.
#include "Uformula/TFormula.h"
#include "framework/Excepciones.h"

#pragma once

/// The front: the same library in words, with typed values in and out. It calls public headers only, so that
/// what it gives is what the interface below gives, to the byte.

#include "facil/Catalogo.h"
#include "facil/Certificado.h"
#include "facil/Condiciones.h"
#include "facil/Consulta.h"
#include "facil/Documento.h"
#include "facil/FechasISO.h"
#include "facil/Formula.h"
#include "facil/Instalacion.h"
#include "facil/Momento.h"
#include "facil/Montos.h"
#include "facil/Partida.h"
#include "facil/Resumenes.h"
#include "facil/RevisionFormula.h"
#include "facil/Texto.h"
#include "facil/Valor.h"
#include "facil/Zonas.h"

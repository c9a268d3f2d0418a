#pragma once

/// Everything of Uutilext: documents and rounding, settings and catalogs, texts, certificates and digests,
/// log and errors, time zones.

#include "Uutilext/config/Conexiones.h"
#include "Uutilext/config/Configuracion.h"
#include "Uutilext/config/Empresas.h"
#include "Uutilext/config/Etiquetas.h"
#include "Uutilext/config/NombreSistema.h"
#include "Uutilext/config/Rutas.h"
#include "Uutilext/crypto/Base64.h"
#include "Uutilext/crypto/Certificados.h"
#include "Uutilext/crypto/Cifrado.h"
#include "Uutilext/crypto/Resumenes.h"
#include "Uutilext/diagnostics/Bitacora.h"
#include "Uutilext/diagnostics/Errores.h"
#include "Uutilext/diagnostics/Traza.h"
#include "Uutilext/documents/Redondeo.h"
#include "Uutilext/documents/TiposDocto.h"
#include "Uutilext/text/Claves.h"
#include "Uutilext/text/Correo.h"
#include "Uutilext/text/Direcciones.h"
#include "Uutilext/text/Limpieza.h"
#include "Uutilext/text/Listas.h"
#include "Uutilext/text/Mascaras.h"
#include "Uutilext/time/Reloj.h"
#include "Uutilext/time/ZonasHorarias.h"
#include "framework/Excepciones.h"

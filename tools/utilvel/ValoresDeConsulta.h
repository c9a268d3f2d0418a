#pragma once

#include <string>
#include <string_view>

#include "Paramsql/TParametrosFiltro.h"
#include "framework/TParams.h"

// The values of a definition's parameters, as a person gives and reads them.
namespace utilvel {

/// Gives the definition another value for the parameter that its statement calls so ("var1"), read after the
/// type of its field: a whole number, a number, a date ("2024-05-13 14:30" or "13/05/2024 14:30"), a truth
/// value ("sí", "no"), or the text as it is. Then the statement says what it says of such a value: a pattern
/// with an escape gets its ESCAPE. `parametros` are those of the statement counted after 0.
///
/// Raises Falla: Uso when there is no such parameter, Datos for a text that is no value of the type.
void PonValor(vel::TParametrosFiltro& definicion, const vel::TParams& parametros, std::string_view nombre,
              const std::string& texto);

/// What a parameter holds, in Spanish: "texto", "entero", "número", "fecha", "hora", "fecha y hora",
/// "lógico".
std::string_view NombreDeTipo(const vel::TParam& parametro);

/// The value in UTF-8, a date as it is bound where dates are texts.
std::string TextoDeValor(const vel::TParam& parametro);

}  // namespace utilvel

#pragma once

#include <string>

#include "Paramsql/TParametrosFiltro.h"
#include "framework/Excepciones.h"
#include "framework/Texto.h"

namespace fuzz {

/// All that a definition writes: its statement with literals and with parameters, these, and the calls'
/// errors.
inline std::string Huella(vel::TParametrosFiltro& f) {
  std::string huella;
  const auto anota = [&huella](const auto& dato) {
    try {
      huella += vel::UTF8Encode(dato());
    } catch (const vel::Exception& e) {
      huella += e.what();
    }
    huella += '\n';
  };
  anota([&f] { return f.DameSentenciaSQL(false, 0); });
  vel::TParams parametros;
  anota([&] { return f.DameSentenciaSQL(vel::ENUM_MARCADOR::PESOS, 3, parametros); });
  for (const vel::TParam& p : parametros) {
    huella += vel::UTF8Encode(p.Name) + ' ' + std::to_string(static_cast<int>(p.DataType)) + ' ' +
              std::to_string(static_cast<int>(p.Value.GetKind())) + ' ';
    anota([&p] { return p.Value.AsString(); });
  }
  return huella;
}

}  // namespace fuzz

#pragma once

#include <functional>
#include <string>

#include "framework/Excepciones.h"

namespace pruebas {

/// The message of the exception that an action raises; "none" when it raises none.
inline std::string MensajeDe(const std::function<void()>& accion) {
  try {
    accion();
  } catch (const vel::Exception& e) {
    return vel::UTF8Encode(e.Message());
  }
  return "none";
}

}  // namespace pruebas

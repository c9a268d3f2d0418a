#include "platform/Registro.h"

namespace vel {

ValorRegistro LeeRegistro(std::u16string_view clave, std::u16string_view nombre) {
  FallaArchivo falla;
  return LeeRegistro(clave, nombre, falla);
}

}  // namespace vel

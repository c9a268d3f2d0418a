#include "platform/posix/FallasPosix.h"

#include <cerrno>
#include <system_error>

namespace vel::posix {
namespace {

ClaseFalla ClaseDe(int error) noexcept {
  switch (error) {
    case ENOENT:
      return ClaseFalla::NoExiste;
    case ENOTDIR:
      return ClaseFalla::RutaNoExiste;
    case EMFILE:
    case ENFILE:
      return ClaseFalla::DemasiadosAbiertos;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
      return ClaseFalla::AccesoDenegado;
    case ENOMEM:
      return ClaseFalla::SinMemoria;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return ClaseFalla::DiscoLleno;
    default:
      return ClaseFalla::Otra;
  }
}

}  // namespace

FallaArchivo FallaDe(int error) {
  return {ClaseDe(error), UTF8ToString(std::generic_category().message(error))};
}

}  // namespace vel::posix

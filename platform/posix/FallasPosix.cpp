#include "platform/posix/FallasPosix.h"

#include <cerrno>
#include <cstring>
#include <locale.h>
#include <string_view>

#include "platform/PaginaCodigos.h"

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
    case EAGAIN:
    case EBUSY:
    case ETXTBSY:
      return ClaseFalla::EnUso;
    default:
      return ClaseFalla::Otra;
  }
}

// The text in the user's language, whatever locale the program itself runs in.
UnicodeString TextoDe(int error) {
  constexpr int kIdioma = LC_MESSAGES_MASK | LC_CTYPE_MASK;
  static const locale_t propio = newlocale(kIdioma, "", nullptr);
  static const locale_t idioma = propio != nullptr ? propio : newlocale(kIdioma, "C", nullptr);
  const std::string_view texto = strerror_l(error, idioma);
  return IsUTF8(texto) ? UTF8ToString(texto) : DeCp1252(texto);
}

}  // namespace

FallaArchivo FallaDe(int error) { return {ClaseDe(error), TextoDe(error)}; }

}  // namespace vel::posix

#include "platform/windows/FallasWindows.h"

#include <array>
#include <string>

namespace vel::windows {
namespace {

// ERROR_DISK_QUOTA_EXCEEDED, which not every declaration of the system has.
constexpr DWORD kCuotaExcedida = 1295;

ClaseFalla ClaseDe(DWORD error) noexcept {
  switch (error) {
    case ERROR_SUCCESS:
      return ClaseFalla::Ninguna;
    case ERROR_FILE_NOT_FOUND:
    // Of a character that names cannot have.
    case ERROR_INVALID_NAME:
      return ClaseFalla::NoExiste;
    // Not a drive without its disk, nor a server that is down: what stands there is not missing.
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_PATHNAME:
    case ERROR_DIRECTORY:
      return ClaseFalla::RutaNoExiste;
    case ERROR_TOO_MANY_OPEN_FILES:
      return ClaseFalla::DemasiadosAbiertos;
    case ERROR_ACCESS_DENIED:
    case ERROR_WRITE_PROTECT:
    case ERROR_NETWORK_ACCESS_DENIED:
    case ERROR_PRIVILEGE_NOT_HELD:
      return ClaseFalla::AccesoDenegado;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
    case ERROR_NO_SYSTEM_RESOURCES:
      return ClaseFalla::SinMemoria;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case kCuotaExcedida:
    case ERROR_FILE_TOO_LARGE:
      return ClaseFalla::DiscoLleno;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_USER_MAPPED_FILE:
    case ERROR_DELETE_PENDING:
      return ClaseFalla::EnUso;
    default:
      return ClaseFalla::Otra;
  }
}

// The system's text, in the user's language and without the line break at its end.
UnicodeString TextoDe(DWORD error) {
  if (error == ERROR_SUCCESS) return {};
  std::array<wchar_t, 1024> texto;
  const DWORD largo = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                     error, 0, texto.data(), static_cast<DWORD>(texto.size()), nullptr);
  if (largo == 0) return u"error " + UTF8ToString(std::to_string(error)) + u" del sistema";
  return UnicodeString(TrimRightView(DeAncha({texto.data(), largo})));
}

}  // namespace

FallaArchivo FallaDe(DWORD error) { return {ClaseDe(error), TextoDe(error)}; }

}  // namespace vel::windows

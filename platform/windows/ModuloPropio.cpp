#include "platform/windows/ModuloPropio.h"

#include <openssl/crypto.h>

namespace vel::windows {

HMODULE ModuloPropio() noexcept {
  static const char ancla = 0;
  HMODULE modulo = nullptr;
  if (GetModuleHandleExW(
          GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
          reinterpret_cast<const wchar_t*>(&ancla), &modulo) == 0) {
    return nullptr;
  }
  return modulo;
}

}  // namespace vel::windows

// What the system calls when the library is loaded and when a thread of the program ends. Within it next to
// nothing is allowed, since the loader is busy; neither call here waits or loads.
extern "C" BOOL WINAPI DllMain(HINSTANCE /*modulo*/, DWORD motivo, LPVOID /*reservado*/) {
  if (motivo == DLL_PROCESS_ATTACH) {
    // What the library's statics hold is never freed, so it is not unloaded either: a host that opens and
    // closes it would get a new copy each time.
    HMODULE modulo = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                       reinterpret_cast<const wchar_t*>(&DllMain), &modulo);
  } else if (motivo == DLL_THREAD_DETACH) {
    // libcrypto keeps errors for each thread; linked into another library it does not learn that one ended.
    OPENSSL_thread_stop();
  }
  return TRUE;
}

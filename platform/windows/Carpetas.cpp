#include "platform/Carpetas.h"

#include <memory>
#include <objbase.h>
#include <shlobj.h>

#include "platform/windows/Sistema.h"

namespace vel {
namespace {

struct LiberaTarea {
  void operator()(wchar_t* texto) const noexcept { CoTaskMemFree(texto); }
};

UnicodeString Carpeta(const KNOWNFOLDERID& cual) {
  wchar_t* leida = nullptr;
  // A folder that is still missing has its place all the same; whoever writes there makes it.
  const HRESULT r = SHGetKnownFolderPath(cual, KF_FLAG_DONT_VERIFY, nullptr, &leida);
  const std::unique_ptr<wchar_t, LiberaTarea> texto(leida);
  if (FAILED(r)) return {};
  UnicodeString carpeta = windows::DeAncha(texto.get());
  while (!carpeta.empty() && carpeta.back() == u'\\') carpeta.pop_back();
  return carpeta;
}

}  // namespace

CarpetasConocidas DameCarpetasConocidas() {
  return {Carpeta(FOLDERID_LocalAppData), Carpeta(FOLDERID_ProgramData)};
}

}  // namespace vel

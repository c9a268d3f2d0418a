#include "platform/RecursoVersion.h"

#include <vector>

#include "platform/windows/ModuloPropio.h"
#include "platform/windows/Sistema.h"

namespace vel {

UnicodeString LeeRecursoVersion(std::u16string_view ruta) {
  const HMODULE modulo = windows::ModuloPropio();
  const HRSRC lugar = FindResourceW(modulo, MAKEINTRESOURCEW(VS_VERSION_INFO), RT_VERSION);
  const HGLOBAL cargado = lugar == nullptr ? nullptr : LoadResource(modulo, lugar);
  const auto* const bytes = cargado == nullptr ? nullptr : static_cast<const char*>(LockResource(cargado));
  if (bytes == nullptr) return {};
  // A copy, since the reader of these tables may write into them.
  std::vector<char> recurso(bytes, bytes + SizeofResource(modulo, lugar));
  void* texto = nullptr;
  UINT largo = 0;
  if (VerQueryValueW(recurso.data(), windows::Ancha(ruta).c_str(), &texto, &largo) == 0 || largo == 0)
    return {};
  // The length counts the zero at its end.
  return windows::DeAncha(std::wstring_view(static_cast<const wchar_t*>(texto), largo - 1));
}

}  // namespace vel

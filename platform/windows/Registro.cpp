#include "platform/Registro.h"

#include <string>

#include "platform/windows/FallasWindows.h"
#include "platform/windows/Sistema.h"

namespace vel {
namespace {

// The 32-bit branch of "SOFTWARE", whatever this program is.
constexpr REGSAM kVista = KEY_WOW64_32KEY;

/// A key that closes itself.
class Clave {
 public:
  Clave() noexcept = default;
  Clave(const Clave&) = delete;
  Clave& operator=(const Clave&) = delete;
  ~Clave() {
    if (clave_ != nullptr) RegCloseKey(clave_);
  }
  HKEY Hkey() const noexcept { return clave_; }
  HKEY* Lugar() noexcept { return &clave_; }

 private:
  HKEY clave_ = nullptr;
};

// The key's name in that branch, which already is what a name with the branch's own folder would ask for.
std::wstring NombreEnVista(std::u16string_view clave) {
  constexpr std::u16string_view kSoftware = u"SOFTWARE\\";
  constexpr std::u16string_view kNodo32 = u"WOW6432Node\\";
  while (!clave.empty() && clave.back() == u'\\') clave.remove_suffix(1);
  std::wstring nombre;
  if (SameText(clave.substr(0, kSoftware.size()), kSoftware)) {
    clave.remove_prefix(kSoftware.size());
    if (SameText(clave.substr(0, kNodo32.size()), kNodo32)) clave.remove_prefix(kNodo32.size());
    nombre = windows::Ancha(kSoftware);
  }
  return nombre + windows::Ancha(clave);
}

std::optional<UnicodeString> LeeTexto(HKEY clave, const std::wstring& nombre, FallaArchivo& falla) {
  // Variables of the environment in it stay as they are written.
  constexpr DWORD kTipos = RRF_RT_REG_SZ | RRF_RT_REG_EXPAND_SZ | RRF_NOEXPAND;
  std::wstring texto(MAX_PATH, L'\0');
  LSTATUS r = ERROR_MORE_DATA;
  // Another program may write a longer one between two calls.
  while (r == ERROR_MORE_DATA) {
    auto bytes = static_cast<DWORD>(texto.size() * sizeof(wchar_t));
    r = RegGetValueW(clave, nullptr, nombre.c_str(), kTipos, nullptr, texto.data(), &bytes);
    if (r == ERROR_MORE_DATA) texto.resize(bytes / sizeof(wchar_t) + 1);
  }
  const bool sinTexto = r == ERROR_FILE_NOT_FOUND || r == ERROR_UNSUPPORTED_TYPE;
  if (!sinTexto) falla = windows::FallaDe(static_cast<DWORD>(r));
  if (r != ERROR_SUCCESS) return std::nullopt;
  return windows::DeAncha(texto.c_str());
}

}  // namespace

ValorRegistro LeeRegistro(std::u16string_view clave, std::u16string_view nombre, FallaArchivo& falla) {
  ValorRegistro leido;
  Clave abierta;
  const LSTATUS r = RegOpenKeyExW(HKEY_LOCAL_MACHINE, NombreEnVista(clave).c_str(), 0,
                                  KEY_QUERY_VALUE | kVista, abierta.Lugar());
  leido.claveExiste = r == ERROR_SUCCESS;
  const bool falta = r == ERROR_FILE_NOT_FOUND || r == ERROR_PATH_NOT_FOUND;
  falla = falta ? FallaArchivo{} : windows::FallaDe(static_cast<DWORD>(r));
  if (leido.claveExiste) leido.texto = LeeTexto(abierta.Hkey(), windows::Ancha(nombre), falla);
  return leido;
}

FallaArchivo EscribeRegistro(std::u16string_view clave, std::u16string_view nombre,
                             std::u16string_view texto) {
  Clave abierta;
  LSTATUS r =
      RegCreateKeyExW(HKEY_LOCAL_MACHINE, NombreEnVista(clave).c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                      KEY_SET_VALUE | kVista, nullptr, abierta.Lugar(), nullptr);
  if (r == ERROR_SUCCESS) {
    const std::wstring ancho = windows::Ancha(texto);
    r = RegSetValueExW(abierta.Hkey(), windows::Ancha(nombre).c_str(), 0, REG_SZ,
                       reinterpret_cast<const BYTE*>(ancho.c_str()),
                       static_cast<DWORD>((ancho.size() + 1) * sizeof(wchar_t)));
  }
  return windows::FallaDe(static_cast<DWORD>(r));
}

}  // namespace vel

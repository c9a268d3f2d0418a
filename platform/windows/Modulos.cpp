#include "platform/Modulos.h"

#include <string>

#include "framework/Excepciones.h"
#include "framework/SinDestruir.h"
#include "platform/windows/ModuloPropio.h"
#include "platform/windows/Sistema.h"

namespace vel {
namespace {

UnicodeString BuscaRutaBiblioteca() {
  // For no module the system would answer with the program's path.
  if (windows::ModuloPropio() == nullptr)
    throw Exception(u"No se pudo determinar la carpeta de la biblioteca");
  // The longest path that the system has.
  constexpr DWORD kLargoMaximo = 32768;
  std::wstring ruta(MAX_PATH, L'\0');
  DWORD largo = GetModuleFileNameW(windows::ModuloPropio(), ruta.data(), static_cast<DWORD>(ruta.size()));
  if (largo == ruta.size()) {
    ruta.resize(kLargoMaximo);
    largo = GetModuleFileNameW(windows::ModuloPropio(), ruta.data(), kLargoMaximo);
  }
  if (largo == 0 || largo == ruta.size())
    throw Exception(u"No se pudo determinar la carpeta de la biblioteca");
  ruta.resize(largo);
  return windows::DeAncha(ruta);
}

}  // namespace

bool ModuloCargado(std::u16string_view nombre) {
  // Without a name the system would answer for the program itself.
  return !nombre.empty() && GetModuleHandleW(windows::Ancha(nombre).c_str()) != nullptr;
}

UnicodeString RutaBiblioteca() {
  static SinDestruir<UnicodeString> ruta(BuscaRutaBiblioteca());
  return *ruta;
}

}  // namespace vel

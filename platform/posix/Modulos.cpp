#include "platform/Modulos.h"

#include <dlfcn.h>
#include <filesystem>
#include <link.h>
#include <string>
#include <system_error>

namespace vel {
namespace {

// The name of a shared object without "lib", folder, and all that follows its first ".so".
std::u16string_view NombreBase(std::u16string_view ruta) {
  ruta.remove_prefix(ruta.rfind(u'/') + 1);
  if (SameText(ruta.substr(0, 3), u"lib")) ruta.remove_prefix(3);
  const std::size_t fin = ruta.find(u".so");
  return fin == std::u16string_view::npos ? std::u16string_view() : ruta.substr(0, fin);
}

struct Busqueda {
  std::u16string_view nombre;
  bool encontrado;
};

int Visita(dl_phdr_info* modulo, std::size_t /*largo*/, void* datos) {
  auto& busqueda = *static_cast<Busqueda*>(datos);
  const UnicodeString ruta = UTF8ToString(modulo->dlpi_name == nullptr ? "" : modulo->dlpi_name);
  busqueda.encontrado = !ruta.empty() && SameText(NombreBase(ruta), busqueda.nombre);
  return busqueda.encontrado ? 1 : 0;
}

}  // namespace

bool ModuloCargado(std::u16string_view nombre) {
  constexpr std::u16string_view kDll = u".dll";
  if (nombre.size() > kDll.size() && SameText(nombre.substr(nombre.size() - kDll.size()), kDll)) {
    nombre.remove_suffix(kDll.size());
  }
  if (SameText(nombre.substr(0, 3), u"lib")) nombre.remove_prefix(3);
  Busqueda busqueda{nombre, false};
  dl_iterate_phdr(Visita, &busqueda);
  return busqueda.encontrado;
}

UnicodeString RutaBiblioteca() {
  Dl_info informacion{};
  // The address of a function of this library says in which file it stands.
  if (dladdr(reinterpret_cast<const void*>(&RutaBiblioteca), &informacion) == 0) return {};
  std::error_code error;
  const std::filesystem::path ruta = std::filesystem::absolute(informacion.dli_fname, error);
  return UTF8ToString(error ? std::string(informacion.dli_fname) : ruta.string());
}

}  // namespace vel

#include "platform/Modulos.h"

#include <dlfcn.h>
#include <filesystem>
#include <link.h>
#include <string>
#include <system_error>

namespace vel {
namespace {

// A module's name without folder, "lib" and ending: ".dll", or ".so" with what may follow it (".so.9.0").
std::u16string_view NombreBase(std::u16string_view ruta) {
  ruta.remove_prefix(ruta.rfind(u'/') + 1);
  if (SameText(ruta.substr(0, 3), u"lib")) ruta.remove_prefix(3);
  for (std::size_t punto = ruta.find(u'.'); punto != std::u16string_view::npos;
       punto = ruta.find(u'.', punto + 1)) {
    const std::u16string_view terminacion = ruta.substr(punto);
    const bool objeto = SameText(terminacion.substr(0, 3), u".so");
    if (SameText(terminacion, u".dll") || (objeto && (terminacion.size() == 3 || terminacion[3] == u'.'))) {
      return ruta.substr(0, punto);
    }
  }
  return ruta;
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
  Busqueda busqueda{NombreBase(nombre), false};
  dl_iterate_phdr(Visita, &busqueda);
  return busqueda.encontrado;
}

UnicodeString RutaBiblioteca() {
  // An object that no other module sees says in which file it stands; the address of an exported function may
  // be the program's.
  static const char ancla = 0;
  Dl_info informacion{};
  if (dladdr(&ancla, &informacion) == 0) return {};
  std::error_code error;
  const std::filesystem::path ruta = std::filesystem::absolute(informacion.dli_fname, error);
  return UTF8ToString(error ? std::string(informacion.dli_fname) : ruta.string());
}

}  // namespace vel

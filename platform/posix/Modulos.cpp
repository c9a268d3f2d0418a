#include "platform/Modulos.h"

#include <charconv>
#include <cstdint>
#include <dlfcn.h>
#include <fstream>
#include <link.h>
#include <string>
#include <string_view>

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

// The file that an address belongs to, by the system's list of what the process has mapped. It has whole
// paths, where the dynamic linker repeats a relative one that stopped being true when the working folder
// changed.
std::string ArchivoDe(const void* direccion) {
  const auto buscada = reinterpret_cast<std::uintptr_t>(direccion);
  std::ifstream mapas("/proc/self/maps");
  for (std::string linea; std::getline(mapas, linea);) {
    std::uintptr_t inicio = 0;
    std::uintptr_t fin = 0;
    const char* const ultimo = linea.data() + linea.size();
    const auto r = std::from_chars(linea.data(), ultimo, inicio, 16);
    if (r.ptr == ultimo) continue;
    std::from_chars(r.ptr + 1, ultimo, fin, 16);
    const std::size_t ruta = linea.find('/');
    if (buscada >= inicio && buscada < fin && ruta != std::string::npos) return linea.substr(ruta);
  }
  return {};
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
  const std::string_view nombre = informacion.dli_fname;
  return UTF8ToString(nombre.substr(0, 1) == "/" ? std::string(nombre) : ArchivoDe(&ancla));
}

}  // namespace vel

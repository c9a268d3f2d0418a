#include "platform/Modulos.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <climits>
#include <cstdint>
#include <dlfcn.h>
#include <link.h>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>

#include "framework/Excepciones.h"
#include "platform/Archivos.h"

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

// The file that an address belongs to, by the system's list of what the process has mapped; empty when it
// cannot be read. It has whole paths, where the dynamic linker repeats a relative one that stopped being true
// when the working folder changed.
std::string ArchivoDe(const void* direccion) {
  const auto buscada = reinterpret_cast<std::uintptr_t>(direccion);
  const std::optional<std::string> bytes = LeeArchivo(u"/proc/self/maps");
  if (!bytes.has_value()) return {};
  std::istringstream mapas(*bytes);
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

/// A path that is kept for good; its memory needs no end, for hosts that call while the program ends.
class RutaFija {
 public:
  explicit RutaFija(std::u16string_view ruta) noexcept : largo_(std::min(ruta.size(), texto_.size())) {
    std::copy_n(ruta.begin(), largo_, texto_.begin());
  }
  std::u16string_view Texto() const noexcept { return {texto_.data(), largo_}; }

 private:
  // The system has no longer ones.
  std::array<char16_t, PATH_MAX> texto_{};
  std::size_t largo_;
};

RutaFija BuscaRutaBiblioteca() {
  // An object that no other module sees says in which file it stands; the address of an exported function may
  // be the program's.
  static const char ancla = 0;
  Dl_info informacion{};
  const bool conocido = dladdr(&ancla, &informacion) != 0;
  const std::string_view nombre = conocido ? informacion.dli_fname : "";
  const std::string archivo = nombre.substr(0, 1) == "/" ? std::string(nombre) : ArchivoDe(&ancla);
  if (archivo.empty()) throw Exception(u"No se pudo determinar la carpeta de la biblioteca");
  return RutaFija(UTF8ToString(archivo));
}

}  // namespace

bool ModuloCargado(std::u16string_view nombre) {
  Busqueda busqueda{NombreBase(nombre), false};
  dl_iterate_phdr(Visita, &busqueda);
  return busqueda.encontrado;
}

UnicodeString RutaBiblioteca() {
  // Kept: the search takes longer than a log line, and the answer is the same while the library is loaded.
  static const RutaFija ruta = BuscaRutaBiblioteca();
  return UnicodeString(ruta.Texto());
}

}  // namespace vel

#include "platform/ZonasHorarias.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>
#include <mutex>
#include <string>

#include "framework/SinDestruir.h"
#include "platform/Archivos.h"
#include "platform/NombresZonas.h"
#include "platform/Tzif.h"

// The zones come from the system's tz database, which its updates keep up: a copy that comes with a library
// knows of no law that is newer than the library.

namespace vel {
namespace {

using Zona = std::shared_ptr<const ZonaHoraria>;

std::string VariableEntorno(const char* nombre) {
  const char* const valor = std::getenv(nombre);
  return valor == nullptr ? std::string() : std::string(valor);
}

Zona LeeZona(const std::string& archivo) {
  const std::optional<std::string> bytes = LeeArchivo(UTF8ToString(archivo));
  if (!bytes.has_value()) return nullptr;
  std::optional<ZonaHoraria> zona = LeeTzif(*bytes);
  return zona.has_value() ? std::make_shared<const ZonaHoraria>(std::move(*zona)) : nullptr;
}

std::string ArchivoDeZona(const std::string& nombre) {
  std::string carpeta = VariableEntorno("TZDIR");
  if (carpeta.empty()) carpeta = "/usr/share/zoneinfo";
  return carpeta + "/" + nombre;
}

// Names begin with a capital: what does not is another file of the database's folder, or its copy with leap
// seconds ("right/...").
bool EsNombreIana(std::u16string_view nombre) {
  const auto vale = [](char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') || c == u'/' ||
           c == u'_' || c == u'-' || c == u'+';
  };
  return !nombre.empty() && nombre.front() >= u'A' && nombre.front() <= u'Z' &&
         std::all_of(nombre.begin(), nombre.end(), vale);
}

// The zone that TZ names, as the C library reads it: unset is the system's file, empty is universal time, and
// else a file of the database or a rule.
Zona LeeZonaActiva(const char* tz) {
  Zona universal = std::make_shared<const ZonaHoraria>();
  if (tz == nullptr) {
    Zona zona = LeeZona("/etc/localtime");
    return zona != nullptr ? zona : universal;
  }
  std::string nombre(tz);
  if (!nombre.empty() && nombre.front() == ':') nombre.erase(0, 1);
  if (nombre.empty()) return universal;
  if (Zona zona = LeeZona(nombre.front() == '/' ? nombre : ArchivoDeZona(nombre))) return zona;
  ZonaHoraria regla;
  if (!LeeReglaPosix(nombre, regla)) return universal;
  regla.inicial = regla.estandar;
  return std::make_shared<const ZonaHoraria>(std::move(regla));
}

}  // namespace

Zona DameZonaActiva() {
  // Read again only when TZ changes, as the C library does.
  struct Leida {
    std::mutex candado;
    std::string tz;
    Zona zona;
  };
  static SinDestruir<Leida> leida;
  const char* const tz = std::getenv("TZ");
  const std::string_view actual = tz == nullptr ? std::string_view("\1") : std::string_view(tz);
  const std::lock_guard<std::mutex> guardia(leida->candado);
  if (leida->zona == nullptr || leida->tz != actual) {
    Zona nueva = LeeZonaActiva(tz);
    leida->tz = actual;
    leida->zona = std::move(nueva);
  }
  return leida->zona;
}

Zona DameZonaWindows(std::u16string_view nombre) {
  struct Casilla {
    std::mutex candado;
    Zona zona;
  };
  static SinDestruir<std::array<Casilla, kZonasWindows>> casillas;
  const ZonaWindows* const buscada = BuscaZonaWindows(nombre);
  if (buscada == nullptr) return nullptr;
  Casilla& casilla = (*casillas)[IndiceZonaWindows(*buscada)];
  const std::lock_guard<std::mutex> guardia(casilla.candado);
  // A zone that could not be read, perhaps for want of file descriptors, is tried again at the next call.
  if (casilla.zona == nullptr) {
    if (const Zona leida = LeeZona(ArchivoDeZona(buscada->tz))) {
      auto zona = std::make_shared<ZonaHoraria>(*leida);
      zona->nombreEstandar = buscada->nombre;
      zona->nombreVerano = NombreVerano(zona->nombreEstandar);
      casilla.zona = std::move(zona);
    }
  }
  return casilla.zona;
}

Zona DameZonaIana(std::u16string_view nombre) {
  // As many as the database has names.
  struct Leidas {
    std::mutex candado;
    std::map<std::string, Zona> zonas;
  };
  static SinDestruir<Leidas> leidas;
  if (!EsNombreIana(nombre)) return nullptr;
  const std::string archivo = ArchivoDeZona(UTF8Encode(nombre));
  const std::lock_guard<std::mutex> guardia(leidas->candado);
  const auto leida = leidas->zonas.find(archivo);
  if (leida != leidas->zonas.end()) return leida->second;
  Zona zona = LeeZona(archivo);
  if (zona != nullptr) leidas->zonas.emplace(archivo, zona);
  return zona;
}

}  // namespace vel

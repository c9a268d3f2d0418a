#include "platform/ZonasHorarias.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "framework/Numeros.h"
#include "framework/SinDestruir.h"
#include "platform/NombresZonas.h"
#include "platform/Tzif.h"
#include "platform/windows/ConciliaZonas.h"
#include "platform/windows/Sistema.h"
#include "platform/windows/TablaZonas.h"

// The system's own records are too coarse for the past (two changes a year, from the year 2000 or 2007 on),
// so a table of the tz database comes first, and the records where they are newer: ConciliaZonas.h.

namespace vel {
namespace {

using Zona = std::shared_ptr<const ZonaHoraria>;

constexpr std::u16string_view kZonas = u"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Time Zones";
// The longest name of a key.
constexpr std::size_t kNombreMaximo = 255;

// A key of the local machine, open for reading. Programs of 32 bits see the same zones.
class Llave {
 public:
  explicit Llave(const UnicodeString& ruta) {
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, windows::Ancha(ruta).c_str(), 0, KEY_QUERY_VALUE, &llave_) !=
        ERROR_SUCCESS) {
      llave_ = nullptr;
    }
  }
  Llave(const Llave&) = delete;
  Llave& operator=(const Llave&) = delete;
  ~Llave() {
    if (llave_ != nullptr) RegCloseKey(llave_);
  }

  // The bytes of a value of that kind (RRF_RT_...); nothing when there is none.
  std::optional<std::string> Lee(const UnicodeString& nombre, DWORD clase) const {
    if (llave_ == nullptr) return std::nullopt;
    // Room for more than any of these values has.
    std::array<char, 1024> bytes;
    auto largo = static_cast<DWORD>(bytes.size());
    if (RegGetValueW(llave_, nullptr, windows::Ancha(nombre).c_str(), clase, nullptr, bytes.data(), &largo) !=
        ERROR_SUCCESS) {
      return std::nullopt;
    }
    return std::string(bytes.data(), largo);
  }
  std::optional<RegistroTzi> Tzi(const UnicodeString& nombre) const {
    const std::optional<std::string> bytes = Lee(nombre, RRF_RT_REG_BINARY);
    return bytes.has_value() ? LeeTzi(*bytes) : std::nullopt;
  }
  int Entero(const UnicodeString& nombre) const {
    std::uint32_t valor = 0;
    const std::optional<std::string> bytes = Lee(nombre, RRF_RT_REG_DWORD);
    if (bytes.has_value() && bytes->size() == sizeof valor) std::memcpy(&valor, bytes->data(), sizeof valor);
    return static_cast<int>(valor);
  }
  // In the language of the system.
  UnicodeString Texto(const UnicodeString& nombre) const {
    const std::string bytes = Lee(nombre, RRF_RT_REG_SZ).value_or(std::string());
    UnicodeString texto(bytes.size() / sizeof(char16_t), u'\0');
    std::memcpy(texto.data(), bytes.data(), texto.size() * sizeof(char16_t));
    return texto.substr(0, texto.find(u'\0'));
  }

 private:
  HKEY llave_ = nullptr;
};

struct Leida {
  ZonaSistema reglas;
  UnicodeString estandar;
  UnicodeString verano;
};

// What the system knows of a zone by its Windows name; nothing when it has no such zone.
std::optional<Leida> LeeSistema(std::u16string_view nombre) {
  constexpr std::u16string_view kNoDeNombre(u"\\\0", 2);
  if (nombre.empty() || nombre.size() > kNombreMaximo || nombre.find_first_of(kNoDeNombre) != nombre.npos)
    return std::nullopt;
  const UnicodeString ruta = UnicodeString(kZonas) + u"\\" + UnicodeString(nombre);
  const Llave llave(ruta);
  const std::optional<RegistroTzi> actual = llave.Tzi(u"TZI");
  if (!actual.has_value()) return std::nullopt;
  Leida leida;
  leida.reglas.actual = *actual;
  leida.estandar = llave.Texto(u"Std");
  leida.verano = llave.Texto(u"Dlt");
  // Year and number of the edition: 07e11800 was one of 2017.
  leida.reglas.edicion = Llave(UnicodeString(kZonas)).Entero(u"TzVersion") >> 16;
  const Llave anios(ruta + u"\\Dynamic DST");
  // What is no calendar year is no entry either.
  const int primero = std::max(anios.Entero(u"FirstEntry"), 1900);
  const int ultimo = std::min(anios.Entero(u"LastEntry"), 2200);
  for (int anio = primero; anio <= ultimo; ++anio) {
    if (const std::optional<RegistroTzi> r = anios.Tzi(IntToStr(anio)))
      leida.reglas.porAnio.emplace(anio, *r);
  }
  return leida;
}

int AnioActual() {
  ::SYSTEMTIME ahora;
  GetSystemTime(&ahora);
  return ahora.wYear;
}

// The table's zone of that name, with what newer records of the Windows zones that stand for it know better;
// null when the table has none.
std::optional<ZonaHoraria> LeeTabla(std::string_view nombre) {
  const std::string_view bytes = BuscaTablaZonas(nombre);
  std::optional<ZonaHoraria> zona = LeeTzif(bytes);
  if (!zona.has_value()) return std::nullopt;
  for (const ZonaWindows& suya : ZonasWindows()) {
    // The names of one zone give the same bytes.
    if (BuscaTablaZonas(suya.tz).data() != bytes.data()) continue;
    if (const std::optional<Leida> leida = LeeSistema(suya.nombre))
      zona = Concilia(std::move(*zona), AnioTablaZonas(), AnioActual(), leida->reglas);
  }
  return zona;
}

Zona LeeWindows(std::u16string_view nombre) {
  std::optional<ZonaHoraria> zona;
  const ZonaWindows* const conocida = BuscaZonaWindows(nombre);
  if (conocida != nullptr) {
    zona = LeeTabla(conocida->tz);
  } else if (!BuscaTablaZonas(UTF8Encode(nombre)).empty()) {
    // Callers ask here first for any name; the registry need not be asked for those of the tz database.
    return nullptr;
  }
  const std::optional<Leida> leida = LeeSistema(nombre);
  if (!zona.has_value()) {
    if (!leida.has_value()) return nullptr;
    zona = DeSistema(leida->reglas);
  }
  if (leida.has_value()) {
    zona->nombreEstandar = leida->estandar;
    zona->nombreVerano = leida->verano;
  } else {
    zona->nombreEstandar = conocida->nombre;
    zona->nombreVerano = NombreVerano(conocida->nombre);
  }
  return std::make_shared<const ZonaHoraria>(std::move(*zona));
}

// Zones by their names, read at the first call and kept; unknown names are not.
template <class Nombre, class Orden>
struct Leidas {
  std::mutex candado;
  std::map<Nombre, Zona, Orden> zonas;

  template <class Vista, class Lee>
  Zona Dame(Vista nombre, Lee&& lee) {
    const std::lock_guard<std::mutex> guardia(candado);
    const auto leida = zonas.find(nombre);
    if (leida != zonas.end()) return leida->second;
    Zona zona = lee(nombre);
    if (zona != nullptr) zonas.emplace(Nombre(nombre), zona);
    return zona;
  }
};

RegistroTzi Registro(const DYNAMIC_TIME_ZONE_INFORMATION& d) {
  const auto fecha = [](const ::SYSTEMTIME& f) {
    return FechaTzi{f.wYear, f.wMonth, f.wDayOfWeek, f.wDay, f.wHour, f.wMinute, f.wSecond, f.wMilliseconds};
  };
  return {static_cast<std::int32_t>(d.Bias), static_cast<std::int32_t>(d.StandardBias),
          static_cast<std::int32_t>(d.DaylightBias), fecha(d.StandardDate), fecha(d.DaylightDate)};
}

Zona LeeActiva(const DYNAMIC_TIME_ZONE_INFORMATION& d) {
  Zona zona = DameZonaWindows(windows::DeAncha(d.TimeZoneKeyName));
  // Whoever turns summer time off has the standard time of a zone that keeps it; in one that does not there
  // is nothing to turn off, and the past stays as it was.
  const bool sinVerano = d.DynamicDaylightTimeDisabled != 0 && (zona == nullptr || zona->verano.has_value());
  if (zona != nullptr && !sinVerano) return zona;
  ZonaSistema propia;
  propia.actual = Registro(d);
  if (sinVerano) propia.actual.estandar.mes = propia.actual.verano.mes = 0;
  return std::make_shared<const ZonaHoraria>(DeSistema(propia));
}

}  // namespace

Zona DameZonaActiva() {
  // Made anew only when the system's answer is another.
  struct Ultima {
    std::mutex candado;
    DYNAMIC_TIME_ZONE_INFORMATION respuesta;
    Zona zona;
  };
  static SinDestruir<Ultima> ultima;
  DYNAMIC_TIME_ZONE_INFORMATION ahora;
  // Also what is behind the end of a name and between the fields is compared below.
  std::memset(&ahora, 0, sizeof ahora);
  if (GetDynamicTimeZoneInformation(&ahora) == TIME_ZONE_ID_INVALID)
    return std::make_shared<const ZonaHoraria>();
  const std::lock_guard<std::mutex> guardia(ultima->candado);
  // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison,cert-exp42-c,cert-flp37-c)
  if (ultima->zona == nullptr || std::memcmp(&ultima->respuesta, &ahora, sizeof ahora) != 0) {
    ultima->zona = LeeActiva(ahora);
    ultima->respuesta = ahora;
  }
  return ultima->zona;
}

Zona DameZonaWindows(std::u16string_view nombre) {
  static SinDestruir<Leidas<UnicodeString, LessText>> leidas;
  return leidas->Dame(nombre, LeeWindows);
}

Zona DameZonaIana(std::u16string_view nombre) {
  static SinDestruir<Leidas<UnicodeString, std::less<>>> leidas;
  return leidas->Dame(nombre, [](std::u16string_view n) -> Zona {
    std::optional<ZonaHoraria> zona = LeeTabla(UTF8Encode(n));
    return zona.has_value() ? std::make_shared<const ZonaHoraria>(std::move(*zona)) : nullptr;
  });
}

}  // namespace vel

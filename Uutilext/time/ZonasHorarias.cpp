#include "Uutilext/time/ZonasHorarias.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <span>

#include "Uutilext/time/ConversionZonas.h"
#include "framework/Numeros.h"
#include "platform/ReglasZona.h"
#include "platform/ZonasHorarias.h"

namespace vel {
namespace {

namespace crono = std::chrono;

constexpr std::u16string_view kZonaPredeterminada = u"Central Standard Time (Mexico)";
constexpr std::int32_t kDia = 86400;

std::int64_t Ahora() {
  return crono::floor<crono::seconds>(crono::system_clock::now()).time_since_epoch().count();
}

void CopiaNombre(std::span<char16_t, 32> campo, const UnicodeString& nombre) {
  std::fill(campo.begin(), campo.end(), u'\0');
  std::copy_n(nombre.begin(), std::min(nombre.size(), campo.size() - 1), campo.begin());
}

// A rule as a record. One by day of the year, or whose time lies outside its day, falls on another day of the
// week every year: the one of this year.
SYSTEMTIME Registro(const ReglaCambio& regla, int anio) {
  ReglaCambio r = regla;
  if (r.diaAnio > 0 || r.segundos < 0 || r.segundos >= kDia) {
    const std::int64_t momento = MomentoDeRegla(regla, anio);
    const crono::sys_days dia = crono::floor<crono::days>(crono::sys_seconds{crono::seconds{momento}});
    const crono::year_month_day fecha{dia};
    const auto diaMes = static_cast<int>(static_cast<unsigned>(fecha.day()));
    const auto ultimo =
        static_cast<int>(static_cast<unsigned>((fecha.year() / fecha.month() / crono::last).day()));
    r.mes = static_cast<int>(static_cast<unsigned>(fecha.month()));
    r.diaSemana = static_cast<int>(crono::weekday{dia}.c_encoding());
    r.semana = diaMes + 7 > ultimo ? 5 : (diaMes + 6) / 7;
    r.segundos = static_cast<std::int32_t>(momento - crono::seconds{dia.time_since_epoch()}.count());
  }
  // All of them small and positive by now.
  const auto corto = [](int valor) { return static_cast<std::uint16_t>(valor); };
  return {0,
          corto(r.mes),
          corto(r.diaSemana),
          corto(r.semana),
          corto(r.segundos / 3600),
          corto(r.segundos / 60 % 60),
          corto(r.segundos % 60),
          0};
}

}  // namespace

bool GetInfoTimeZone(TIME_ZONE_INFORMATION& tzi, std::u16string_view nombre) {
  if (nombre.empty()) return false;
  const std::shared_ptr<const ZonaHoraria> zona = DameZonaWindows(nombre);
  if (zona == nullptr) return false;
  const auto anio =
      static_cast<int>(crono::year_month_day{crono::floor<crono::days>(crono::system_clock::now())}.year());
  tzi = {};
  tzi.Bias = -zona->estandar.segundos / 60;
  CopiaNombre(tzi.StandardName, zona->nombreEstandar);
  CopiaNombre(tzi.DaylightName, zona->nombreVerano);
  if (zona->verano.has_value()) {
    tzi.DaylightBias = (zona->estandar.segundos - zona->verano->desfase.segundos) / 60;
    tzi.DaylightDate = Registro(zona->verano->comienza, anio);
    tzi.StandardDate = Registro(zona->verano->termina, anio);
  }
  return true;
}

TDateTime ConvertTimeToTimeZone(TDateTime fecha, std::u16string_view zona) {
  const std::shared_ptr<const ZonaHoraria> destino =
      DameZonaWindows(zona.empty() ? kZonaPredeterminada : zona);
  crono::sys_time<crono::milliseconds> universal;
  if (destino != nullptr && LocalAUniversal(*DameZonaActiva(), fecha, universal)) {
    UniversalALocal(*destino, universal, fecha);
  }
  return fecha;
}

int DameHoraBase(TDateTime /*fecha*/) {
  const DesfaseZona desfase = DesfaseEnUtc(*DameZonaActiva(), Ahora());
  return static_cast<int>(std::round(desfase.segundos / 3600.0));
}

UnicodeString DameSecTiempoSincro(int numero) {
  return u"TiempoSincronizacion" + UnicodeString(numero < 10 ? u"0" : u"") + IntToStr(numero);
}

}  // namespace vel

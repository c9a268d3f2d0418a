// Zones: files of the tz database and POSIX rules of any bytes, their offsets against a plain walk and
// against the C library, and moments there and back.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <ctime>
#include <optional>

#include "Uutilext/time/CalculoZonas.h"
#include "Uutilext/time/ConversionZonas.h"
#include "fuzz/Entrada.h"
#include "fuzz/Exige.h"
#include "platform/ReglasZona.h"
#include "platform/Tzif.h"

namespace {

using fuzz::Exige;
using fuzz::ExigeIgual;
using namespace vel;

constexpr std::int64_t kDia = 86400;

// A zone whose changes are weeks apart, as those of the database are.
bool EsSensata(const ZonaHoraria& zona) {
  const auto cabe = [](const DesfaseZona& d) { return d.segundos >= -93600 && d.segundos <= 93600; };
  bool sensata = cabe(zona.inicial) && cabe(zona.estandar) && (!zona.verano || cabe(zona.verano->desfase));
  if (zona.verano) {
    const std::int64_t dias =
        (MomentoDeRegla(zona.verano->termina, 2023) - MomentoDeRegla(zona.verano->comienza, 2023)) / kDia;
    sensata = sensata && std::abs(dias) > 14 && std::abs(dias) < 350;
  }
  for (std::size_t i = 0; i < zona.cambios.size(); ++i) {
    sensata = sensata && cabe(zona.cambios[i].desfase) &&
              (i == 0 || zona.cambios[i].momento - zona.cambios[i - 1].momento > 14 * kDia);
  }
  return sensata;
}

void ExigeDesfases(const ZonaHoraria& zona, std::int64_t utc) {
  const DesfaseZona desfase = DesfaseEnUtc(zona, utc);
  std::optional<DesfaseZona> esperado;
  for (const ZonaHoraria::Cambio& c : zona.cambios) {
    if (c.momento <= utc) esperado = c.desfase;
  }
  const bool trasElUltimo = zona.cambios.empty() || zona.cambios.back().momento <= utc;
  if (!trasElUltimo) {
    Exige(desfase == esperado.value_or(zona.inicial), "the offset between two changes");
  } else {
    Exige(desfase == zona.estandar || (zona.verano && desfase == zona.verano->desfase),
          "an offset that the zone does not have");
  }
  if (!EsSensata(zona)) return;
  // A local moment is that of its universal one, or the other of the two when it occurs twice.
  const std::int64_t local = utc + desfase.segundos;
  const std::int64_t vuelta = LocalAUtc(zona, local);
  ExigeIgual(vuelta + DesfaseEnUtc(zona, vuelta).segundos, local, "the local time, there and back");
}

// The C library takes the rules of the universal year, which is another than the local one at its ends.
bool LejosDeAnioNuevo(std::int64_t utc) {
  const auto momento = static_cast<std::time_t>(utc);
  std::tm partes{};
  gmtime_r(&momento, &partes);
  return partes.tm_yday > 3 && partes.tm_yday < 361;
}

// The C library's offset by a POSIX rule.
long DesfaseDeLibc(const std::string& regla, std::int64_t utc) {
  // In one place: setenv keeps every text that it was ever given.
  static std::array<char, 8192> variable{'T', 'Z', '='};
  regla.copy(variable.data() + 3, variable.size() - 4);
  variable[std::min(regla.size(), variable.size() - 4) + 3] = '\0';
  putenv(variable.data());
  tzset();
  const auto momento = static_cast<std::time_t>(utc);
  std::tm partes{};
  localtime_r(&momento, &partes);
  return partes.tm_gmtoff;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
  fuzz::Entrada entrada(datos, largo);
  std::int64_t momentos[4];
  // Years 1 to 9999, and more often ours.
  for (std::int64_t& m : momentos) {
    m = entrada.Moneda() ? entrada.Entero<std::int64_t>(0, 4'102'444'800)
                         : entrada.Entero<std::int64_t>(-62'135'596'800, 253'402'300'799);
  }
  const std::string bytes = entrada.Resto();
  if (bytes.starts_with("TZif")) {
    const std::optional<ZonaHoraria> zona = LeeTzif(bytes);
    if (!zona.has_value()) return 0;
    for (const std::int64_t m : momentos) ExigeDesfases(*zona, m);
    for (std::size_t i = 0; i < std::min<std::size_t>(zona->cambios.size(), 10); ++i) {
      const std::int64_t m = zona->cambios[i].momento;
      if (m > -62'135'596'800 && m < 253'402'300'799) ExigeDesfases(*zona, m), ExigeDesfases(*zona, m - 1);
    }
    return 0;
  }
  ZonaHoraria zona;
  if (!LeeReglaPosix(bytes, zona)) return 0;
  zona.inicial = zona.estandar;
  for (const std::int64_t m : momentos) ExigeDesfases(zona, m);
  // The C library takes hours to 24; for a summer without rules it has ways of its own.
  const auto comun = [](const DesfaseZona& d) { return d.segundos > -86400 && d.segundos < 86400; };
  const auto hora = [](const ReglaCambio& r) { return r.segundos >= 0 && r.segundos < 86400; };
  const bool conReglas = !zona.verano || bytes.find(',') != std::string::npos;
  const bool comparable = EsSensata(zona) && conReglas && comun(zona.estandar) &&
                          (!zona.verano || (comun(zona.verano->desfase) && hora(zona.verano->comienza) &&
                                            hora(zona.verano->termina)));
  if (!comparable || bytes.find('\0') != std::string::npos || bytes.front() == ':') return 0;
  const auto compara = [&](std::int64_t m) {
    if (m < 0 || !LejosDeAnioNuevo(m)) return;
    ExigeIgual(static_cast<long>(DesfaseEnUtc(zona, m).segundos), DesfaseDeLibc(bytes, m),
               "the C library's offset");
  };
  for (const std::int64_t m : momentos) compara(m);
  if (!zona.verano) return 0;
  // Around a year's changes.
  const int anio = 1971 + static_cast<int>(static_cast<std::uint64_t>(momentos[0]) % 100);
  for (const std::int64_t m : {MomentoDeRegla(zona.verano->comienza, anio) - zona.estandar.segundos,
                               MomentoDeRegla(zona.verano->termina, anio) - zona.verano->desfase.segundos}) {
    for (const std::int64_t cerca : {-kDia, -kDia / 2, -std::int64_t{1}, std::int64_t{0}, kDia / 2})
      compara(m + cerca);
  }
  return 0;
}

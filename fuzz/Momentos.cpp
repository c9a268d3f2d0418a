// Moments: the calendar against the standard library's, and every text back to the moment that it was made
// of.
#include <chrono>
#include <cmath>
#include <optional>

#include "facil/FechasISO.h"
#include "framework/Excepciones.h"
#include "framework/TDateTime.h"
#include "fuzz/Entrada.h"
#include "fuzz/Exige.h"

namespace {

using fuzz::Exige;
using fuzz::ExigeIgual;
using namespace vel;
namespace crono = std::chrono;

constexpr long long kMilisPorDia = 86'400'000;

long long Milis(TDateTime momento) {
  const double dia = std::trunc(momento.Val());
  return static_cast<long long>(dia) * kMilisPorDia +
         std::llround(std::fabs(momento.Val() - dia) * static_cast<double>(kMilisPorDia));
}

// Writes a moment of the calendar in every form and reads it back.
void ExigeIdaYVuelta(TDateTime momento) {
  const long long milis = Milis(momento);
  const long long dia = milis >= 0 ? milis / kMilisPorDia : (milis - kMilisPorDia + 1) / kMilisPorDia;
  const crono::year_month_day ymd{crono::sys_days{crono::year{1899} / 12 / 30} + crono::days{dia}};
  const CivilDate fecha = DecodeDate(momento);
  const CivilTime hora = DecodeTime(momento);
  Exige(fecha == CivilDate{static_cast<int>(ymd.year()), static_cast<int>(static_cast<unsigned>(ymd.month())),
                           static_cast<int>(static_cast<unsigned>(ymd.day()))},
        "the calendar's date");
  ExigeIgual(((hora.hora * 60LL + hora.minuto) * 60 + hora.segundo) * 1000 + hora.milisegundo,
             milis - dia * kMilisPorDia, "the time of day");

  TDateTime compuesto, soloHora;
  Exige(TryEncodeDate(fecha, compuesto) && TryEncodeTime(hora, soloHora),
        "what was taken apart does not go together");
  compuesto = ComposeDateTime(compuesto, soloHora);
  ExigeIgual(Milis(compuesto), milis, "taken apart and put together");
  TDateTime leido;
  Exige(TryStrToDateTime(DateTimeToStr(momento), leido), "its text is no date");
  ExigeIgual(leido.Val(), compuesto.Val(), "the date of its text");
  Exige(TryISOToDateTime(DateTimeToISO(momento), leido), "its ISO text is no date");
  ExigeIgual(leido.Val(), compuesto.Val(), "the date of its ISO text");
  ExigeIgual(facil::DeISO(facil::FechaHoraISO(compuesto)).Val(), compuesto.Val(),
             "the date of the front's ISO text");
  const auto universal = crono::sys_time<crono::milliseconds>(crono::milliseconds(milis));
  if (dia > -600'000 && dia < 2'900'000) {
    Exige(facil::DeISOUniversal(facil::FechaHoraISO(universal)) == universal, "the moment of universal time");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
  fuzz::Entrada entrada(datos, largo);
  const double dia = entrada.Entero(-693'593, 2'958'465);
  const double fraccion = static_cast<double>(entrada.Entero<std::int64_t>(0, 86'399'999)) / 86'400'000.0;
  ExigeIdaYVuelta(ComposeDateTime(TDateTime(dia), TDateTime(fraccion)));
  const TDateTime cualquiera(entrada.Doble());
  bool valida = true;
  try {
    DecodeDate(cualquiera);
  } catch (const EConvertError&) {
    valida = false;
  }
  Exige(valida || !(std::fabs(cualquiera.Val()) < 693'000), "a date of the calendar is refused");
  if (valida) ExigeIdaYVuelta(cualquiera);

  const UnicodeString texto = fuzz::Entrada::ATexto(entrada.Resto());
  TDateTime leido;
  if (TryStrToDateTime(texto, leido)) ExigeIdaYVuelta(leido);
  std::optional<TDateTime> iso;
  if (TryISOToDateTime(texto, leido)) {
    iso = leido;
    ExigeIdaYVuelta(leido);
  }
  try {
    const TDateTime deFacil = facil::DeISO(texto);
    if (iso.has_value()) ExigeIgual(deFacil.Val(), iso->Val(), "both readers of ISO texts");
    ExigeIdaYVuelta(deFacil);
  } catch (const EConvertError&) {
  }
  try {
    const auto universal = facil::DeISOUniversal(texto);
    Exige(facil::DeISOUniversal(facil::FechaHoraISO(universal)) == universal, "a moment of universal time");
  } catch (const EConvertError&) {
  }
  return 0;
}

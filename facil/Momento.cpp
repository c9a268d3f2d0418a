#include "facil/Momento.h"

#include "framework/Excepciones.h"

namespace vel::facil {

using std::chrono::local_days;
using std::chrono::local_time;
using std::chrono::milliseconds;
using std::chrono::year_month_day;

namespace {

TDateTime Dia(year_month_day dia) {
  // The calendar's own types wrap round beyond 32,767 years; EncodeDate refuses all but years 1 to 9999.
  return EncodeDate({static_cast<int>(dia.year()), static_cast<int>(static_cast<unsigned>(dia.month())),
                     static_cast<int>(static_cast<unsigned>(dia.day()))});
}

}  // namespace

Momento::Momento(year_month_day dia) : momento_(Dia(dia)) {}

TDateTime Momento::DeLocal(local_time<milliseconds> momento) {
  // Before it becomes a calendar day, whose year is 16 bits wide.
  constexpr local_days kPrimero(std::chrono::year(1) / 1 / 1);
  constexpr local_days kUltimo(std::chrono::year(9999) / 12 / 31);
  const local_days dia = std::chrono::floor<std::chrono::days>(momento);
  if (dia < kPrimero || dia > kUltimo) throw EConvertError(u"La fecha no es válida");
  const std::chrono::hh_mm_ss reloj(momento - dia);
  TDateTime hora;
  TryEncodeTime({static_cast<int>(reloj.hours().count()), static_cast<int>(reloj.minutes().count()),
                 static_cast<int>(reloj.seconds().count()), static_cast<int>(reloj.subseconds().count())},
                hora);
  return ComposeDateTime(Dia(year_month_day(dia)), hora);
}

year_month_day ADia(TDateTime momento) {
  const CivilDate fecha = DecodeDate(momento);
  return {std::chrono::year(fecha.anio), std::chrono::month(static_cast<unsigned>(fecha.mes)),
          std::chrono::day(static_cast<unsigned>(fecha.dia))};
}

local_time<milliseconds> AHoraLocal(TDateTime momento) {
  const CivilTime hora = DecodeTime(momento);
  return local_days(ADia(momento)) + std::chrono::hours(hora.hora) + std::chrono::minutes(hora.minuto) +
         std::chrono::seconds(hora.segundo) + milliseconds(hora.milisegundo);
}

}  // namespace vel::facil

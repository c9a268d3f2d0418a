#pragma once

#include <chrono>

#include "facil/Momento.h"
#include "facil/Texto.h"
#include "facil/Zonas.h"
#include "framework/TDateTime.h"
#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel::facil {

/// Texts of ISO 8601: the day, "2024-05-13", and the day with its time, "2024-05-13T14:30:00" (midnight too),
/// as electronic invoices and web services write them; milliseconds follow only when some remain. Dates
/// outside the years 1 to 9999 raise EConvertError ("La fecha no es válida"), here and below.
///
/// DateTimeToISO gives the form that databases read, with a blank for the "T" and without a midnight.
UTILVEL90_EXPORT UnicodeString FechaISO(Momento momento);
UTILVEL90_EXPORT UnicodeString FechaHoraISO(Momento momento);

/// The same of a moment of universal time (RFC 3339): with "Z", or as a zone's local time with its offset.
///
///     const auto momento = sys_days(2024y / May / 13) + 20h;
///     FechaHoraISO(momento)                           // u"2024-05-13T20:00:00Z"
///     FechaHoraISO(momento, "America/Mexico_City")    // u"2024-05-13T14:00:00-06:00"
///
/// A local time goes by way of AUniversal: FechaHoraISO(AUniversal(local, zona), zona).
///
/// An offset of seconds, as before zones were agreed, is cut to its minutes and the time stands in that
/// offset, so that the text is of the same moment.
UTILVEL90_EXPORT UnicodeString FechaHoraISO(MomentoUniversal momento);
UTILVEL90_EXPORT UnicodeString FechaHoraISO(MomentoUniversal momento, const Zona& zona);
template <class Duracion>
UnicodeString FechaHoraISO(std::chrono::sys_time<Duracion> momento) {
  return FechaHoraISO(std::chrono::floor<std::chrono::milliseconds>(momento));
}
template <class Duracion>
UnicodeString FechaHoraISO(std::chrono::sys_time<Duracion> momento, const Zona& zona) {
  return FechaHoraISO(std::chrono::floor<std::chrono::milliseconds>(momento), zona);
}

/// Reads a day with or without its time, "T" or a blank between them; what is finer than milliseconds is cut.
/// EConvertError ("'x' no es una fecha ISO") for any other text, and for one that tells its zone, which
/// DeISOUniversal reads.
///
///     DeISO("2024-05-13T14:30:00") == EncodeDate({2024, 5, 13}) and its time
UTILVEL90_EXPORT TDateTime DeISO(const Texto& texto);

/// Reads a day and time with its zone, "Z" or an offset of hours and minutes ("-06:00", "-0600", "-06"; at
/// most 23:59). EConvertError for any other text, also for one that does not tell its zone.
///
///     DeISOUniversal("2024-05-13T14:30:00-06:00") == sys_days(2024y / May / 13) + 20h + 30min
UTILVEL90_EXPORT MomentoUniversal DeISOUniversal(const Texto& texto);

}  // namespace vel::facil

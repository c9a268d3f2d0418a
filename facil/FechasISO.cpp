#include "facil/FechasISO.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "framework/Excepciones.h"

namespace vel::facil {

namespace {

namespace crono = std::chrono;
using crono::minutes;

constexpr std::u16string_view kDigitos = u"0123456789";

bool EsDigito(char16_t c) { return c >= u'0' && c <= u'9'; }

[[noreturn]] void Lanza(std::u16string_view texto) {
  throw EConvertError(u"'" + UnicodeString(texto) + u"' no es una fecha ISO");
}

// The moment on a clock that shows universal time and this offset.
UnicodeString EnDesfase(MomentoUniversal momento, minutes desfase) {
  return FechaHoraISO(crono::local_time<crono::milliseconds>(momento.time_since_epoch() + desfase));
}

void AgregaDosCifras(UnicodeString& texto, std::int64_t valor) {
  texto += static_cast<char16_t>(u'0' + valor / 10);
  texto += static_cast<char16_t>(u'0' + valor % 10);
}

// A day, with its time or not, and digits of the fraction beyond the third.
bool Lee(std::u16string_view texto, TDateTime& momento) {
  const std::size_t punto = texto.find(u'.');
  if (punto == std::u16string_view::npos) return TryISOToDateTime(texto, momento);
  const std::size_t fin = std::min(texto.find_first_not_of(kDigitos, punto + 1), texto.size());
  constexpr std::size_t kMilesimas = 3;
  UnicodeString cortado(texto.substr(0, std::min(fin, punto + 1 + kMilesimas)));
  cortado += texto.substr(fin);
  return TryISOToDateTime(cortado, momento);
}

// "+hh:mm", "+hhmm" or "+hh".
bool LeeDesfase(std::u16string_view texto, minutes& desfase) {
  UnicodeString cifras(texto.substr(1));
  if (cifras.size() == 5 && cifras[2] == u':') cifras.erase(2, 1);
  if (cifras.size() == 2) cifras += u"00";
  if (cifras.size() != 4 || !std::all_of(cifras.begin(), cifras.end(), EsDigito)) return false;
  const auto par = [&cifras](std::size_t i) { return (cifras[i] - u'0') * 10 + (cifras[i + 1] - u'0'); };
  if (par(0) > 23 || par(2) > 59) return false;
  desfase = minutes((texto[0] == u'-' ? -1 : 1) * (par(0) * 60 + par(2)));
  return true;
}

}  // namespace

UnicodeString FechaISO(Momento momento) { return DateTimeToISO(momento, TFieldType::ftDate); }

UnicodeString FechaHoraISO(Momento momento) {
  return FechaISO(momento) + u'T' + DateTimeToISO(momento, TFieldType::ftTime);
}

UnicodeString FechaHoraISO(MomentoUniversal momento) { return EnDesfase(momento, minutes(0)) + u'Z'; }

UnicodeString FechaHoraISO(MomentoUniversal momento, const Zona& zona) {
  const crono::local_time<crono::milliseconds> local = AHoraLocal(DeUniversal(momento, zona));
  const auto desfase = crono::duration_cast<minutes>(local.time_since_epoch() - momento.time_since_epoch());
  UnicodeString texto = EnDesfase(momento, desfase);
  const std::int64_t magnitud = std::abs(desfase.count());
  texto += desfase.count() < 0 ? u'-' : u'+';
  AgregaDosCifras(texto, magnitud / 60);
  texto += u':';
  AgregaDosCifras(texto, magnitud % 60);
  return texto;
}

TDateTime DeISO(const Texto& texto) {
  TDateTime momento;
  if (!Lee(texto, momento)) Lanza(texto);
  return momento;
}

MomentoUniversal DeISOUniversal(const Texto& texto) {
  const std::u16string_view todo = TrimView(texto);
  // Past the day, whose parts "-" divides.
  const std::size_t hora = todo.find(u':');
  const std::size_t corte = hora == std::u16string_view::npos ? hora : todo.find_first_of(u"Z+-", hora);
  minutes desfase(0);
  TDateTime momento;
  const bool leido =
      corte != std::u16string_view::npos && EsDigito(todo[corte - 1]) &&
      (todo.substr(corte) == u"Z" || (todo[corte] != u'Z' && LeeDesfase(todo.substr(corte), desfase))) &&
      Lee(todo.substr(0, corte), momento);
  if (!leido) Lanza(texto);
  return MomentoUniversal(AHoraLocal(momento).time_since_epoch()) - desfase;
}

}  // namespace vel::facil

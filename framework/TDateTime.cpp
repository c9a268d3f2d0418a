#include "framework/TDateTime.h"

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "framework/Excepciones.h"

namespace vel {
namespace {

constexpr std::int64_t kMilisPorDia = 86'400'000;
constexpr std::chrono::sys_days kOrigen{std::chrono::year{1899} / 12 / 30};

struct DiaYMilis {
  std::int64_t dia;
  std::int64_t milis;
};

// Days run from 1 January of year 1 to 31 December of year 9999.
constexpr double kPrimerDia = -693'593;
constexpr double kUltimoDia = 2'958'465;

DiaYMilis Separa(TDateTime momento) {
  if (!(momento.Val() > kPrimerDia - 1 && momento.Val() < kUltimoDia + 1)) {
    throw EConvertError(u"La fecha no es válida");
  }
  // Before day 0 too the fraction counts forward from its day.
  const double dia = std::trunc(momento.Val());
  DiaYMilis r{static_cast<std::int64_t>(dia),
              std::llround(std::abs(momento.Val() - dia) * static_cast<double>(kMilisPorDia))};
  if (r.milis == kMilisPorDia) r = {r.dia + 1, 0};
  if (r.dia > static_cast<std::int64_t>(kUltimoDia)) throw EConvertError(u"La fecha no es válida");
  return r;
}

void AgregaDosCifras(UnicodeString& texto, int valor) {
  texto.push_back(static_cast<char16_t>(u'0' + valor / 10));
  texto.push_back(static_cast<char16_t>(u'0' + valor % 10));
}

void AgregaAnio(UnicodeString& texto, int anio) {
  AgregaDosCifras(texto, anio / 100);
  AgregaDosCifras(texto, anio % 100);
}

// "hh:mm:ss", and ".zzz" when there are milliseconds.
void AgregaHora(UnicodeString& texto, const CivilTime& h) {
  AgregaDosCifras(texto, h.hora);
  texto += u':';
  AgregaDosCifras(texto, h.minuto);
  texto += u':';
  AgregaDosCifras(texto, h.segundo);
  if (h.milisegundo == 0) return;
  texto += u'.';
  texto.push_back(static_cast<char16_t>(u'0' + h.milisegundo / 100));
  AgregaDosCifras(texto, h.milisegundo % 100);
}

// Reads 1 to `maximo` digits from the front of the text.
bool LeeCifras(std::u16string_view& texto, std::size_t maximo, int& valor) noexcept {
  std::size_t n = 0;
  int leido = 0;
  while (n < texto.size() && n < maximo && texto[n] >= u'0' && texto[n] <= u'9')
    leido = leido * 10 + (texto[n++] - u'0');
  if (n == 0) return false;
  texto.remove_prefix(n);
  valor = leido;
  return true;
}

bool LeeCaracter(std::u16string_view& texto, char16_t c) noexcept {
  if (texto.empty() || texto.front() != c) return false;
  texto.remove_prefix(1);
  return true;
}

bool LeeFecha(std::u16string_view& texto, TDateTime& fecha) noexcept {
  CivilDate f;
  return LeeCifras(texto, 2, f.dia) && LeeCaracter(texto, u'/') && LeeCifras(texto, 2, f.mes) &&
         LeeCaracter(texto, u'/') && LeeCifras(texto, 4, f.anio) && TryEncodeDate(f, fecha);
}

// Reads exactly `cuantas` digits.
bool LeeCifrasJustas(std::u16string_view& texto, std::size_t cuantas, int& valor) noexcept {
  const std::size_t antes = texto.size();
  return LeeCifras(texto, cuantas, valor) && antes - texto.size() == cuantas;
}

bool LeeFechaISO(std::u16string_view& texto, TDateTime& fecha) noexcept {
  CivilDate f;
  return LeeCifrasJustas(texto, 4, f.anio) && LeeCaracter(texto, u'-') && LeeCifrasJustas(texto, 2, f.mes) &&
         LeeCaracter(texto, u'-') && LeeCifrasJustas(texto, 2, f.dia) && TryEncodeDate(f, fecha);
}

bool LeeHora(std::u16string_view& texto, TDateTime& hora) noexcept {
  CivilTime h;
  if (!LeeCifras(texto, 2, h.hora) || !LeeCaracter(texto, u':') || !LeeCifras(texto, 2, h.minuto))
    return false;
  if (LeeCaracter(texto, u':') && !LeeCifras(texto, 2, h.segundo)) return false;
  if (LeeCaracter(texto, u'.')) {
    const std::size_t antes = texto.size();
    if (!LeeCifras(texto, 3, h.milisegundo)) return false;
    for (std::size_t n = antes - texto.size(); n < 3; ++n) h.milisegundo *= 10;
  }
  return TryEncodeTime(h, hora);
}

}  // namespace

bool TryEncodeDate(const CivilDate& fecha, TDateTime& resultado) noexcept {
  if (fecha.anio < 1 || fecha.anio > 9999 || fecha.mes < 1 || fecha.mes > 12 || fecha.dia < 1 ||
      fecha.dia > 31)
    return false;
  const std::chrono::year_month_day ymd{std::chrono::year{fecha.anio},
                                        std::chrono::month{static_cast<unsigned>(fecha.mes)},
                                        std::chrono::day{static_cast<unsigned>(fecha.dia)}};
  if (!ymd.ok()) return false;
  resultado = TDateTime(static_cast<double>((std::chrono::sys_days{ymd} - kOrigen).count()));
  return true;
}

TDateTime EncodeDate(const CivilDate& fecha) {
  TDateTime resultado;
  if (!TryEncodeDate(fecha, resultado)) throw EConvertError(u"La fecha no es válida");
  return resultado;
}

bool TryEncodeTime(const CivilTime& hora, TDateTime& resultado) noexcept {
  const auto entre = [](int valor, int maximo) { return valor >= 0 && valor <= maximo; };
  if (!entre(hora.hora, 23) || !entre(hora.minuto, 59) || !entre(hora.segundo, 59) ||
      !entre(hora.milisegundo, 999)) {
    return false;
  }
  const int milis = ((hora.hora * 60 + hora.minuto) * 60 + hora.segundo) * 1000 + hora.milisegundo;
  resultado = TDateTime(milis / static_cast<double>(kMilisPorDia));
  return true;
}

TDateTime ComposeDateTime(TDateTime fecha, TDateTime hora) noexcept {
  return TDateTime(fecha.Val() < 0 ? fecha.Val() - hora.Val() : fecha.Val() + hora.Val());
}

CivilDate DecodeDate(TDateTime momento) {
  const std::chrono::year_month_day ymd{kOrigen + std::chrono::days{Separa(momento).dia}};
  return {static_cast<int>(ymd.year()), static_cast<int>(static_cast<unsigned>(ymd.month())),
          static_cast<int>(static_cast<unsigned>(ymd.day()))};
}

CivilTime DecodeTime(TDateTime momento) {
  auto milis = static_cast<int>(Separa(momento).milis);
  CivilTime h;
  h.milisegundo = milis % 1000;
  milis /= 1000;
  h.segundo = milis % 60;
  h.minuto = milis / 60 % 60;
  h.hora = milis / 3600;
  return h;
}

UnicodeString DateTimeToStr(TDateTime momento) {
  const CivilDate f = DecodeDate(momento);
  const CivilTime h = DecodeTime(momento);
  UnicodeString texto;
  AgregaDosCifras(texto, f.dia);
  texto += u'/';
  AgregaDosCifras(texto, f.mes);
  texto += u'/';
  AgregaAnio(texto, f.anio);
  if (h == CivilTime{}) return texto;
  texto += u' ';
  AgregaHora(texto, h);
  return texto;
}

UnicodeString DateTimeToISO(TDateTime momento, TFieldType tipo) {
  const CivilDate f = DecodeDate(momento);
  const CivilTime h = DecodeTime(momento);
  UnicodeString texto;
  if (tipo != TFieldType::ftTime) {
    AgregaAnio(texto, f.anio);
    texto += u'-';
    AgregaDosCifras(texto, f.mes);
    texto += u'-';
    AgregaDosCifras(texto, f.dia);
    if (tipo == TFieldType::ftDate || h == CivilTime{}) return texto;
    texto += u' ';
  }
  AgregaHora(texto, h);
  return texto;
}

bool TryISOToDateTime(std::u16string_view texto, TDateTime& momento) noexcept {
  texto = TrimView(texto);
  TDateTime fecha;
  TDateTime hora;
  if (!LeeFechaISO(texto, fecha)) return false;
  if (!texto.empty()) {
    if (!LeeCaracter(texto, u'T') && !LeeCaracter(texto, u' ')) return false;
    if (!LeeHora(texto, hora) || !texto.empty()) return false;
  }
  momento = ComposeDateTime(fecha, hora);
  return true;
}

bool TryStrToDateTime(std::u16string_view texto, TDateTime& momento) noexcept {
  texto = TrimView(texto);
  TDateTime fecha;
  TDateTime hora;
  if (texto.find(u'/') == std::u16string_view::npos) {
    if (!LeeHora(texto, hora)) return false;
  } else {
    if (!LeeFecha(texto, fecha)) return false;
    if (!texto.empty()) {
      if (!LeeCaracter(texto, u' ')) return false;
      texto = TrimLeftView(texto);
      if (!LeeHora(texto, hora)) return false;
    }
  }
  if (!texto.empty()) return false;
  momento = ComposeDateTime(fecha, hora);
  return true;
}

TDateTime StrToDateTime(std::u16string_view texto) {
  TDateTime momento;
  if (TryStrToDateTime(texto, momento)) return momento;
  throw EConvertError(u"'" + UnicodeString(texto) + u"' no es una fecha y hora válida");
}

}  // namespace vel

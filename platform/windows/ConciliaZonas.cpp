#include "platform/windows/ConciliaZonas.h"

#include <algorithm>
#include <chrono>
#include <vector>

#include "platform/ReglasZona.h"

namespace vel {
namespace {

namespace crono = std::chrono;

constexpr std::int64_t kHora = 3600;

std::int64_t Comienzo(int anio) {
  const crono::sys_days enero = crono::year{anio} / 1 / 1;
  return crono::sys_seconds{enero}.time_since_epoch().count();
}

// Little-endian, two's complement.
std::uint32_t Toma(std::string_view& bytes, std::size_t n) {
  std::uint32_t valor = 0;
  for (std::size_t i = n; i > 0; --i) valor = valor << 8 | static_cast<unsigned char>(bytes[i - 1]);
  bytes.remove_prefix(n);
  return valor;
}

bool EsFecha(const FechaTzi& f) {
  const bool dia = f.anio == 0 ? f.diaSemana <= 6 && f.dia >= 1 && f.dia <= 5 : f.dia >= 1 && f.dia <= 31;
  return f.mes == 0 ||
         (f.mes <= 12 && dia && f.hora <= 23 && f.minuto <= 59 && f.segundo <= 59 && f.milisegundo <= 999);
}

ReglaCambio Regla(const FechaTzi& f) {
  ReglaCambio regla;
  regla.mes = f.mes;
  regla.semana = f.dia;
  regla.diaSemana = f.diaSemana;
  // 23:59:59.999 stands for the midnight that follows.
  regla.segundos = (f.hora * 60 + f.minuto) * 60 + f.segundo + (f.milisegundo >= 500 ? 1 : 0);
  return regla;
}

// The local moment of a date in a year; nothing when it has none there.
std::optional<std::int64_t> Momento(const FechaTzi& f, int anio) {
  if (f.mes == 0 || (f.anio != 0 && f.anio != anio)) return std::nullopt;
  const ReglaCambio regla = Regla(f);
  if (f.anio == 0) return MomentoDeRegla(regla, anio);
  const crono::sys_days dia = crono::year{anio} / f.mes / f.dia;
  return crono::sys_seconds{dia}.time_since_epoch().count() + regla.segundos;
}

// A season counts only with the day on which it begins.
DesfaseZona Estandar(const RegistroTzi& r) {
  return {-60 * (r.sesgo + (r.estandar.mes != 0 ? r.sesgoEstandar : 0)), false};
}
DesfaseZona Verano(const RegistroTzi& r) { return {-60 * (r.sesgo + r.sesgoVerano), true}; }

const RegistroTzi& DelAnio(const ZonaSistema& sistema, int anio) {
  if (sistema.porAnio.empty()) return sistema.actual;
  const auto despues = sistema.porAnio.upper_bound(anio);
  return despues == sistema.porAnio.begin() ? despues->second : std::prev(despues)->second;
}

// Adds the changes of a year, the one that its beginning makes included; `vigente` is the offset before them
// and after them.
void AgregaAnio(const RegistroTzi& r, int anio, DesfaseZona& vigente,
                std::vector<ZonaHoraria::Cambio>& cambios) {
  const std::int64_t enero = Comienzo(anio);
  const std::optional<std::int64_t> verano = Momento(r.verano, anio);
  const std::optional<std::int64_t> estandar = Momento(r.estandar, anio);
  std::vector<ZonaHoraria::Cambio> locales;
  // The year begins in the season that ends in it. A season that begins with the year comes after this line
  // of the list and takes its place.
  const bool enVerano = verano.has_value() && estandar.has_value() && *estandar < *verano;
  locales.push_back({enero, enVerano ? Verano(r) : Estandar(r)});
  if (verano.has_value() && estandar.has_value()) {
    locales.push_back({*verano, Verano(r)});
    locales.push_back({*estandar, Estandar(r)});
  }
  std::stable_sort(locales.begin(), locales.end(),
                   [](const auto& a, const auto& b) { return a.momento < b.momento; });
  for (auto it = locales.begin(); it != locales.end(); ++it) {
    const auto siguiente = std::next(it);
    const bool sustituido = siguiente != locales.end() && siguiente->momento == it->momento;
    if (sustituido || it->desfase == vigente) continue;
    cambios.push_back({it->momento - vigente.segundos, it->desfase});
    vigente = it->desfase;
  }
}

// What holds after the last change.
void PonRegla(const RegistroTzi& r, ZonaHoraria& zona) {
  zona.estandar = Estandar(r);
  zona.verano.reset();
  if (r.estandar.mes == 0 || r.verano.mes == 0 || r.estandar.anio != 0 || r.verano.anio != 0) return;
  zona.verano = {Verano(r), Regla(r.verano), Regla(r.estandar)};
}

int AnioDe(std::int64_t utc) {
  const crono::sys_seconds momento{crono::seconds{utc}};
  return static_cast<int>(crono::year_month_day{crono::floor<crono::days>(momento)}.year());
}

// The zone's changes up to a moment written out one by one, none from there on.
void EscribeHasta(std::int64_t fin, ZonaHoraria& zona) {
  std::erase_if(zona.cambios, [fin](const ZonaHoraria::Cambio& c) { return c.momento >= fin; });
  if (!zona.verano.has_value()) return;
  const auto desde = zona.cambios.empty() ? Comienzo(1970) : zona.cambios.back().momento;
  const ZonaHoraria::Verano verano = *zona.verano;
  std::vector<ZonaHoraria::Cambio> nuevos;
  for (int a = AnioDe(desde); a <= AnioDe(fin); ++a) {
    nuevos.push_back({MomentoDeRegla(verano.comienza, a) - zona.estandar.segundos, verano.desfase});
    nuevos.push_back({MomentoDeRegla(verano.termina, a) - verano.desfase.segundos, zona.estandar});
  }
  std::sort(nuevos.begin(), nuevos.end(), [](const auto& a, const auto& b) { return a.momento < b.momento; });
  for (const ZonaHoraria::Cambio& c : nuevos) {
    if (c.momento > desde && c.momento < fin) zona.cambios.push_back(c);
  }
}

bool Difieren(const ZonaHoraria& a, const ZonaHoraria& b, int anio) {
  constexpr std::int64_t kPaso = 6 * kHora;
  constexpr int kUnDia = 4;
  int distintos = 0;
  for (std::int64_t t = Comienzo(anio); t < Comienzo(anio + 1); t += kPaso) {
    if (DesfaseEnUtc(a, t).segundos != DesfaseEnUtc(b, t).segundos) ++distintos;
  }
  return distintos > kUnDia;
}

}  // namespace

std::optional<RegistroTzi> LeeTzi(std::string_view bytes) {
  if (bytes.size() != 44) return std::nullopt;
  RegistroTzi r{};
  for (std::int32_t* sesgo : {&r.sesgo, &r.sesgoEstandar, &r.sesgoVerano}) {
    *sesgo = static_cast<std::int32_t>(Toma(bytes, 4));
    // No zone is a day away from universal time.
    constexpr std::int32_t kDia = 24 * 60;
    if (*sesgo <= -kDia || *sesgo >= kDia) return std::nullopt;
  }
  for (FechaTzi* f : {&r.estandar, &r.verano}) {
    for (std::uint16_t* campo :
         {&f->anio, &f->mes, &f->diaSemana, &f->dia, &f->hora, &f->minuto, &f->segundo, &f->milisegundo}) {
      *campo = static_cast<std::uint16_t>(Toma(bytes, 2));
    }
    if (!EsFecha(*f)) return std::nullopt;
  }
  return r;
}

ZonaHoraria DeSistema(const ZonaSistema& sistema) {
  constexpr int kPrimero = 1970;
  ZonaHoraria zona;
  const int ultimo = sistema.porAnio.empty() ? kPrimero - 1 : sistema.porAnio.rbegin()->first;
  zona.inicial = Estandar(DelAnio(sistema, kPrimero));
  DesfaseZona vigente = zona.inicial;
  for (int anio = kPrimero; anio <= ultimo; ++anio)
    AgregaAnio(DelAnio(sistema, anio), anio, vigente, zona.cambios);
  PonRegla(DelAnio(sistema, ultimo), zona);
  return zona;
}

ZonaHoraria Concilia(ZonaHoraria tabla, int anioTabla, int anioActual, const ZonaSistema& sistema) {
  const int ultimo = sistema.porAnio.empty() ? 0 : sistema.porAnio.rbegin()->first;
  const bool recienRegistrado = ultimo >= anioTabla && ultimo <= anioActual + 1;
  const int edicion = sistema.edicion <= anioActual + 1 ? sistema.edicion : 0;
  if (!recienRegistrado && edicion <= anioTabla) return tabla;
  const ZonaHoraria suya = DeSistema(sistema);
  if (Difieren(tabla, suya, anioTabla - 2) || Difieren(tabla, suya, anioTabla - 1)) return tabla;
  const int fin = std::max(ultimo, edicion);
  int anio = anioTabla;
  while (anio <= fin && !Difieren(tabla, suya, anio)) ++anio;
  if (anio > fin) return tabla;

  DesfaseZona vigente = DesfaseEnUtc(tabla, Comienzo(anio) - tabla.estandar.segundos - 1);
  EscribeHasta(Comienzo(anio) - vigente.segundos, tabla);
  for (int a = anio; a <= std::max(ultimo, anio); ++a)
    AgregaAnio(DelAnio(sistema, a), a, vigente, tabla.cambios);
  PonRegla(DelAnio(sistema, fin), tabla);
  return tabla;
}

}  // namespace vel

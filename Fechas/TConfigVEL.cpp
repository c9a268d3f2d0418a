#include "Fechas/TConfigVEL.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <utility>

#include "Uutilext/config/ArchivoIni.h"
#include "Uutilext/config/Configuracion.h"
#include "Uutilext/time/Reloj.h"
#include "framework/Numeros.h"

namespace vel {
namespace {

// More entries than a menu can show; a bound for a damaged file.
constexpr std::int32_t kRangosMaximos = 100'000;

// Takes the text up to the next ","; empty, and nothing taken, when there is none.
std::u16string_view HastaComa(std::u16string_view& resto) noexcept {
  const std::size_t coma = resto.find(u',');
  if (coma == std::u16string_view::npos) return {};
  const std::u16string_view parte = resto.substr(0, coma);
  resto.remove_prefix(coma + 1);
  return parte;
}

}  // namespace

TConfigVEL::TConfigVEL(std::u16string_view archivo, TDateTime referencia)
    : archivo_(archivo), referencia_(referencia) {
  Inicio();
}

TConfigVEL::~TConfigVEL() = default;

void TConfigVEL::Inicio() { CargaConfig(); }

void TConfigVEL::CargaConfig() {
  // The section at once: one reading of the file. Of equal keys the first counts.
  std::map<UnicodeString, UnicodeString, LessText> valores;
  for (auto& [clave, valor] : LeeIni(archivo_).Seccion(u"FECHAS"))
    valores.emplace(std::move(clave), std::move(valor));
  std::int32_t total = 0;
  if (!TryStrToInt(valores[u"TOTAL"], total) || total < 0 || total > kRangosMaximos) total = 0;
  std::vector<Rango> rangos(static_cast<std::size_t>(total));
  for (std::int32_t i = 0; i < total; ++i) {
    const auto it = valores.find(u"Fch" + IntToStr(i));
    if (it != valores.end()) rangos[static_cast<std::size_t>(i)] = LeeRango(it->second);
  }
  rangos_ = std::move(rangos);
}

TConfigVEL::Rango TConfigVEL::LeeRango(std::u16string_view valor) const {
  Rango rango;
  rango.nombre = HastaComa(valor);
  if (rango.nombre.empty()) return rango;
  FechaDeHoy(&rango.inicio);
  rango.fin = rango.inicio;
  if (valor.empty()) return rango;
  InterpretaFecha(rango.inicio, HastaComa(valor));
  InterpretaFecha(rango.fin, valor);
  return rango;
}

int TConfigVEL::NumeroFormatos() const noexcept { return static_cast<int>(rangos_.size()); }

void TConfigVEL::FechaDeHoy(Fecha* fecha) const {
  const CivilDate hoy = DecodeDate(referencia_);
  *fecha = {static_cast<short>(hoy.dia), static_cast<short>(hoy.mes), static_cast<short>(hoy.anio)};
}

const TConfigVEL::Rango* TConfigVEL::En(int indice) const noexcept {
  return indice >= 0 && indice < NumeroFormatos() ? &rangos_[static_cast<std::size_t>(indice)] : nullptr;
}

TDateTime TConfigVEL::FechaComoDateTime(int indice, int cual) const {
  TDateTime momento;
  if (const Rango* const rango = En(indice)) {
    const Fecha& f = cual == 1 ? rango->inicio : rango->fin;
    TryEncodeDate({f.anio, f.mes, f.dia}, momento);
  }
  return momento;
}

TDateTime TConfigVEL::FechaComoDateTime(std::u16string_view nombre, int cual) const {
  return FechaComoDateTime(LocalizaMacro(nombre), cual);
}

UnicodeString TConfigVEL::FechaComoString(int indice, int cual) const {
  const Rango* const rango = En(indice);
  if (rango == nullptr) return {};
  const Fecha& f = cual == 1 ? rango->inicio : rango->fin;
  char texto[32];
  // Three whole numbers always fit.
  static_cast<void>(std::snprintf(texto, sizeof texto, "%02d/%02d/%04d", f.dia, f.mes, f.anio));
  return UTF8ToString(texto);
}

UnicodeString TConfigVEL::Nombres(int indice) const {
  const Rango* const rango = En(indice);
  return rango == nullptr ? UnicodeString() : rango->nombre;
}

int TConfigVEL::LocalizaMacro(std::u16string_view nombre) const noexcept {
  const auto it =
      std::find_if(rangos_.begin(), rangos_.end(), [nombre](const Rango& r) { return r.nombre == nombre; });
  return it == rangos_.end() ? -1 : static_cast<int>(it - rangos_.begin());
}

bool TConfigVEL::EsRangoActual(std::u16string_view inicio, std::u16string_view fin,
                               std::u16string_view inicioActual,
                               std::u16string_view finActual) const noexcept {
  return inicio == inicioActual && fin == finActual;
}

// The caller's to free with DestruyeManejoFechas: callers in other modules create and free through the
// library.
TConfigVEL* CreaManejoFechas(std::u16string_view archivo, TDateTime referencia) {
  return new TConfigVEL(archivo, referencia);  // NOLINT(cppcoreguidelines-owning-memory)
}

TConfigVEL* CreaManejoFechas(std::u16string_view archivo) {
  return CreaManejoFechas(archivo, TDateTime(std::floor(AhoraLocal().Val())));
}

void DestruyeManejoFechas(TConfigVEL* config) noexcept {
  delete config;  // NOLINT(cppcoreguidelines-owning-memory): made by CreaManejoFechas
}

}  // namespace vel

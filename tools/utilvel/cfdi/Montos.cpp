#include "tools/utilvel/cfdi/Montos.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

#include "framework/Excepciones.h"
#include "framework/Texto.h"

namespace utilvel::cfdi {
namespace {

constexpr auto kPotencias = []() {
  std::array<Entero128, 31> potencias{};
  potencias[0] = 1;
  for (std::size_t i = 1; i < potencias.size(); ++i) potencias[i] = potencias[i - 1] * 10;
  return potencias;
}();

constexpr std::int64_t kMaximo = std::numeric_limits<std::int64_t>::max();

/// The most units that still fit with so many decimals more.
constexpr auto kTopes = []() {
  std::array<std::uint64_t, kDecimales + 1> topes{};
  topes[0] = static_cast<std::uint64_t>(kMaximo);
  for (std::size_t i = 1; i < topes.size(); ++i) topes[i] = topes[i - 1] / 10;
  return topes;
}();

std::string_view SinBlancos(std::string_view texto) noexcept {
  const auto blanco = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
  while (!texto.empty() && blanco(texto.front())) texto.remove_prefix(1);
  while (!texto.empty() && blanco(texto.back())) texto.remove_suffix(1);
  return texto;
}

}  // namespace

Lectura LeeMonto(std::string_view texto, int maximo) noexcept {
  constexpr const char* kNoEs = "no es un número sin signo";
  std::uint64_t unidades = 0;
  int decimales = -1;
  bool cifras = false;
  for (const char c : SinBlancos(texto)) {
    if (c == '.' && decimales < 0) {
      decimales = 0;
      continue;
    }
    if (c < '0' || c > '9') return {{}, kNoEs};
    cifras = true;
    if (decimales >= 0 && ++decimales > maximo) return {{}, "tiene demasiados decimales"};
    if (unidades > (std::numeric_limits<std::uint64_t>::max() - 9) / 10) return {{}, "es demasiado grande"};
    unidades = unidades * 10 + static_cast<std::uint64_t>(c - '0');
  }
  if (!cifras) return {{}, kNoEs};
  decimales = std::max(decimales, 0);
  // Every figure fits with six decimals, so that products of two fit in 128 bits.
  const auto faltan = static_cast<std::size_t>(std::max(kDecimales - decimales, 0));
  if (unidades > kTopes[faltan]) return {{}, "es demasiado grande"};
  return {{static_cast<std::int64_t>(unidades), decimales}, nullptr};
}

void FallaTamano() {
  throw vel::EInvalidOperation(u"Un importe es demasiado grande para verificarse exacto");
}

Entero128 Potencia(int exponente) { return kPotencias.at(static_cast<std::size_t>(exponente)); }

Entero128 Multiplica(Entero128 a, Entero128 b) {
  Entero128 producto = 0;
  if (__builtin_mul_overflow(a, b, &producto)) FallaTamano();
  return producto;
}

Entero128 Unidades(const TMontoFiscal& monto, int decimales) {
  return monto.Unidades * Potencia(decimales - monto.Decimales);
}

Entero128 DivideRedondea(Entero128 n, Entero128 d) {
  // What fits in 64 bits avoids the long division.
  if (n >= 0 && n <= kMaximo / 2 && d <= kMaximo / 2)
    return (static_cast<std::int64_t>(n) + static_cast<std::int64_t>(d) / 2) / static_cast<std::int64_t>(d);
  const Entero128 cociente = n / d;
  const Entero128 resto = n < 0 ? -(n % d) : n % d;
  if (resto < d - resto) return cociente;
  return n < 0 ? cociente - 1 : cociente + 1;
}

TMontoFiscal Redondea(Entero128 unidades, int escala, int decimales) {
  const Entero128 valor =
      escala == decimales ? unidades : DivideRedondea(unidades, Potencia(escala - decimales));
  if (valor > kMaximo || valor < -kMaximo) FallaTamano();
  return {static_cast<std::int64_t>(valor), decimales};
}

void Suma::Agrega(Entero128 unidades) {
  if (__builtin_add_overflow(unidades_, unidades, &unidades_)) FallaTamano();
}

void SumaConMargen::Agrega(const TMontoFiscal& monto, const TMontoFiscal& equivalencia) {
  if (equivalencia == TMontoFiscal{1, 0} || Compara(equivalencia, {1, 0}) == 0) {
    valor_.Agrega(monto);
    return;
  }
  conMargen_ = true;
  const Entero128 escala = Potencia(kDecimalesCociente - monto.Decimales + equivalencia.Decimales);
  const Entero128 unidades = monto.Unidades;
  const Entero128 entre = equivalencia.Unidades;
  const Entero128 cociente = DivideRedondea(Multiplica(unidades, escala), entre);
  valor_.Agrega(cociente);
  // Half a unit less of the one and more of the other.
  const Entero128 menor = Multiplica(std::max<Entero128>(2 * unidades - 1, 0), escala);
  const Entero128 mayor = Multiplica(2 * unidades + 1, escala);
  menos_.Agrega(DivideRedondea(menor, 2 * entre + 1) - cociente);
  mas_.Agrega(DivideRedondea(mayor, 2 * entre - 1) - cociente);
}

TMontoFiscal SumaConMargen::Inferior(int decimales) const {
  const Entero128 unidades = valor_.DameUnidades() + menos_.DameUnidades();
  return Redondea(unidades / Potencia(kDecimalesCociente - decimales), decimales, decimales);
}

TMontoFiscal SumaConMargen::Superior(int decimales) const {
  const Entero128 unidad = Potencia(kDecimalesCociente - decimales);
  return Redondea((valor_.DameUnidades() + mas_.DameUnidades() + unidad - 1) / unidad, decimales, decimales);
}

int Compara(const TMontoFiscal& a, const TMontoFiscal& b) {
  if (a.Decimales == b.Decimales) return a.Unidades < b.Unidades ? -1 : a.Unidades > b.Unidades ? 1 : 0;
  const int decimales = std::max(a.Decimales, b.Decimales);
  const Entero128 diferencia = Unidades(a, decimales) - Unidades(b, decimales);
  return diferencia < 0 ? -1 : diferencia > 0 ? 1 : 0;
}

TMontoFiscal Resta(const TMontoFiscal& a, const TMontoFiscal& b) {
  const int decimales = std::max(a.Decimales, b.Decimales);
  return Redondea(Unidades(a, decimales) - Unidades(b, decimales), decimales, decimales);
}

std::string Texto(const TMontoFiscal& monto) { return vel::UTF8Encode(monto.Texto()); }

}  // namespace utilvel::cfdi

#include "tools/utilvel/cfdi/Montos.h"

#include <algorithm>
#include <limits>

#include "framework/Excepciones.h"
#include "framework/Texto.h"

namespace utilvel::cfdi {
namespace {

constexpr std::int64_t kMaximo = std::numeric_limits<std::int64_t>::max();

std::string_view SinBlancos(std::string_view texto) noexcept {
  constexpr std::string_view kBlancos = " \t\r\n";
  const std::size_t inicio = texto.find_first_not_of(kBlancos);
  if (inicio == std::string_view::npos) return {};
  return texto.substr(inicio, texto.find_last_not_of(kBlancos) - inicio + 1);
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
    if (unidades > static_cast<std::uint64_t>(kMaximo - 9) / 10) return {{}, "es demasiado grande"};
    unidades = unidades * 10 + static_cast<std::uint64_t>(c - '0');
  }
  if (!cifras) return {{}, kNoEs};
  decimales = std::max(decimales, 0);
  // Every figure fits with six decimals, so that products of two fit in 128 bits.
  std::uint64_t tope = static_cast<std::uint64_t>(kMaximo);
  for (int i = decimales; i < kDecimales; ++i) tope /= 10;
  if (unidades > tope) return {{}, "es demasiado grande"};
  return {{static_cast<std::int64_t>(unidades), decimales}, nullptr};
}

void FallaTamano() {
  throw vel::EInvalidOperation(u"Un importe es demasiado grande para verificarse exacto");
}

Entero128 Potencia(int exponente) {
  Entero128 potencia = 1;
  for (int i = 0; i < exponente; ++i) potencia *= 10;
  return potencia;
}

Entero128 Multiplica(Entero128 a, Entero128 b) {
  Entero128 producto = 0;
  if (__builtin_mul_overflow(a, b, &producto)) FallaTamano();
  return producto;
}

Entero128 Unidades(const TMontoFiscal& monto, int decimales) {
  return monto.Unidades * Potencia(decimales - monto.Decimales);
}

Entero128 DivideRedondea(Entero128 n, Entero128 d) {
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

void SumaConMargen::Agrega(const TMontoFiscal& monto) {
  valor_.Agrega(monto);
  inferior_.Agrega(monto);
  superior_.Agrega(monto);
}

void SumaConMargen::Agrega(const TMontoFiscal& monto, const TMontoFiscal& equivalencia) {
  if (Compara(equivalencia, {1, 0}) == 0) {
    Agrega(monto);
    return;
  }
  conMargen_ = true;
  const Entero128 escala = Potencia(kDecimalesCociente - monto.Decimales + equivalencia.Decimales);
  const Entero128 unidades = monto.Unidades;
  const Entero128 entre = equivalencia.Unidades;
  valor_.Agrega(DivideRedondea(Multiplica(unidades, escala), entre));
  // Half a unit less of the one and more of the other.
  inferior_.Agrega(
      DivideRedondea(Multiplica(std::max<Entero128>(2 * unidades - 1, 0), escala), 2 * entre + 1));
  superior_.Agrega(DivideRedondea(Multiplica(2 * unidades + 1, escala), 2 * entre - 1));
}

TMontoFiscal SumaConMargen::Inferior(int decimales) const {
  const int resto = kDecimalesCociente - decimales;
  return Redondea(inferior_.DameUnidades() / Potencia(resto), decimales, decimales);
}

TMontoFiscal SumaConMargen::Superior(int decimales) const {
  const Entero128 unidad = Potencia(kDecimalesCociente - decimales);
  return Redondea((superior_.DameUnidades() + unidad - 1) / unidad, decimales, decimales);
}

int Compara(const TMontoFiscal& a, const TMontoFiscal& b) {
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

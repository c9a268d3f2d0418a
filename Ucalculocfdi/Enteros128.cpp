#include "Ucalculocfdi/Enteros128.h"

#include <array>
#include <cmath>
#include <string_view>

#include "Uutilext/documents/Redondeo.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel {
namespace exacto {
namespace {

// A double of 15 significant digits lies within this relative distance of the decimal that it stands for.
constexpr double kMargen = 1e-14;

}  // namespace

void FallaTamano() { throw EInvalidOperation(u"Un importe es demasiado grande para imprimirse exacto"); }

std::int64_t DeReal(double valor, int decimales) {
  std::array<char, kMaxFloatText> buf;
  std::string_view texto(buf.data(), FloatToChars(valor, buf));
  const bool negativo = texto.front() == '-';
  if (negativo) texto.remove_prefix(1);
  // An exponent stands for an amount below a ten-thousandth or from 1e15 on.
  if (texto.find('E') != std::string_view::npos) {
    if (std::abs(valor) >= 1) FallaTamano();
    return std::llround(valor * static_cast<double>(Diez(decimales)));
  }
  const std::size_t punto = texto.find('.');
  const std::string_view fraccion =
      punto == std::string_view::npos ? std::string_view() : texto.substr(punto + 1);
  Entero128 unidades = 0;
  const auto agrega = [&unidades](char cifra) { unidades = unidades * 10 + (cifra - '0'); };
  for (const char cifra : texto.substr(0, punto)) agrega(cifra);
  for (std::size_t i = 0; i < static_cast<std::size_t>(decimales); ++i)
    agrega(i < fraccion.size() ? fraccion[i] : '0');
  if (fraccion.size() > static_cast<std::size_t>(decimales) &&
      fraccion[static_cast<std::size_t>(decimales)] >= '5')
    ++unidades;
  const std::int64_t resultado = A64(unidades);
  return negativo ? -resultado : resultado;
}

std::int64_t Millonesimas(double valor) {
  const double escalado = valor * static_cast<double>(kMillon);
  const double entero = std::nearbyint(escalado);
  const double a = std::abs(escalado);
  // Six decimals or fewer, and so few digits that the nearest whole number is the decimal's.
  if (a < 1e13 && std::abs(escalado - entero) <= kMargen * a) return static_cast<std::int64_t>(entero);
  return DeReal(g_redoTo(valor, 6), 6);
}

std::int64_t Unidades(const TMontoFiscal& monto, int decimales) {
  if (monto.Decimales == decimales) return monto.Unidades;
  const Entero128 magnitud = monto.Unidades < 0 ? -Entero128{monto.Unidades} : Entero128{monto.Unidades};
  const std::int64_t resultado =
      A64(monto.Decimales < decimales ? magnitud * Diez(decimales - monto.Decimales)
                                      : DivideRedondea(magnitud, Diez(monto.Decimales - decimales)));
  return monto.Unidades < 0 ? -resultado : resultado;
}

}  // namespace exacto

UnicodeString TMontoFiscal::Texto() const {
  // Through the unsigned magnitude: the least of all whole numbers has no positive partner.
  std::uint64_t resto = static_cast<std::uint64_t>(Unidades);
  if (Unidades < 0) resto = 0 - resto;
  UnicodeString cifras;
  for (int i = 0; resto != 0 || i <= Decimales; ++i) {
    if (i == Decimales && Decimales > 0) cifras += u'.';
    cifras += static_cast<char16_t>(u'0' + resto % 10);
    resto /= 10;
  }
  if (Unidades < 0) cifras += u'-';
  return {cifras.rbegin(), cifras.rend()};
}

double TMontoFiscal::Real() const { return StrToFloat(Texto()); }

}  // namespace vel

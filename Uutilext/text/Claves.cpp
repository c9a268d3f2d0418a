#include "Uutilext/text/Claves.h"

#include <algorithm>

#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel {
namespace {

constexpr int kAnchoMaximo = 1'000'000;
constexpr int kAnchoDocto = 10;
constexpr int kAnchoFolio = 9;
constexpr std::size_t kMaxDigitos = 10;

bool EsCifra(char16_t c) noexcept { return c >= u'0' && c <= u'9'; }

// Length of the text without the digits at its end.
std::size_t LargoSinCifras(std::u16string_view texto) noexcept {
  const auto ultima = std::find_if_not(texto.rbegin(), texto.rend(), EsCifra);
  return static_cast<std::size_t>(texto.rend() - ultima);
}

}  // namespace

UnicodeString FormateaValor(std::u16string_view valor, int ancho) {
  if (ancho > kAnchoMaximo) throw EInvalidOperation(u"El ancho " + IntToStr(ancho) + u" es demasiado grande");
  if (valor.empty() || ancho < 1) return {};
  const auto largo = static_cast<std::size_t>(ancho);
  valor = valor.substr(0, largo);
  return UnicodeString(largo - valor.size(), u' ').append(valor);
}

UnicodeString FormateaValorCve(std::u16string_view clave, int ancho) {
  const std::u16string_view recortada = TrimView(clave);
  return LargoSinCifras(recortada) == 0 ? FormateaValor(clave, ancho) : UnicodeString(recortada);
}

UnicodeString DameParteAlfanumerica(std::u16string_view texto) {
  texto = TrimView(texto);
  return UnicodeString(texto.substr(0, LargoSinCifras(texto)));
}

std::int32_t DameParteNumerica(std::u16string_view texto) {
  texto = TrimRightView(texto);
  const std::u16string_view cifras = texto.substr(LargoSinCifras(texto));
  if (cifras.empty()) return 0;
  std::int32_t numero = 0;
  return cifras.size() <= kMaxDigitos && TryStrToInt(cifras, numero) ? numero : -1;
}

UnicodeString FormateaCveDocto(std::u16string_view clave) {
  clave = TrimView(clave);
  std::int32_t numero = 0;
  if (!TryStrToInt(clave, numero) || clave.front() == u'0') return UnicodeString(clave);
  return FormateaValor(clave, kAnchoDocto);
}

UnicodeString FormateaFolioCxCP(std::u16string_view anterior, std::u16string_view nuevo) {
  UnicodeString folio = DameParteAlfanumerica(anterior);
  const std::size_t cifras = anterior.size() - folio.size();
  // The width that zeros filled, blanks around the old folio counted with it.
  if (cifras > nuevo.size() && anterior[folio.size()] == u'0') folio.append(cifras - nuevo.size(), u'0');
  folio.append(nuevo);
  if (folio.size() > kAnchoFolio) {
    throw Exception(
        u"Esta configuración de folio ha alcanzado el valor máximo permitido en su rango. \nNo podrás "
        u"agregar más "
        u"folios con esta configuración");
  }
  return FormateaValorCve(folio, kAnchoFolio);
}

}  // namespace vel

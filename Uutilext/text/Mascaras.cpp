#include "Uutilext/text/Mascaras.h"

#include <algorithm>
#include <cstddef>

#include "framework/Excepciones.h"

namespace vel {
namespace {

constexpr int kDigitosMaximos = 1'000'000;
constexpr std::ptrdiff_t kLargoPersonaFisica = 13;

void AgregaRepetido(UnicodeString& texto, std::u16string_view pieza, int veces) {
  for (int i = 0; i < veces; ++i) texto.append(pieza);
}

}  // namespace

UnicodeString FormatoMiles(int enteros, int decimales) {
  if (enteros > kDigitosMaximos || decimales > kDigitosMaximos) {
    throw EInvalidOperation(u"La máscara pide demasiados dígitos");
  }
  const int ternas = enteros / 3;
  const int resto = enteros % 3;
  UnicodeString mascara;
  if (ternas < 0) return mascara;
  if (ternas == 0) {
    AgregaRepetido(mascara, u"#", enteros - 1);
    mascara += u"0.";
  } else {
    AgregaRepetido(mascara, u"#", resto);
    if (resto > 0) mascara += u',';
    AgregaRepetido(mascara, u"###,", ternas - 1);
    mascara += u"##0.";
  }
  AgregaRepetido(mascara, u"0", decimales);
  return mascara;
}

bool p_mascarilla(std::u16string_view mascara, std::u16string_view valor) noexcept {
  while (!mascara.empty() && mascara.back() == u'?') mascara.remove_suffix(1);
  return mascara.size() <= valor.size() &&
         std::equal(mascara.begin(), mascara.end(), valor.begin(),
                    [](char16_t m, char16_t v) { return m == u'?' || m == v; });
}

bool EsSerieValida(std::u16string_view serie) noexcept {
  return serie.find_first_of(u"\\/:*?\"<>|") == std::u16string_view::npos;
}

bool DameTipoContribuyente(std::u16string_view rfc) noexcept {
  return std::count_if(rfc.begin(), rfc.end(), [](char16_t c) { return c != u' ' && c != u'-'; }) >=
         kLargoPersonaFisica;
}

}  // namespace vel

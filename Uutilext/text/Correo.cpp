#include "Uutilext/text/Correo.h"

#include <algorithm>

#include "framework/Excepciones.h"
#include "framework/Texto.h"

namespace vel {
namespace {

bool EsValido(std::u16string_view correo) {
  const auto arrobas = std::count(correo.begin(), correo.end(), u'@');
  return arrobas == 1 && correo.front() != u'@' && correo.back() != u'@';
}

}  // namespace

void ValidarCorreo(std::u16string_view correos) {
  if (correos.empty()) throw EInvalidOperation(u"Debes capturar el correo electrónico.");
  UnicodeString texto(correos);
  std::u16string_view resto = texto;
  while (!resto.empty()) {
    const std::u16string_view correo = resto.substr(0, std::min(resto.find(u';'), resto.size() - 1) + 1);
    if (!EsValido(correo)) throw EInvalidOperation(u"Correo inválido.");
    const std::u16string_view detras = resto.substr(correo.size());
    if (correo.back() != u';' || detras.find(correo) == std::u16string_view::npos) {
      resto = detras;
    } else {
      // A tested address is dropped wherever it stands, also as the end of a longer one.
      texto = StringReplace(detras, correo, u"");
      resto = texto;
    }
  }
}

}  // namespace vel

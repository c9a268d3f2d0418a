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
  UnicodeString resto(correos);
  while (!resto.empty()) {
    const std::size_t separador = resto.find(u';');
    const UnicodeString correo =
        resto.substr(0, separador == UnicodeString::npos ? separador : separador + 1);
    if (separador == UnicodeString::npos) {
      resto.clear();
    } else {
      resto = StringReplace(resto, correo, u"");
    }
    if (!EsValido(correo)) throw EInvalidOperation(u"Correo inválido.");
  }
}

}  // namespace vel

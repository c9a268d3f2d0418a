#include "platform/Rutas.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>

#include "platform/Carpetas.h"

namespace vel {
namespace {

UnicodeString CarpetaUnidades() {
  const char* const propia = std::getenv("UTILVEL_UNIDADES");
  if (propia != nullptr && *propia != '\0') return UTF8ToString(propia);
  return DameCarpetasConocidas().datosUsuario + u"/tavex";
}

bool EsLetra(char16_t c) noexcept { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'); }

}  // namespace

UnicodeString RutaNativa(std::u16string_view ruta) {
  UnicodeString nativa;
  if (ruta.size() >= 2 && ruta[1] == u':' && EsLetra(ruta[0])) {
    nativa = CarpetaUnidades() + u"/drive_" + FoldCase(ruta[0]);
    ruta.remove_prefix(2);
    if (!ruta.empty() && ruta.front() != u'\\' && ruta.front() != u'/') nativa += u'/';
  }
  const std::size_t inicio = nativa.size();
  nativa.append(ruta);
  std::replace(nativa.begin() + static_cast<std::ptrdiff_t>(inicio), nativa.end(), u'\\', u'/');
  return nativa;
}

}  // namespace vel

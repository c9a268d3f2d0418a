#include "Uformula/Arbol.h"

#include <algorithm>

#include "framework/Numeros.h"

namespace vel::formula {
namespace {

constexpr std::u16string_view kNodo = u"FUN";

}  // namespace

UnicodeString Arbol::NombrePaso(std::uint32_t paso) const {
  const Paso& p = pasos_[paso];
  UnicodeString nombre(p.esLlamada ? Vista(p.nombre) : kNodo);
  AppendInt(nombre, p.numero);
  return nombre;
}

UnicodeString Arbol::Texto(const Operando& o) const {
  return o.paso == kNinguno ? UnicodeString(Vista(o.texto)) : NombrePaso(o.paso);
}

// A name ends in its number, written without leading zeros. Where the name itself ends in digits, every way
// to part them is tried.
std::uint32_t Arbol::BuscaPaso(std::u16string_view nombre) const noexcept {
  constexpr std::size_t kMaxDigitos = 10;
  const std::size_t previo = nombre.find_last_not_of(u"0123456789");
  std::size_t corte = previo == std::u16string_view::npos ? 0 : previo + 1;
  if (nombre.size() > kMaxDigitos) corte = std::max(corte, nombre.size() - kMaxDigitos);
  for (; corte < nombre.size(); ++corte) {
    if (nombre[corte] == u'0' && corte + 1 < nombre.size()) continue;
    std::int64_t leido = 0;
    if (!TryStrToInt64(nombre.substr(corte), leido)) continue;
    const auto numero = static_cast<std::size_t>(leido);
    const std::u16string_view raiz = nombre.substr(0, corte);
    if (numero < nodos_.Cuenta() && SameText(raiz, kNodo)) return nodos_[numero];
    if (numero < llamadas_.Cuenta() && SameText(raiz, Vista(pasos_[llamadas_[numero]].nombre))) {
      return llamadas_[numero];
    }
  }
  return kNinguno;
}

}  // namespace vel::formula

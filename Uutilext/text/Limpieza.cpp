#include "Uutilext/text/Limpieza.h"

#include <array>
#include <cstddef>

#include "framework/Numeros.h"
#include "platform/Caracteres.h"

namespace vel {
namespace {

// Keeps the characters that pass, moving them to the front. Each is written before it is judged, so that the
// loop has no branch to guess.
template <typename Prueba>
void Filtra(UnicodeString& texto, const Prueba& pasa) {
  char16_t* destino = texto.data();
  for (const char16_t c : texto) {
    *destino = c;
    destino += pasa(c) ? 1 : 0;
  }
  texto.resize(static_cast<std::size_t>(destino - texto.data()));
}

// A test of characters with its answers for Latin-1 at hand: nearly all texts are made of it, and a call for
// each letter costs more than all the rest.
class PruebaLatina {
 public:
  constexpr explicit PruebaLatina(bool (*prueba)(char16_t)) : prueba_(prueba) {
    for (std::size_t i = 0; i < latinas_.size(); ++i) latinas_[i] = prueba(static_cast<char16_t>(i));
  }
  bool operator()(char16_t c) const { return c < latinas_.size() ? latinas_[c] : prueba_(c); }

 private:
  bool (*prueba_)(char16_t);
  std::array<bool, 256> latinas_{};
};

}  // namespace

void QuitaCaracteresExtraniosSAT(UnicodeString& texto) {
  static constexpr PruebaLatina kPermitido(
      [](char16_t c) { return std::u16string_view(u",-_.:*;").find(c) == std::u16string_view::npos; });
  Filtra(texto, kPermitido);
}

UnicodeString DevuelveSoloNumeros(std::u16string_view texto) {
  static const PruebaLatina digito([](char16_t c) { return EsDigito(c); });
  UnicodeString salida(texto);
  double valor = 0;
  if (!TryStrToFloat(texto, valor)) Filtra(salida, digito);
  return salida;
}

UnicodeString DejaSoloUnEspacioEntrePalabras(std::u16string_view texto) {
  UnicodeString salida(TrimView(texto));
  char16_t anterior = u' ';
  Filtra(salida, [&anterior](char16_t c) {
    const bool pasa = c != u' ' || anterior != u' ';
    anterior = c;
    return pasa;
  });
  return salida;
}

UnicodeString QuitaBlancos(std::u16string_view texto) {
  UnicodeString salida(TrimView(texto));
  Filtra(salida, [](char16_t c) { return c != u' '; });
  return salida;
}

UnicodeString MuestraAmpersAnd(std::u16string_view texto) { return StringReplace(texto, u"&", u"&&"); }

UnicodeString RegresaCadAlfaNum(std::u16string_view texto) {
  static const PruebaLatina conservado(
      [](char16_t c) { return EsAlfanumerico(c) || c == u'&' || c == u'@'; });
  UnicodeString salida = Mayusculas(texto);
  Filtra(salida, conservado);
  return salida;
}

}  // namespace vel

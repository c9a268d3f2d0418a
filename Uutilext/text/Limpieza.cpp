#include "Uutilext/text/Limpieza.h"

#include <array>

#include "framework/Numeros.h"
#include "platform/Caracteres.h"

namespace vel {
namespace {

// Keeps the characters that pass, moving them to the front. Each is written before it is judged, so that the
// loop has no branch to guess.
template <typename Prueba>
void Filtra(UnicodeString& texto, Prueba pasa) {
  char16_t* destino = texto.data();
  for (const char16_t c : texto) {
    *destino = c;
    destino += pasa(c) ? 1 : 0;
  }
  texto.resize(static_cast<std::size_t>(destino - texto.data()));
}

bool EsExtranio(char16_t c) noexcept {
  return c == u',' || c == u'-' || c == u'_' || c == u'.' || c == u':' || c == u'*' || c == u';';
}

bool PasaDigito(char16_t c) noexcept { return c < 0x80 ? c >= u'0' && c <= u'9' : EsDigito(c); }

constexpr std::array<bool, 128> kAlfaNumAscii = [] {
  std::array<bool, 128> tabla{};
  for (std::size_t c = '0'; c <= '9'; ++c) tabla[c] = true;
  for (std::size_t c = 'A'; c <= 'Z'; ++c) tabla[c] = tabla[c + 32] = true;
  tabla['&'] = tabla['@'] = true;
  return tabla;
}();

bool PasaAlfaNum(char16_t c) noexcept {
  return c < kAlfaNumAscii.size() ? kAlfaNumAscii[c] : EsAlfanumerico(c);
}

}  // namespace

void QuitaCaracteresExtraniosSAT(UnicodeString& texto) {
  Filtra(texto, [](char16_t c) { return !EsExtranio(c); });
}

UnicodeString DevuelveSoloNumeros(std::u16string_view texto) {
  UnicodeString salida(texto);
  double valor = 0;
  if (!TryStrToFloat(texto, valor)) Filtra(salida, PasaDigito);
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
  UnicodeString salida = Mayusculas(texto);
  Filtra(salida, PasaAlfaNum);
  return salida;
}

}  // namespace vel

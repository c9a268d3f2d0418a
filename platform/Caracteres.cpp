#include "platform/Caracteres.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/TablaCaracteres.h"

namespace vel {
namespace {

constexpr std::size_t kLatinos = 256;

// Finds a character in a table of ranges, which are ordered. Which of them belong to each page of 256
// characters is known beforehand, so that few are looked at, and for most pages one.
template <typename Tramo, std::size_t kCuantos>
class Buscador {
 public:
  constexpr explicit Buscador(const Tramo (&tramos)[kCuantos]) noexcept : tramos_(tramos) {
    std::size_t i = 0;
    for (std::size_t pagina = 0; pagina < inicios_.size(); ++pagina) {
      while (i < kCuantos && tramos[i].ultimo < pagina * kPagina) ++i;
      inicios_[pagina] = static_cast<std::uint16_t>(i);
    }
  }

  // The range that holds the character, or null.
  constexpr const Tramo* operator()(char16_t c) const noexcept {
    const std::size_t pagina = c / kPagina;
    const Tramo* const tramo =
        std::lower_bound(tramos_ + inicios_[pagina], tramos_ + inicios_[pagina + 1], c,
                         [](const Tramo& t, char16_t buscado) { return t.ultimo < buscado; });
    return tramo != tramos_ + kCuantos && tramo->primero <= c ? tramo : nullptr;
  }

 private:
  static constexpr std::size_t kPagina = 256;

  const Tramo* tramos_;
  // The first range that does not end before the page; one more for the end of the last page.
  std::array<std::uint16_t, 0x10000 / kPagina + 1> inicios_{};
};

constexpr Buscador kAMayusculas(caracteres::kAMayusculas);
constexpr Buscador kAMinusculas(caracteres::kAMinusculas);
constexpr Buscador kAlfanumericos(caracteres::kAlfanumericos);
constexpr Buscador kDigitos(caracteres::kDigitos);

template <typename Letras>
constexpr char16_t Mapea(char16_t c, const Letras& letras) noexcept {
  const auto* const tramo = letras(c);
  if (tramo == nullptr) return c;
  const int lugar = c - tramo->primero;
  return lugar % tramo->paso == 0 ? static_cast<char16_t>(tramo->destino + lugar) : c;
}

// The answers for Latin-1, which nearly all texts are made of.
template <typename Letras>
constexpr std::array<char16_t, kLatinos> Latinas(const Letras& letras) noexcept {
  std::array<char16_t, kLatinos> tabla{};
  for (std::size_t i = 0; i < kLatinos; ++i) tabla[i] = Mapea(static_cast<char16_t>(i), letras);
  return tabla;
}

template <typename Tramos>
constexpr std::array<bool, kLatinos> Pertenecen(const Tramos& tramos) noexcept {
  std::array<bool, kLatinos> tabla{};
  for (std::size_t i = 0; i < kLatinos; ++i) tabla[i] = tramos(static_cast<char16_t>(i)) != nullptr;
  return tabla;
}

constexpr auto kMayusculasLatinas = Latinas(kAMayusculas);
constexpr auto kMinusculasLatinas = Latinas(kAMinusculas);
constexpr auto kAlfanumericosLatinos = Pertenecen(kAlfanumericos);
constexpr auto kDigitosLatinos = Pertenecen(kDigitos);

template <typename Letras>
UnicodeString Convierte(std::u16string_view texto, const std::array<char16_t, kLatinos>& latinas,
                        const Letras& letras) {
  UnicodeString salida(texto);
  for (char16_t& c : salida) c = c < kLatinos ? latinas[c] : Mapea(c, letras);
  return salida;
}

}  // namespace

UnicodeString Mayusculas(std::u16string_view texto) {
  return Convierte(texto, kMayusculasLatinas, kAMayusculas);
}

UnicodeString Minusculas(std::u16string_view texto) {
  return Convierte(texto, kMinusculasLatinas, kAMinusculas);
}

bool EsDigito(char16_t c) noexcept { return c < kLatinos ? kDigitosLatinos[c] : kDigitos(c) != nullptr; }

bool EsAlfanumerico(char16_t c) noexcept {
  return c < kLatinos ? kAlfanumericosLatinos[c] : kAlfanumericos(c) != nullptr;
}

}  // namespace vel

#include "tools/utilvel/cfdi/Momento.h"

namespace utilvel::cfdi {

std::optional<std::chrono::sys_seconds> LeeMomento(std::string_view texto) {
  constexpr std::string_view kForma = "dddd-dd-ddTdd:dd:dd";
  if (texto.size() < kForma.size()) return {};
  for (std::size_t i = 0; i < kForma.size(); ++i) {
    const bool cifra = texto[i] >= '0' && texto[i] <= '9';
    if (kForma[i] == 'd' ? !cifra : texto[i] != kForma[i]) return {};
  }
  const auto numero = [texto](std::size_t desde, std::size_t cuantas) {
    int valor = 0;
    for (const char c : texto.substr(desde, cuantas)) valor = valor * 10 + (c - '0');
    return valor;
  };
  using namespace std::chrono;
  const year_month_day dia{year{numero(0, 4)}, month{static_cast<unsigned>(numero(5, 2))},
                           day{static_cast<unsigned>(numero(8, 2))}};
  if (!dia.ok()) return {};
  if (numero(11, 2) > 23 || numero(14, 2) > 59 || numero(17, 2) > 59) return {};
  return sys_days{dia} + hours{numero(11, 2)} + minutes{numero(14, 2)} + seconds{numero(17, 2)};
}

}  // namespace utilvel::cfdi

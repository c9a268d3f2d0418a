#pragma once

#include <charconv>
#include <limits>
#include <locale>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>

namespace pruebas {

/// The number that a case file writes, whatever locale the host of the tests has set: what std::stod gives in
/// "C".
inline double Real(std::string_view texto) {
  while (!texto.empty() && (texto.front() == ' ' || texto.front() == '\t')) texto.remove_prefix(1);
  if (!texto.empty() && texto.front() == '+') texto.remove_prefix(1);
  double valor = 0;
  const auto [fin, error] = std::from_chars(texto.data(), texto.data() + texto.size(), valor);
  if (error != std::errc::result_out_of_range) return valor;
  return texto.find("e-") != texto.npos || texto.find("E-") != texto.npos
             ? 0
             : std::numeric_limits<double>::infinity();
}

/// The same for what is read from a text part by part.
inline std::istringstream Entrada(const std::string& texto) {
  std::istringstream entrada(texto);
  entrada.imbue(std::locale::classic());
  return entrada;
}

/// A number with all its bits, as printf's "%.17g" writes it in "C".
inline std::string Exacto(double valor) {
  char texto[40];
  return {texto, std::to_chars(texto, texto + sizeof texto, valor, std::chars_format::general, 17).ptr};
}

}  // namespace pruebas

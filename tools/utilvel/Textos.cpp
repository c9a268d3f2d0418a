#include "tools/utilvel/Textos.h"

#include <algorithm>

#include "framework/Numeros.h"
#include "platform/PaginaCodigos.h"

namespace utilvel {

std::string AUtf8(std::string_view bytes) {
  return vel::IsUTF8(bytes) ? std::string(bytes) : vel::UTF8Encode(vel::DeCp1252(bytes));
}

vel::UnicodeString ATexto(std::string_view bytes) {
  return vel::IsUTF8(bytes) ? vel::UTF8ToString(bytes) : vel::DeCp1252(bytes);
}

std::size_t Largo(std::string_view texto) noexcept {
  return static_cast<std::size_t>(std::count_if(
      texto.begin(), texto.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

std::string Visible(std::string_view texto) {
  std::string visible;
  for (std::size_t i = 0; i < texto.size(); ++i) {
    const auto c = static_cast<unsigned char>(texto[i]);
    const bool c1 = c == 0xC2U && i + 1 < texto.size() && static_cast<unsigned char>(texto[i + 1]) < 0xA0U;
    if (c < 0x20U) {
      // U+2400 and what follows are the pictures of U+0000 to U+001F, in their order.
      visible += {'\xE2', '\x90', static_cast<char>(0x80U + c)};
    } else if (c == 0x7FU) {
      visible += "\u2421";
    } else if (c1) {
      visible += "\uFFFD";
      ++i;
    } else {
      visible += texto[i];
    }
  }
  return visible;
}

std::string Importe(double valor) {
  std::string texto = vel::UTF8Encode(vel::FloatToStr(valor));
  if (texto.find_first_not_of("-0123456789.") != std::string::npos) return texto;
  const std::size_t punto = texto.find('.');
  const std::size_t decimales = punto == std::string::npos ? 0 : texto.size() - punto - 1;
  if (punto == std::string::npos) texto += '.';
  return texto.append(2 - std::min<std::size_t>(2, decimales), '0');
}

std::string Json(std::string_view texto) {
  constexpr std::string_view kHexadecimal = "0123456789abcdef";
  std::string json = "\"";
  for (const char c : texto) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      json += {'\\', c};
    } else if (c == '\n') {
      json += "\\n";
    } else if (byte < 0x20U || byte == 0x7FU) {
      json += "\\u00";
      json += {kHexadecimal[byte >> 4U], kHexadecimal[byte & 0xFU]};
    } else {
      json += c;
    }
  }
  return json += '"';
}

std::string Csv(std::string_view texto) {
  if (texto.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(texto);
  std::string csv = "\"";
  for (const char c : texto) {
    if (c == '"') csv += '"';
    csv += c;
  }
  return csv += '"';
}

}  // namespace utilvel

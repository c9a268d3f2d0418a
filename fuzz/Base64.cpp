// Base64 both ways into outputs of any size, against a plain working of RFC 4648: a result is cut at the
// output's end, and what is no Base64 writes nothing.
#include "Uutilext/crypto/Base64.h"

#include <memory>
#include <optional>

#include "facil/Resumenes.h"
#include "framework/Excepciones.h"
#include "fuzz/Entrada.h"
#include "fuzz/Exige.h"

namespace {

using fuzz::Exige;
using fuzz::ExigeIgual;

constexpr std::string_view kLetras = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::string Codifica(const std::string& bytes) {
  std::string texto;
  unsigned bits = 0;
  int cuantos = 0;
  for (const char c : bytes) {
    bits = bits << 8U | static_cast<unsigned char>(c);
    for (cuantos += 8; cuantos >= 6; cuantos -= 6) texto += kLetras[bits >> (cuantos - 6) & 63U];
  }
  if (cuantos > 0) texto += kLetras[bits << (6 - cuantos) & 63U];
  while (texto.size() % 4 != 0) texto += '=';
  return texto;
}

std::optional<std::string> Decodifica(std::string texto) {
  texto.erase(texto.find_last_not_of(" \t\r\n") + 1);
  if (texto.size() % 4 != 0) return std::nullopt;
  for (int i = 0; i < 2 && texto.ends_with('='); ++i) texto.pop_back();
  std::string bytes;
  unsigned bits = 0;
  int cuantos = 0;
  for (const char c : texto) {
    const std::size_t letra = kLetras.find(c);
    if (letra == std::string_view::npos) return std::nullopt;
    bits = bits << 6U | static_cast<unsigned>(letra);
    if ((cuantos += 6) >= 8) bytes += static_cast<char>(bits >> (cuantos -= 8) & 255U);
  }
  return bytes;
}

// What a call writes into an output of exactly that size, and that it leaves the rest of it alone.
std::string Llama(const std::string& entrada, std::size_t tamano, bool codifica) {
  const auto salida = std::make_unique<unsigned char[]>(tamano);
  std::fill_n(salida.get(), tamano, static_cast<unsigned char>(0xA5));
  const int escritos =
      vel::Base64(reinterpret_cast<const unsigned char*>(entrada.data()), static_cast<int>(entrada.size()),
                  salida.get(), static_cast<int>(tamano), codifica);
  Exige(escritos >= 0 && static_cast<std::size_t>(escritos) <= tamano, "more written than there is room for");
  for (std::size_t i = static_cast<std::size_t>(escritos); i < tamano; ++i)
    Exige(salida[i] == 0xA5, "written behind the result");
  return {reinterpret_cast<const char*>(salida.get()), static_cast<std::size_t>(escritos)};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
  fuzz::Entrada entrada(datos, largo);
  // At times longer than the pieces in which the library works.
  const int veces = entrada.De({1, 1, 1, 1, 1, 1, 1, 10});
  const std::size_t tamano = entrada.Entero<std::size_t>(1, 3000);
  const std::string uno = entrada.Resto();
  std::string bytes;
  for (int i = 0; i < veces; ++i) bytes += uno;
  const std::string texto = Codifica(bytes);
  ExigeIgual(Llama(bytes, tamano, true), texto.substr(0, tamano), "the text");
  ExigeIgual(Llama(texto, tamano, false), bytes.substr(0, tamano), "the bytes of its text");
  ExigeIgual(Llama(bytes, tamano, false), Decodifica(bytes).value_or("").substr(0, tamano),
             "the bytes of any text");
  ExigeIgual(vel::facil::ABase64(bytes), texto, "the front's text");
  std::optional<std::string> deFacil;
  try {
    deFacil = vel::facil::DeBase64(bytes);
  } catch (const vel::EConvertError&) {
  }
  ExigeIgual(deFacil.value_or("(none)"), Decodifica(bytes).value_or("(none)"), "the front's bytes");
  return 0;
}

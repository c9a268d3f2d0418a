#include "Uutilext/crypto/Base64.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <openssl/evp.h>
#include <span>

namespace vel {
namespace {

using Bytes = std::span<const unsigned char>;

// Work is done in pieces of whole quanta (3 bytes are 4 characters), so that no buffer grows with the input.
constexpr std::size_t kBytesTrozo = 768;
constexpr std::size_t kTextoTrozo = 1024;

// EVP_EncodeBlock and EVP_DecodeBlock write the same bytes as a base64 filter over a memory stream does, and
// need no objects. They write whole quanta (and a zero after the text), hence the piece on the stack.
int Codifica(Bytes entrada, std::span<unsigned char> salida) {
  std::array<unsigned char, kTextoTrozo + 1> trozo;
  std::size_t escritos = 0;
  while (!entrada.empty() && escritos < salida.size()) {
    const Bytes parte = entrada.first(std::min(entrada.size(), kBytesTrozo));
    const auto hechos =
        static_cast<std::size_t>(EVP_EncodeBlock(trozo.data(), parte.data(), static_cast<int>(parte.size())));
    const std::size_t caben = std::min(hechos, salida.size() - escritos);
    std::copy_n(trozo.data(), caben, salida.data() + escritos);
    escritos += caben;
    entrada = entrada.subspan(parte.size());
  }
  return static_cast<int>(escritos);
}

bool EsBlanco(unsigned char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

bool EsLetra(unsigned char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '+' || c == '/';
}

std::size_t CuentaRelleno(Bytes texto) {
  std::size_t cuenta = 0;
  while (cuenta < 2 && cuenta < texto.size() && texto[texto.size() - 1 - cuenta] == '=') ++cuenta;
  return cuenta;
}

int Decodifica(Bytes texto, std::span<unsigned char> salida) {
  while (!texto.empty() && EsBlanco(texto.back())) texto = texto.first(texto.size() - 1);
  const std::size_t relleno = CuentaRelleno(texto);
  // Checked here because EVP_DecodeBlock reads padding anywhere as zero bits and skips leading blanks, and
  // because nothing may be written before the last character is known to be good.
  const Bytes letras = texto.first(texto.size() - relleno);
  if (texto.size() % 4 != 0 || !std::ranges::all_of(letras, EsLetra)) return 0;

  std::array<unsigned char, kBytesTrozo> trozo;
  const std::size_t total = std::min(texto.size() / 4 * 3 - relleno, salida.size());
  std::size_t escritos = 0;
  while (escritos < total) {
    const Bytes parte = texto.first(std::min(texto.size(), kTextoTrozo));
    EVP_DecodeBlock(trozo.data(), parte.data(), static_cast<int>(parte.size()));
    const std::size_t caben = std::min(kBytesTrozo, total - escritos);
    std::copy_n(trozo.data(), caben, salida.data() + escritos);
    escritos += caben;
    texto = texto.subspan(parte.size());
  }
  return static_cast<int>(escritos);
}

}  // namespace

int Base64(const unsigned char* entrada, int longitud, unsigned char* salida, int tamano, bool codifica) {
  if (entrada == nullptr || salida == nullptr || longitud < 1 || tamano < 1) return 0;
  const Bytes bytes(entrada, static_cast<std::size_t>(longitud));
  const std::span<unsigned char> destino(salida, static_cast<std::size_t>(tamano));
  return codifica ? Codifica(bytes, destino) : Decodifica(bytes, destino);
}

}  // namespace vel

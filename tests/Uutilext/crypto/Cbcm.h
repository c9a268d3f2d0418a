#pragma once

#include <openssl/evp.h>
#include <string>

#include "Uutilext/crypto/LlavesFijas.h"
#include "tests/Uutilext/crypto/Apoyo.h"

namespace pruebas {

using vel::kLlavesFijas;
using vel::LlavesFijas;

inline std::string Texto(const LlavesFijas::Llave& llave) { return {llave.begin(), llave.end()}; }

/// Single DES of one block by way of triple DES: with one key three times over, the first two steps undo each
/// other. So this shares no call with the library's own.
inline std::string Des(const LlavesFijas::Llave& llave, std::string bloque, int cifra) {
  const std::string tres = Texto(llave) + Texto(llave) + Texto(llave);
  EVP_CIPHER_CTX* const contexto = EVP_CIPHER_CTX_new();
  int largo = 0;
  EVP_CipherInit_ex2(contexto, EVP_des_ede3_ecb(), Bytes(tres), nullptr, cifra, nullptr);
  EVP_CIPHER_CTX_set_padding(contexto, 0);
  EVP_CipherUpdate(contexto, reinterpret_cast<unsigned char*>(bloque.data()), &largo, Bytes(bloque), 8);
  EVP_CIPHER_CTX_free(contexto);
  return bloque;
}

inline std::string Xor(std::string a, const std::string& b) {
  for (std::size_t i = 0; i < a.size(); ++i) a[i] = static_cast<char>(a[i] ^ b[i]);
  return a;
}

/// Enciphers a text that is a multiple of 8 bytes: triple DES in the CBCM mode with the fixed keys.
inline std::string Cbcm(const std::string& claro) {
  const auto& [k1, k2, k3, vector] = kLlavesFijas;
  std::string mascara = Texto(vector);
  std::string anterior(8, '\0');
  std::string salida;
  for (std::size_t i = 0; i < claro.size(); i += 8) {
    mascara = Des(k3, mascara, 1);
    const std::string interior = Xor(Des(k1, Xor(claro.substr(i, 8), anterior), 1), mascara);
    anterior = Des(k1, Xor(Des(k2, interior, 0), mascara), 1);
    salida += anterior;
  }
  return salida;
}

}  // namespace pruebas

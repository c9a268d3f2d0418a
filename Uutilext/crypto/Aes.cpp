#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <openssl/evp.h>

#include "Uutilext/crypto/Cifrado.h"
#include "Uutilext/crypto/ColaErrores.h"
#include "Uutilext/crypto/Libcrypto.h"
#include "framework/Excepciones.h"

namespace vel {
namespace {

constexpr std::size_t kBloque = 16;
constexpr std::size_t kMaximo = 499;

struct Libera {
  void operator()(EVP_CIPHER_CTX* contexto) const noexcept { EVP_CIPHER_CTX_free(contexto); }
};

}  // namespace

AnsiString Encripta_AES_128(std::string_view llave, std::string_view datos) {
  if (llave.size() < kBloque) throw EInvalidOperation(u"La llave debe tener al menos 16 bytes.");
  datos = datos.substr(0, datos.find('\0'));

  // The present interface in place of AES_set_encrypt_key and AES_encrypt: one ECB block without padding is
  // the bare cipher.
  const ColaErrores cola;
  const std::unique_ptr<EVP_CIPHER_CTX, Libera> contexto(EVP_CIPHER_CTX_new());
  // Text of bytes.
  const auto* bytesLlave = reinterpret_cast<const unsigned char*>(llave.data());
  const Libcrypto* const libcrypto = DameLibcrypto();
  const bool listo =
      libcrypto != nullptr && contexto != nullptr &&
      EVP_EncryptInit_ex2(contexto.get(), libcrypto->aes128, bytesLlave, nullptr, nullptr) == 1 &&
      EVP_CIPHER_CTX_set_padding(contexto.get(), 0) == 1;

  AnsiString resultado;
  while (listo && !datos.empty() && resultado.size() < kMaximo) {
    const std::string_view parte = datos.substr(0, kBloque);
    std::array<unsigned char, kBloque> bloque;
    bloque.fill(static_cast<unsigned char>(kBloque - parte.size()));
    std::ranges::copy(parte, bloque.begin());
    std::array<unsigned char, kBloque> cifrado{};
    int escritos = 0;
    EVP_EncryptUpdate(contexto.get(), cifrado.data(), &escritos, bloque.data(), kBloque);
    resultado.append(cifrado.begin(), std::ranges::find(cifrado, 0));
    datos.remove_prefix(parte.size());
  }
  resultado.resize(std::min(resultado.size(), kMaximo));
  return resultado;
}

}  // namespace vel

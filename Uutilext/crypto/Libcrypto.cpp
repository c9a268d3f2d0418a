#include "Uutilext/crypto/Libcrypto.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/provider.h>

#include "Uutilext/crypto/ColaErrores.h"

namespace vel {
namespace {

// libcrypto would end itself in a function that the first of its calls hands to atexit. Destructors of the
// program's own statics run after that if they were made before it, and calls from them would crash. So the
// first call is this one, made when the library is loaded: the system takes the memory back all the same, and
// a host that wants libcrypto ended calls OPENSSL_cleanup.
// NOLINTNEXTLINE(cert-err58-cpp): a function of C throws nothing.
[[maybe_unused]] const int kSinDespedida = OPENSSL_init_crypto(OPENSSL_INIT_NO_ATEXIT, nullptr);

std::unique_ptr<const Libcrypto> Crea() {
  const ColaErrores cola;
  auto nuevo = std::make_unique<Libcrypto>();
  nuevo->contexto = OSSL_LIB_CTX_new();
  if (nuevo->contexto == nullptr || OSSL_PROVIDER_load(nuevo->contexto, "default") == nullptr) return {};
  nuevo->md5 = EVP_MD_fetch(nuevo->contexto, "MD5", nullptr);
  nuevo->sha1 = EVP_MD_fetch(nuevo->contexto, "SHA1", nullptr);
  nuevo->sha256 = EVP_MD_fetch(nuevo->contexto, "SHA256", nullptr);
  nuevo->aes128 = EVP_CIPHER_fetch(nuevo->contexto, "AES-128-ECB", nullptr);
  const bool completo =
      nuevo->md5 != nullptr && nuevo->sha1 != nullptr && nuevo->sha256 != nullptr && nuevo->aes128 != nullptr;
  if (!completo) return {};
  return nuevo;
}

}  // namespace

Libcrypto::~Libcrypto() {
  EVP_CIPHER_free(aes128);
  EVP_MD_free(sha256);
  EVP_MD_free(sha1);
  EVP_MD_free(md5);
  // Unloads its provider too.
  OSSL_LIB_CTX_free(contexto);
}

const Libcrypto* DameLibcrypto() {
  // Never freed: calls come until the process is gone.
  static std::atomic<const Libcrypto*> unico{nullptr};
  static std::mutex candado;
  // After libcrypto's end this answers 0.
  if (OPENSSL_init_crypto(OPENSSL_INIT_NO_ATEXIT, nullptr) != 1) return nullptr;
  if (const Libcrypto* const hecho = unico.load(std::memory_order_acquire)) return hecho;
  const std::lock_guard<std::mutex> guardia(candado);
  if (unico.load(std::memory_order_relaxed) == nullptr) {
    unico.store(Crea().release(), std::memory_order_release);
  }
  return unico.load(std::memory_order_relaxed);
}

}  // namespace vel

// libcrypto marks its single-DES calls as deprecated and offers no other for this mode: the present interface
// has single DES in the legacy provider only, which a library must not load into its host.
#define OPENSSL_SUPPRESS_DEPRECATED
#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstring>
#include <memory>
#include <openssl/crypto.h>
#include <openssl/des.h>
#include <span>

#include "Uutilext/crypto/Cifrado.h"
#include "Uutilext/crypto/LlavesFijas.h"

namespace vel {
namespace {

constexpr std::size_t kBloque = sizeof(DES_cblock);

struct Bloque {
  DES_cblock bytes{};
};

Bloque operator^(Bloque a, const Bloque& b) {
  for (std::size_t i = 0; i < kBloque; ++i) a.bytes[i] ^= b.bytes[i];
  return a;
}

class LlaveDes {
 public:
  explicit LlaveDes(LlavesFijas::Llave llave) {
    // The call's result needs no look: the parity and strength of the fixed keys are tested.
    DES_cblock copia;
    std::ranges::copy(llave, copia);
    DES_set_key_checked(&copia, &plan_);
    OPENSSL_cleanse(&copia, sizeof copia);
  }
  LlaveDes(const LlaveDes&) = delete;
  LlaveDes& operator=(const LlaveDes&) = delete;
  ~LlaveDes() { OPENSSL_cleanse(&plan_, sizeof plan_); }
  Bloque Cifra(Bloque b) { return Aplica(b, DES_ENCRYPT); }
  Bloque Descifra(Bloque b) { return Aplica(b, DES_DECRYPT); }

 private:
  Bloque Aplica(Bloque b, int sentido) {
    DES_ecb_encrypt(&b.bytes, &b.bytes, &plan_, sentido);
    return b;
  }

  DES_key_schedule plan_{};
};

// The chain: each block is mixed with the cipher block before it, and, between the three DES steps, with a
// mask that is enciphered anew for each block and does not depend on the data.
class Cbcm {
 public:
  Bloque Cifra(const Bloque& claro) {
    mascara_ = k3_.Cifra(mascara_);
    anterior_ = k1_.Cifra(mascara_ ^ k2_.Descifra(mascara_ ^ k1_.Cifra(claro ^ anterior_)));
    return anterior_;
  }

  Bloque Descifra(const Bloque& cifrado) {
    mascara_ = k3_.Cifra(mascara_);
    const Bloque claro = anterior_ ^ k1_.Descifra(mascara_ ^ k2_.Cifra(mascara_ ^ k1_.Descifra(cifrado)));
    anterior_ = cifrado;
    return claro;
  }

 private:
  static Bloque Vector() {
    Bloque b;
    std::ranges::copy(kLlavesFijas.vector, b.bytes);
    return b;
  }

  LlaveDes k1_{kLlavesFijas.primera};
  LlaveDes k2_{kLlavesFijas.segunda};
  LlaveDes k3_{kLlavesFijas.tercera};
  Bloque mascara_ = Vector();
  Bloque anterior_;
};

// `salida` holds the input, filled with zeros, and takes the result in its place.
void Transforma(std::span<unsigned char> salida, bool cifra) {
  Cbcm cadena;
  for (std::size_t i = 0; i < salida.size(); i += kBloque) {
    const std::span<unsigned char> parte = salida.subspan(i, std::min(kBloque, salida.size() - i));
    Bloque bloque;
    std::ranges::copy(parte, bloque.bytes);
    bloque = cifra ? cadena.Cifra(bloque) : cadena.Descifra(bloque);
    std::copy_n(bloque.bytes, parte.size(), parte.begin());
  }
}

}  // namespace

unsigned char* Enc21(const unsigned char* entrada, int& longitud, int modo) {
  const bool cifra = modo == 1;
  const bool valida = entrada != nullptr && (modo != 0 || longitud >= 0);
  const std::size_t largo = !valida     ? 0
                            : modo == 0 ? static_cast<std::size_t>(longitud)
                                        // C text of bytes.
                                        : std::strlen(reinterpret_cast<const char*>(entrada));
  const std::size_t total = cifra ? (largo / kBloque + 1) * kBloque : largo;
  if (!valida || total > INT_MAX) {
    longitud = 0;
    return nullptr;
  }
  auto buffer = std::make_unique<unsigned char[]>(total);
  std::copy_n(entrada, largo, buffer.get());
  Transforma({buffer.get(), total}, cifra);
  longitud = static_cast<int>(total);
  return buffer.release();
}

void LiberaBuffer(unsigned char* buffer) noexcept { const std::unique_ptr<unsigned char[]> dueno(buffer); }

}  // namespace vel

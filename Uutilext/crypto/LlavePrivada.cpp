// libcrypto marks its RSA calls as deprecated. The present interface reads a private key by way of a copy in
// plain that it frees without wiping it; these calls make no copy.
#define OPENSSL_SUPPRESS_DEPRECATED
#include "Uutilext/crypto/LlavePrivada.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <openssl/asn1.h>
#include <openssl/bn.h>
#include <openssl/core_names.h>
#include <openssl/evp.h>
#include <openssl/objects.h>
#include <openssl/pkcs12.h>
#include <openssl/rsa.h>
#include <openssl/x509.h>

#include "Uutilext/crypto/Libcrypto.h"

namespace vel {
namespace {

// As far as libcrypto's own prompt for a password goes.
constexpr std::size_t kClaveMaxima = 1024;

struct LiberaAsn1 {
  void operator()(BIGNUM* p) const noexcept { BN_free(p); }
  void operator()(EVP_CIPHER* p) const noexcept { EVP_CIPHER_free(p); }
  void operator()(PBE2PARAM* p) const noexcept { PBE2PARAM_free(p); }
  void operator()(PBEPARAM* p) const noexcept { PBEPARAM_free(p); }
  void operator()(PBKDF2PARAM* p) const noexcept { PBKDF2PARAM_free(p); }
  void operator()(PKCS8_PRIV_KEY_INFO* p) const noexcept { PKCS8_PRIV_KEY_INFO_free(p); }
  void operator()(SCRYPT_PARAMS* p) const noexcept { SCRYPT_PARAMS_free(p); }
  void operator()(X509_SIG* p) const noexcept { X509_SIG_free(p); }
};
template <class T>
using Dueno = std::unique_ptr<T, LiberaAsn1>;

// What an AlgorithmIdentifier names, and its parameters when they are a sequence of that form.
int Nid(const X509_ALGOR& algoritmo) {
  const ASN1_OBJECT* objeto = nullptr;
  X509_ALGOR_get0(&objeto, nullptr, nullptr, &algoritmo);
  return OBJ_obj2nid(objeto);
}

template <class T>
Dueno<T> Parametros(const X509_ALGOR& algoritmo, const ASN1_ITEM* forma) {
  int tipo = V_ASN1_UNDEF;
  const void* valor = nullptr;
  X509_ALGOR_get0(nullptr, &tipo, &valor, &algoritmo);
  if (tipo != V_ASN1_SEQUENCE) return {};
  return Dueno<T>(static_cast<T*>(ASN1_item_unpack(static_cast<const ASN1_STRING*>(valor), forma)));
}

// The product of the numbers, or more than kCostoMaximo for what is no count.
std::uint64_t Producto(std::initializer_list<const ASN1_INTEGER*> numeros) {
  std::uint64_t producto = 1;
  for (const ASN1_INTEGER* const numero : numeros) {
    std::uint64_t valor = 0;
    const bool cuenta = ASN1_INTEGER_get_uint64(&valor, numero) == 1 && valor <= LlavePrivada::kCostoMaximo;
    // Small enough, both of them, that their product fits.
    producto = cuenta ? producto * valor : LlavePrivada::kCostoMaximo + 1;
    if (producto > LlavePrivada::kCostoMaximo) return producto;
  }
  return producto;
}

std::uint64_t CostoDerivacion(const X509_ALGOR& derivacion) {
  if (Nid(derivacion) == NID_id_scrypt) {
    const auto p = Parametros<SCRYPT_PARAMS>(derivacion, ASN1_ITEM_rptr(SCRYPT_PARAMS));
    if (p) return Producto({p->costParameter, p->blockSize, p->parallelizationParameter});
  } else if (const auto p = Parametros<PBKDF2PARAM>(derivacion, ASN1_ITEM_rptr(PBKDF2PARAM))) {
    return Producto({p->iter});
  }
  return LlavePrivada::kCostoMaximo + 1;
}

// Whether our context has the cipher; null is none. Where it has not, libcrypto would look in the process's.
bool HayCifrado(ossl_lib_ctx_st* contexto, const char* nombre) {
  return nombre != nullptr && Dueno<EVP_CIPHER>(EVP_CIPHER_fetch(contexto, nombre, nullptr)) != nullptr;
}

bool SeAbre(ossl_lib_ctx_st* contexto, const X509_ALGOR& cifrado) {
  if (Nid(cifrado) == NID_pbes2) {
    const auto p = Parametros<PBE2PARAM>(cifrado, ASN1_ITEM_rptr(PBE2PARAM));
    std::array<char, 80> nombre{};
    return p && CostoDerivacion(*p->keyfunc) <= LlavePrivada::kCostoMaximo &&
           OBJ_obj2txt(nombre.data(), nombre.size(), p->encryption->algorithm, 0) > 0 &&
           HayCifrado(contexto, nombre.data());
  }
  // PBES1 and the schemes of PKCS#12 have parameters of one form.
  const auto p = Parametros<PBEPARAM>(cifrado, ASN1_ITEM_rptr(PBEPARAM));
  int nidCifrado = NID_undef;
  return p && Producto({p->iter}) <= LlavePrivada::kCostoMaximo &&
         EVP_PBE_find(EVP_PBE_TYPE_OUTER, Nid(cifrado), &nidCifrado, nullptr, nullptr) == 1 &&
         HayCifrado(contexto, OBJ_nid2sn(nidCifrado));
}

Dueno<PKCS8_PRIV_KEY_INFO> Descifra(ossl_lib_ctx_st* contexto, std::string_view der,
                                    const std::string& clave) {
  // Bytes of text; what may follow the structure is not looked at.
  const auto* inicio = reinterpret_cast<const unsigned char*>(der.data());
  const auto largo = static_cast<long>(std::min<std::size_t>(der.size(), std::numeric_limits<int>::max()));
  const Dueno<X509_SIG> sobre(d2i_X509_SIG(nullptr, &inicio, largo));
  if (!sobre) return {};
  const X509_ALGOR* cifrado = nullptr;
  X509_SIG_get0(sobre.get(), &cifrado, nullptr);
  if (!SeAbre(contexto, *cifrado)) return {};
  const auto bytes = static_cast<int>(std::min<std::size_t>(std::strlen(clave.c_str()), kClaveMaxima));
  return Dueno<PKCS8_PRIV_KEY_INFO>(PKCS8_decrypt_ex(sobre.get(), clave.c_str(), bytes, contexto, nullptr));
}

// A number of a public key.
Dueno<BIGNUM> Numero(const EVP_PKEY* llave, const char* nombre) {
  BIGNUM* numero = nullptr;
  EVP_PKEY_get_bn_param(llave, nombre, &numero);
  return Dueno<BIGNUM>(numero);
}

}  // namespace

void LlavePrivada::Libera::operator()(evp_pkey_st* p) const noexcept { EVP_PKEY_free(p); }
void LlavePrivada::Libera::operator()(rsa_st* p) const noexcept { RSA_free(p); }

std::optional<LlavePrivada> LlavePrivada::Abre(std::string_view der, const std::string& clave) {
  const Libcrypto* const libcrypto = DameLibcrypto();
  if (libcrypto == nullptr) return std::nullopt;
  const Dueno<PKCS8_PRIV_KEY_INFO> claro = Descifra(libcrypto->contexto, der, clave);
  const ASN1_OBJECT* tipo = nullptr;
  const unsigned char* bytes = nullptr;
  int largo = 0;
  if (!claro || PKCS8_pkey_get0(&tipo, &bytes, &largo, nullptr, claro.get()) != 1) return std::nullopt;
  LlavePrivada llave;
  if (OBJ_obj2nid(tipo) == NID_rsaEncryption) {
    llave.rsa_.reset(d2i_RSAPrivateKey(nullptr, &bytes, largo));
  } else {
    llave.otra_.reset(EVP_PKCS82PKEY_ex(claro.get(), libcrypto->contexto, nullptr));
  }
  if (!llave.rsa_ && !llave.otra_) return std::nullopt;
  return llave;
}

bool LlavePrivada::EsDe(const x509_st& certificado) const {
  if (otra_) return X509_check_private_key(&certificado, otra_.get()) == 1;
  const EVP_PKEY* const publica = X509_get0_pubkey(&certificado);
  if (publica == nullptr || EVP_PKEY_get_base_id(publica) != EVP_PKEY_RSA) return false;
  const auto modulo = Numero(publica, OSSL_PKEY_PARAM_RSA_N);
  const auto exponente = Numero(publica, OSSL_PKEY_PARAM_RSA_E);
  return modulo && exponente && BN_cmp(modulo.get(), RSA_get0_n(rsa_.get())) == 0 &&
         BN_cmp(exponente.get(), RSA_get0_e(rsa_.get())) == 0;
}

}  // namespace vel

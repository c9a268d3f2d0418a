// Digests against the bare libcrypto calls: an algorithm looked up beforehand and a context used again, over
// the bytes that our side digests; our time includes what a text needs besides: finding its end, narrowing
// UTF-16, the digits of the result. Checking a seal's key against the bare calls on the same files.
#include <algorithm>
#include <array>
#include <memory>
#include <openssl/bio.h>
#include <openssl/core_names.h>
#include <openssl/evp.h>
#include <openssl/params.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "Uutilext/crypto/Base64.h"
#include "Uutilext/crypto/Certificados.h"
#include "Uutilext/crypto/Resumenes.h"
#include "benchmarks/Medicion.h"

namespace {

using medicion::Comparacion;

struct Libera {
  void operator()(BIO* p) const { BIO_free(p); }
  void operator()(X509* p) const { X509_free(p); }
  void operator()(EVP_PKEY* p) const { EVP_PKEY_free(p); }
  void operator()(EVP_MD* p) const { EVP_MD_free(p); }
  void operator()(EVP_MD_CTX* p) const { EVP_MD_CTX_free(p); }
  void operator()(EVP_MAC* p) const { EVP_MAC_free(p); }
  void operator()(EVP_MAC_CTX* p) const { EVP_MAC_CTX_free(p); }
};
template <class T>
using Dueno = std::unique_ptr<T, Libera>;

const unsigned char* Bytes(const std::string& texto) {
  return reinterpret_cast<const unsigned char*>(texto.data());
}

// The bare side: digests `texto` into a buffer of its own.
class Directo {
 public:
  Directo(const char* algoritmo, std::string texto)
      : texto_(std::move(texto)),
        metodo_(EVP_MD_fetch(nullptr, algoritmo, nullptr)),
        contexto_(EVP_MD_CTX_new()) {}
  void operator()() {
    EVP_DigestInit_ex2(contexto_.get(), metodo_.get(), nullptr);
    EVP_DigestUpdate(contexto_.get(), texto_.data(), texto_.size());
    EVP_DigestFinal_ex(contexto_.get(), resumen_.data(), &largo_);
  }
  std::string Resultado() {
    (*this)();
    return {resumen_.begin(), resumen_.begin() + largo_};
  }

 private:
  std::string texto_;
  Dueno<EVP_MD> metodo_;
  Dueno<EVP_MD_CTX> contexto_;
  std::array<unsigned char, EVP_MAX_MD_SIZE> resumen_{};
  unsigned largo_ = 0;
};

class DirectoConLlave {
 public:
  DirectoConLlave(std::string llave, std::string texto)
      : llave_(std::move(llave)),
        texto_(std::move(texto)),
        metodo_(EVP_MAC_fetch(nullptr, OSSL_MAC_NAME_HMAC, nullptr)),
        contexto_(EVP_MAC_CTX_new(metodo_.get())) {
    char sha256[] = "SHA256";
    const OSSL_PARAM parametros[] = {OSSL_PARAM_construct_utf8_string(OSSL_MAC_PARAM_DIGEST, sha256, 0),
                                     OSSL_PARAM_construct_end()};
    EVP_MAC_CTX_set_params(contexto_.get(), parametros);
  }
  void operator()() {
    EVP_MAC_init(contexto_.get(), Bytes(llave_), llave_.size(), nullptr);
    EVP_MAC_update(contexto_.get(), Bytes(texto_), texto_.size());
    EVP_MAC_final(contexto_.get(), resumen_.data(), &largo_, resumen_.size());
  }
  std::string Resultado() {
    (*this)();
    return {resumen_.begin(), resumen_.end()};
  }

 private:
  std::string llave_;
  std::string texto_;
  Dueno<EVP_MAC> metodo_;
  Dueno<EVP_MAC_CTX> contexto_;
  std::array<unsigned char, 32> resumen_{};
  std::size_t largo_ = 0;
};

std::string Hex(const std::string& bytes) {
  std::string texto;
  for (const char c : bytes) {
    texto += "0123456789abcdef"[static_cast<unsigned char>(c) >> 4];
    texto += "0123456789abcdef"[c & 0x0F];
  }
  return texto;
}

std::string EnBase64(const std::string& bytes) {
  std::string texto(bytes.size() * 2, '\0');
  auto* salida = reinterpret_cast<unsigned char*>(texto.data());
  const int escritos =
      vel::Base64(Bytes(bytes), static_cast<int>(bytes.size()), salida, static_cast<int>(texto.size()), true);
  texto.resize(static_cast<std::size_t>(escritos));
  return texto;
}

// The calls of a program that checks a key with nothing between it and libcrypto.
int ValidaDirecto(const std::string& certificado, const std::string& llave, std::string contrasena) {
  const Dueno<BIO> archivoLlave(BIO_new_file(llave.c_str(), "rb"));
  const Dueno<EVP_PKEY> privada(
      d2i_PKCS8PrivateKey_bio(archivoLlave.get(), nullptr, nullptr, contrasena.data()));
  if (!privada) return 1;
  const Dueno<BIO> archivoCertificado(BIO_new_file(certificado.c_str(), "rb"));
  const Dueno<X509> x509(d2i_X509_bio(archivoCertificado.get(), nullptr));
  if (!x509) return 3;
  return X509_check_private_key(x509.get(), privada.get()) == 1 ? 0 : 2;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<Comparacion> comparaciones;
  for (const auto& [tamano, nombre, limite] :
       {std::tuple(std::size_t{32}, "32 bytes", 1.5), std::tuple(std::size_t{1} << 20, "1 MB", 1 / 0.95)}) {
    const std::string texto(tamano, 'a');
    const std::u16string ancho(tamano, u'a');
    const auto agrega = [&](const std::string& funcion, auto propio, auto par) {
      comparaciones.push_back({funcion + " " + nombre, propio, [par] { (*par)(); }, limite, "libcrypto"});
    };
    const auto sha256 = std::make_shared<Directo>("SHA256", texto);
    medicion::Exige(vel::Hash256(texto.c_str()) == Hex(sha256->Resultado()), "Hash256");
    agrega(
        "Hash256", [texto] { vel::Hash256(texto.c_str()); }, sha256);

    const auto sha1 = std::make_shared<Directo>("SHA1", texto);
    medicion::Exige(vel::EncriptaSha1(texto) == Hex(sha1->Resultado()), "EncriptaSha1");
    agrega(
        "EncriptaSha1", [texto] { vel::EncriptaSha1(texto); }, sha1);

    const auto md5 = std::make_shared<Directo>("MD5", texto);
    medicion::Exige(vel::UTF8Encode(vel::EncriptaMD5(ancho)) == EnBase64(md5->Resultado()), "EncriptaMD5");
    agrega(
        "EncriptaMD5", [ancho] { vel::EncriptaMD5(ancho); }, md5);

    const auto hmac = std::make_shared<DirectoConLlave>("llave de prueba", texto);
    const auto propio = [ancho] { return vel::EncriptaHmacSha256(ancho, "llave de prueba", false); };
    medicion::Exige(std::equal(propio(), propio() + 32, Bytes(hmac->Resultado())), "EncriptaHmacSha256");
    agrega("EncriptaHmacSha256", propio, hmac);
    // No digest but a MAC, of a text of twice the bytes: where the processor has instructions for SHA-256,
    // reading and narrowing a long one is an eighth of the work, so its ratio is only reported.
    if (tamano > 32) comparaciones.back().limite = 0;
  }

  // The test keys take one round of password derivation, where real ones take thousands: the hardest case.
  const std::string carpeta = std::string(DATOS_PRUEBA) + "/crypto/";
  const std::string archivos[] = {carpeta + "sello.cer", carpeta + "des3.key"};
  const auto propio = [certificado = vel::UTF8ToString(archivos[0]), llave = vel::UTF8ToString(archivos[1])] {
    return vel::ValPrivKey(certificado, llave, u"12345678a");
  };
  const auto par = [archivos] { return ValidaDirecto(archivos[0], archivos[1], "12345678a"); };
  medicion::Exige(propio() == 0 && par() == 0, "ValPrivKey");
  comparaciones.push_back({"ValPrivKey", propio, par, 1.1, "libcrypto"});

  return medicion::Ejecuta(argc, argv, std::move(comparaciones));
}

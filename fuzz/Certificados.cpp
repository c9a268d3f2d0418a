// Certificates and keys of any bytes: what is read is what libcrypto's own calls read of them, and nothing
// stays in its queue of errors.
#include "Uutilext/crypto/Certificados.h"

#include <ctime>
#include <fstream>
#include <iterator>
#include <memory>
#include <openssl/bn.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/pkcs12.h>
#include <openssl/x509.h>
#include <optional>

#include "facil/Certificado.h"
#include "framework/Excepciones.h"
#include "fuzz/ArchivoEnMemoria.h"
#include "fuzz/Entrada.h"
#include "fuzz/Exige.h"
#include "platform/PaginaCodigos.h"
#include "tests/Uutilext/crypto/Apoyo.h"

namespace {

using fuzz::Exige;
using fuzz::ExigeIgual;
using pruebas::Bytes;
using namespace vel;

struct Libera {
  void operator()(BIGNUM* p) const noexcept { BN_free(p); }
  void operator()(BIO* p) const noexcept { BIO_free(p); }
  void operator()(EVP_PKEY* p) const noexcept { EVP_PKEY_free(p); }
  void operator()(X509* p) const noexcept { X509_free(p); }
};
template <typename T>
using Dueno = std::unique_ptr<T, Libera>;

Dueno<X509> Certificado(const std::string& der) {
  const unsigned char* inicio = Bytes(der);
  return Dueno<X509>(d2i_X509(nullptr, &inicio, static_cast<long>(der.size())));
}

std::string Octetos(const ASN1_INTEGER* serie) {
  const Dueno<BIGNUM> numero(ASN1_INTEGER_to_BN(serie, nullptr));
  std::string octetos(static_cast<std::size_t>(BN_num_bytes(numero.get())), '\0');
  BN_bn2bin(numero.get(), reinterpret_cast<unsigned char*>(octetos.data()));
  return octetos.substr(0, octetos.find('\0'));
}

void ExigeMomento(std::chrono::sys_seconds momento, const ASN1_TIME* suyo) {
  std::tm partes{};
  Exige(ASN1_TIME_to_tm(suyo, &partes) == 1, "a moment that libcrypto does not read");
  ExigeIgual(static_cast<long long>(momento.time_since_epoch().count()),
             static_cast<long long>(timegm(&partes)), "a moment of the validity");
}

void ExigeCertificado(const std::string& der) {
  TDatosCertificado datos;
  try {
    datos = CertDameDatos(der);
  } catch (const Exception&) {
    return;
  }
  const Dueno<X509> propio = Certificado(der);
  Exige(propio != nullptr, "a certificate that libcrypto does not read");
  ERR_clear_error();
  const ASN1_INTEGER* const serie = X509_get0_serialNumber(propio.get());
  if (ASN1_STRING_type(serie) == V_ASN1_INTEGER) {
    ExigeIgual(UTF8Encode(datos.Numero), UTF8Encode(DeCp1252(Octetos(serie))), "the number");
  }
  ExigeIgual(datos.Sujeto.size(),
             static_cast<std::size_t>(X509_NAME_entry_count(X509_get_subject_name(propio.get()))),
             "the parts of the subject's name");
  Exige(CertDameDatos(der + "\xFF") == datos, "what follows a certificate changes it");
  try {
    const facil::Certificado leido = facil::LeeCertificadoDER(der);
    ExigeMomento(leido.inicio, X509_get0_notBefore(propio.get()));
    ExigeMomento(leido.fin, X509_get0_notAfter(propio.get()));
    ExigeIgual(leido.numero, datos.Numero, "the front's number");
  } catch (const Exception&) {
  }
}

// Whether the key asks for more rounds than a second of fuzzing has: a number of three bytes or more in what
// tells how it is enciphered, or scrypt, whose cost has three factors.
bool EsCara(const std::string& der) {
  const std::string_view cabeza = std::string_view(der).substr(0, 200);
  if (cabeza.find("\xDA\x47\x04\x0B") != std::string_view::npos) return true;
  for (std::size_t i = 0; i + 1 < cabeza.size(); ++i) {
    // The identifiers of digests hold the same bytes.
    const bool identificador = cabeza.substr(0, i).ends_with("\xF7\x0D");
    if (cabeza[i] == 2 && cabeza[i + 1] > 2 && cabeza[i + 1] < 10 && !identificador) return true;
  }
  return false;
}

// ValPrivKey's answer, by libcrypto's own reading of such a file.
int Estado(const std::string& der, const std::string& certificado) {
  const Dueno<BIO> flujo(BIO_new_mem_buf(der.data(), static_cast<int>(der.size())));
  const auto clave = [](char* buffer, int, int, void*) {
    constexpr std::string_view kClave = "12345678a";
    return static_cast<int>(kClave.copy(buffer, kClave.size()));
  };
  const Dueno<EVP_PKEY> llave(d2i_PKCS8PrivateKey_bio(flujo.get(), nullptr, clave, nullptr));
  const int estado = !llave                                                                     ? 1
                     : X509_check_private_key(Certificado(certificado).get(), llave.get()) == 1 ? 0
                                                                                                : 2;
  ERR_clear_error();
  return estado;
}

std::string Archivo(const std::string& ruta) {
  std::ifstream entrada(ruta, std::ios::binary);
  return {std::istreambuf_iterator<char>(entrada), {}};
}

void ExigeLlave(const std::string& der) {
  static const fuzz::ArchivoEnMemoria archivo("llave.key");
  static const std::string certificado = Archivo(pruebas::RutaDato("sello.cer"));
  Exige(!certificado.empty(), "no certificate to compare with");
  if (EsCara(der)) return;
  archivo.Escribe(der);
  const int estado = ValPrivKey(pruebas::Dato("sello.cer"), archivo.RutaU16(), u"12345678a");
  ExigeIgual(ERR_peek_error(), 0UL, "the queue of errors");
  ExigeIgual(estado, Estado(der, certificado), "whether the key is the certificate's");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
  const std::string bytes(reinterpret_cast<const char*>(datos), largo);
  ExigeCertificado(bytes);
  ExigeIgual(ERR_peek_error(), 0UL, "the queue of errors");
  ExigeLlave(bytes);
  return 0;
}

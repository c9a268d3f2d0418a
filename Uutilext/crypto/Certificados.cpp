#include "Uutilext/crypto/Certificados.h"

#include <algorithm>
#include <climits>
#include <memory>
#include <openssl/asn1.h>
#include <openssl/bio.h>
#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <optional>
#include <string>

#include "Uutilext/crypto/ColaErrores.h"
#include "Uutilext/diagnostics/Traza.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "platform/Archivos.h"
#include "platform/PaginaCodigos.h"

namespace vel {
namespace {

struct Libera {
  void operator()(BIO* p) const noexcept { BIO_free(p); }
  void operator()(X509* p) const noexcept { X509_free(p); }
  void operator()(EVP_PKEY* p) const noexcept { EVP_PKEY_free(p); }
  void operator()(unsigned char* p) const noexcept { OPENSSL_free(p); }
};
using Flujo = std::unique_ptr<BIO, Libera>;
using Certificado = std::unique_ptr<X509, Libera>;
using Llave = std::unique_ptr<EVP_PKEY, Libera>;

// Wipes the bytes of a secret when it goes out of sight.
class Borrador {
 public:
  explicit Borrador(std::string& secreto) noexcept : secreto_(secreto) {}
  ~Borrador() { OPENSSL_cleanse(secreto_.data(), secreto_.size()); }
  Borrador(const Borrador&) = delete;
  Borrador& operator=(const Borrador&) = delete;

 private:
  std::string& secreto_;
};

// libcrypto reads from memory, not from the file: it would take the name in 8-bit text only, and so could not
// open a name outside the code page.
Flujo Abre(const std::string& bytes) {
  // The object wanted stands at the beginning; nothing valid is as long as the limit.
  return Flujo(BIO_new_mem_buf(bytes.data(), static_cast<int>(std::min<std::size_t>(bytes.size(), INT_MAX))));
}

Certificado LeeCert(std::u16string_view ruta) {
  const std::optional<std::string> bytes = LeeArchivo(ruta);
  if (!bytes) return {};
  const Flujo flujo = Abre(*bytes);
  Certificado certificado(flujo ? d2i_X509_bio(flujo.get(), nullptr) : nullptr);
  if (!certificado) throw Exception(u"No se pudo extraer la llave pública.");
  return certificado;
}

Llave LeePrivKey(std::u16string_view ruta, std::u16string_view contrasena) {
  std::optional<std::string> bytes = LeeArchivo(ruta);
  if (!bytes || !CabeEnCp1252(contrasena)) return {};
  // A key file without encryption is refused, but its bytes are a secret too.
  const Borrador borraBytes(*bytes);
  AnsiString clave = ACp1252(contrasena);
  const Borrador borraClave(clave);
  const Flujo flujo = Abre(*bytes);
  if (!flujo) return {};
  logInter(u"UUTIL::LeePrivKey...d2i_PKCS8PrivateKey_bio");
  // Without a callback the last argument is the password, a text that ends in zero. It must never be null:
  // then libcrypto would ask for the password at the terminal.
  return Llave(d2i_PKCS8PrivateKey_bio(flujo.get(), nullptr, nullptr, clave.data()));
}

// The content octets of the serial as the certificate has them. They are taken from its DER form because the
// object holds a negative number (of an issuer that forgot the sign octet) as its magnitude.
std::string OctetosSerie(const X509& certificado) {
  unsigned char* der = nullptr;
  const int largo = i2d_ASN1_INTEGER(X509_get0_serialNumber(&certificado), &der);
  const std::unique_ptr<unsigned char, Libera> dueno(der);
  const unsigned char* contenido = der;
  long cuenta = 0;
  int etiqueta = 0;
  int clase = 0;
  if (largo <= 0) return {};
  ASN1_get_object(&contenido, &cuenta, &etiqueta, &clase, largo);
  if (cuenta > 1 && contenido[0] == 0) {
    // The sign octet of a number whose first octet has its high bit set.
    ++contenido;
    --cuenta;
  }
  return {contenido, std::find(contenido, contenido + cuenta, 0)};
}

int ValidaLlave(std::u16string_view rutaCertificado, std::u16string_view rutaLlave,
                std::u16string_view contrasena) {
  const Llave llave = LeePrivKey(rutaLlave, contrasena);
  if (!llave) return 1;
  logInter(u"UUTIL::ValPrivKey...LeeCert");
  const Certificado certificado = LeeCert(rutaCertificado);
  if (!certificado) return 3;
  logInter(u"UUTIL::ValPrivKey...X509_check_private_key");
  return X509_check_private_key(certificado.get(), llave.get()) == 1 ? 0 : 2;
}

}  // namespace

UnicodeString CertGetNumSer(std::u16string_view rutaCertificado) {
  const ColaErrores cola;
  logInter(u"UUTIL::CertGetNumSer...LeeCert");
  const Certificado certificado = LeeCert(rutaCertificado);
  return certificado ? DeCp1252(OctetosSerie(*certificado)) : UnicodeString();
}

bool CertGetFechaHora(std::u16string_view rutaCertificado, bool fin, UnicodeString& fecha) {
  const ColaErrores cola;
  logInter(u"UUTIL::CertGetFechaHora...LeeCert");
  const Certificado certificado = LeeCert(rutaCertificado);
  if (!certificado) return false;
  const ASN1_TIME* momento =
      fin ? X509_get0_notAfter(certificado.get()) : X509_get0_notBefore(certificado.get());
  const unsigned char* texto = ASN1_STRING_get0_data(momento);
  fecha = DeCp1252(std::string(texto, texto + ASN1_STRING_length(momento)));
  return true;
}

int ValPrivKey(std::u16string_view rutaCertificado, std::u16string_view rutaLlave,
               std::u16string_view contrasena) {
  const ColaErrores cola;
  logInter(u"UUTIL::ValPrivKey...INICIO");
  // The present name of OPENSSL_add_all_algorithms_noconf, for the names of ciphers and digests in the key.
  OPENSSL_init_crypto(OPENSSL_INIT_ADD_ALL_CIPHERS | OPENSSL_INIT_ADD_ALL_DIGESTS, nullptr);
  const int estado = ValidaLlave(rutaCertificado, rutaLlave, contrasena);
  logInter(u"UUTIL::ValPrivKey...FIN SinError: " + IntToStr(estado));
  return estado;
}

}  // namespace vel

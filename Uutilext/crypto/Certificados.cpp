#include "Uutilext/crypto/Certificados.h"

#include <algorithm>
#include <array>
#include <climits>
#include <memory>
#include <openssl/asn1.h>
#include <openssl/bio.h>
#include <openssl/crypto.h>
#include <openssl/objects.h>
#include <openssl/x509.h>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Uutilext/crypto/Borrador.h"
#include "Uutilext/crypto/ColaErrores.h"
#include "Uutilext/crypto/Libcrypto.h"
#include "Uutilext/crypto/LlavePrivada.h"
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
  void operator()(unsigned char* p) const noexcept { OPENSSL_free(p); }
};
using Flujo = std::unique_ptr<BIO, Libera>;
using Certificado = std::unique_ptr<X509, Libera>;

// The certificate at the beginning of the bytes; what may follow it is not looked at. Null when there is
// none.
Certificado Decodifica(std::string_view der) {
  const Libcrypto* const libcrypto = DameLibcrypto();
  if (libcrypto == nullptr) return {};
  // Nothing valid is as long as the limit.
  const auto largo = static_cast<int>(std::min<std::size_t>(der.size(), INT_MAX));
  const Flujo flujo(BIO_new_mem_buf(der.data(), largo));
  // It takes its context from the object that it is read into, which a failure may free and set to null.
  X509* certificado = X509_new_ex(libcrypto->contexto, nullptr);
  const bool leido = flujo && certificado != nullptr && d2i_X509_bio(flujo.get(), &certificado) != nullptr;
  Certificado dueno(certificado);
  return leido ? std::move(dueno) : nullptr;
}

Certificado ExigeCert(std::string_view der) {
  Certificado certificado = Decodifica(der);
  if (!certificado) throw Exception(u"No se pudo extraer la llave pública.");
  return certificado;
}

// The files are read here and not by libcrypto: it takes names in 8-bit text only, and so could not open one
// outside the code page.
Certificado LeeCert(std::u16string_view ruta) {
  const std::optional<std::string> bytes = LeeArchivo(ruta);
  return bytes ? ExigeCert(*bytes) : Certificado();
}

std::optional<LlavePrivada> LeePrivKey(std::u16string_view ruta, std::u16string_view contrasena) {
  std::optional<std::string> bytes = LeeArchivo(ruta);
  if (!bytes) return {};
  // A key file without encryption is refused, but its bytes are a secret too.
  const Borrador borraBytes(*bytes);
  if (!CabeEnCp1252(contrasena)) return {};
  AnsiString clave = ACp1252(contrasena);
  const Borrador borraClave(clave);
  logInter(u"UUTIL::LeePrivKey...d2i_PKCS8PrivateKey_bio");
  return LlavePrivada::Abre(*bytes, clave);
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

UnicodeString Momento(const ASN1_TIME* momento) {
  const unsigned char* texto = ASN1_STRING_get0_data(momento);
  return DeCp1252(std::string(texto, texto + ASN1_STRING_length(momento)));
}

UnicodeString Numero(const X509& certificado) { return DeCp1252(OctetosSerie(certificado)); }

// Texts of every kind become one. What is no text (a unique identifier may be a string of bits) holds its
// characters as they are.
UnicodeString ATexto(const ASN1_STRING& valor) {
  unsigned char* utf8 = nullptr;
  const int largo = ASN1_STRING_to_UTF8(&utf8, &valor);
  const std::unique_ptr<unsigned char, Libera> dueno(utf8);
  if (largo >= 0) return UTF8ToString(std::string(utf8, utf8 + largo));
  const unsigned char* const bytes = ASN1_STRING_get0_data(&valor);
  return DeCp1252(std::string(bytes, bytes + ASN1_STRING_length(&valor)));
}

std::vector<TParteNombre> Partes(const X509_NAME* nombre) {
  std::vector<TParteNombre> partes;
  for (int i = 0; i < X509_NAME_entry_count(nombre); ++i) {
    const X509_NAME_ENTRY* const parte = X509_NAME_get_entry(nombre, i);
    std::array<char, 128> tipo{};
    OBJ_obj2txt(tipo.data(), static_cast<int>(tipo.size()), X509_NAME_ENTRY_get_object(parte), 1);
    partes.push_back({tipo.data(), ATexto(*X509_NAME_ENTRY_get_data(parte))});
  }
  return partes;
}

int ValidaLlave(std::u16string_view rutaCertificado, std::u16string_view rutaLlave,
                std::u16string_view contrasena) {
  const std::optional<LlavePrivada> llave = LeePrivKey(rutaLlave, contrasena);
  if (!llave) return 1;
  logInter(u"UUTIL::ValPrivKey...LeeCert");
  const Certificado certificado = LeeCert(rutaCertificado);
  if (!certificado) return 3;
  logInter(u"UUTIL::ValPrivKey...X509_check_private_key");
  return llave->EsDe(*certificado) ? 0 : 2;
}

}  // namespace

UnicodeString CertGetNumSer(std::u16string_view rutaCertificado) {
  const ColaErrores cola;
  logInter(u"UUTIL::CertGetNumSer...LeeCert");
  const Certificado certificado = LeeCert(rutaCertificado);
  return certificado ? Numero(*certificado) : UnicodeString();
}

bool CertGetFechaHora(std::u16string_view rutaCertificado, bool fin, UnicodeString& fecha) {
  const ColaErrores cola;
  logInter(u"UUTIL::CertGetFechaHora...LeeCert");
  const Certificado certificado = LeeCert(rutaCertificado);
  if (!certificado) return false;
  fecha = Momento(fin ? X509_get0_notAfter(certificado.get()) : X509_get0_notBefore(certificado.get()));
  return true;
}

TDatosCertificado CertDameDatos(std::string_view der) {
  const ColaErrores cola;
  logInter(u"UUTIL::CertDameDatos");
  const Certificado certificado = ExigeCert(der);
  return {Numero(*certificado), Momento(X509_get0_notBefore(certificado.get())),
          Momento(X509_get0_notAfter(certificado.get())), Partes(X509_get_subject_name(certificado.get())),
          Partes(X509_get_issuer_name(certificado.get()))};
}

int ValPrivKey(std::u16string_view rutaCertificado, std::u16string_view rutaLlave,
               std::u16string_view contrasena) {
  const ColaErrores cola;
  logInter(u"UUTIL::ValPrivKey...INICIO");
  const int estado = ValidaLlave(rutaCertificado, rutaLlave, contrasena);
  logInter(u"UUTIL::ValPrivKey...FIN SinError: " + IntToStr(estado));
  return estado;
}

}  // namespace vel

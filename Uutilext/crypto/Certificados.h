#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// The taxpayer's seal: a certificate file (X.509 in DER form, RFC 5280) and a file with its private key
/// (encrypted PKCS#8 in DER form, RFC 5958, with PBES2 or another scheme of libcrypto's default provider).
///
/// Paths are paths of the suite. A file that is missing, locked, or a folder "cannot be read", which the
/// results below tell. What is read but holds no DER certificate raises Exception ("No se pudo extraer la
/// llave pública.") from every function.
///
/// Nothing is left behind: no entry in libcrypto's error queue, no password and no RSA key in memory that is
/// given back; and nothing is ever asked at a terminal. libcrypto is used in a context of the library's own:
/// no configuration of the machine or of the program changes a result.

/// The certificate's number: the octets of its serial (without the sign octet that DER puts before a high
/// bit), each one a character of the system code page, up to the first zero octet. The tax authority issues
/// serials whose octets are the twenty digits of the number. Empty when the file cannot be read.
UTILVEL90_EXPORT UnicodeString CertGetNumSer(std::u16string_view rutaCertificado);

/// The start of the certificate's validity, or its end with `fin`, as the certificate writes it, in UTC:
/// YYMMDDhhmmssZ to the year 2049, YYYYMMDDhhmmssZ after it (RFC 5280, section 4.1.2.5). False, with `fecha`
/// untouched, when the file cannot be read.
UTILVEL90_EXPORT bool CertGetFechaHora(std::u16string_view rutaCertificado, bool fin, UnicodeString& fecha);

/// A part of a name in a certificate: the dotted object identifier of its type ("2.5.4.3" is the common name,
/// "2.5.4.45" the unique identifier; ITU-T X.520) and its text.
struct TParteNombre {
  /// Dotted object identifier: "2.5.4.3".
  std::string Tipo;
  /// What the certificate says under it.
  UnicodeString Texto;
  friend bool operator==(const TParteNombre&, const TParteNombre&) = default;
};

/// What a certificate says of itself.
struct TDatosCertificado {
  /// As CertGetNumSer gives it.
  UnicodeString Numero;
  /// First and last moment of its validity, as CertGetFechaHora gives them.
  UnicodeString Desde;
  /// Last moment of its validity, as CertGetFechaHora gives it.
  UnicodeString Hasta;
  /// Names in the order of the certificate; a type may come more than once.
  std::vector<TParteNombre> Sujeto;
  /// Names of who issued it, likewise.
  std::vector<TParteNombre> Emisor;
  friend bool operator==(const TDatosCertificado&, const TDatosCertificado&) = default;
};

/// Reads a certificate that is at hand, such as the one that an electronic invoice carries in Base64: `der`
/// is its DER form, and what may follow it is not looked at.
UTILVEL90_EXPORT TDatosCertificado CertDameDatos(std::string_view der);

/// Checks that the password opens the key file and that the key belongs to the certificate:
///
///     0  it does
///     1  the key file cannot be read, is not an encrypted PKCS#8 key in DER form, does not open with this
///        password, or asks for more than ten million rounds to derive its key (the product of its three
///        costs where it uses scrypt)
///     2  the key belongs to another certificate
///     3  the certificate file cannot be read
///
/// The key comes first: with a bad key the certificate is not looked at. The password is used in the system
/// code page, up to its first zero character and at most 1024 characters; one with a character that the code
/// page does not have opens nothing.
UTILVEL90_EXPORT int ValPrivKey(std::u16string_view rutaCertificado, std::u16string_view rutaLlave,
                                std::u16string_view contrasena);

}  // namespace vel

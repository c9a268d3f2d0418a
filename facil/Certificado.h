#pragma once

#include <chrono>
#include <cstdint>
#include <string_view>

#include "facil/Texto.h"
#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel::facil {

/// What a taxpayer's certificate says.
struct Certificado {
  /// Its number, as CertGetNumSer gives it: twenty digits.
  UnicodeString numero;
  /// Its validity in universal time, both ends included; DeUniversal gives local times of them.
  std::chrono::sys_seconds inicio;
  /// Last second of its validity.
  std::chrono::sys_seconds fin;
  /// The taxpayer ids of the subject and, of a company, of who represents it: the two halves, parted by "/",
  /// of its unique identifier (2.5.4.45), where the Mexican tax authority writes them. Empty when there is
  /// none.
  UnicodeString rfc;
  /// Taxpayer id of who represents the company.
  UnicodeString rfcRepresentante;
  /// Names of the subject and the issuer: the name (2.5.4.41), else the common name (2.5.4.3), else the
  /// organisation (2.5.4.10).
  UnicodeString nombre;
  /// Name of who issued it.
  UnicodeString emisor;

  /// Both ends included, the last one for its whole second.
  template <class Duracion>
  bool VigenteEn(std::chrono::sys_time<Duracion> momento) const noexcept {
    const auto segundo = std::chrono::floor<std::chrono::seconds>(momento);
    return inicio <= segundo && segundo <= fin;
  }
};

/// Reads a certificate file in DER form; the path is one of the suite or of the system. EStreamError ("No se
/// puede leer el certificado C:\\sello.cer: el archivo no existe") when it cannot be read; Exception ("No se
/// pudo extraer la llave pública.") when it holds none, or ("La vigencia del certificado no es válida.") when
/// one of its moments is none. A certificate in PEM form holds none.
UTILVEL90_EXPORT Certificado LeeCertificado(const Texto& ruta);

/// The same of the file's bytes.
UTILVEL90_EXPORT Certificado LeeCertificadoDER(std::string_view bytes);

/// The answers of ValPrivKey.
enum class EstadoLlave : std::uint8_t {
  /// The password opens the key, and it is the certificate's.
  Corresponde = 0,
  /// The key file cannot be read, is none, or does not open with this password.
  NoAbre = 1,
  DeOtroCertificado = 2,
  /// The key opens, but the certificate file cannot be read.
  SinCertificado = 3,
};

/// Whether key, password and certificate belong together, as ValPrivKey, which says which files and passwords
/// serve. A certificate file that holds none raises Exception. The password is in UTF-16 alone, so that no
/// copy of it is made here and left in memory.
UTILVEL90_EXPORT EstadoLlave RevisaLlave(const Texto& rutaCertificado, const Texto& rutaLlave,
                                         std::u16string_view contrasena);

}  // namespace vel::facil

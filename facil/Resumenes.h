#pragma once

#include <string>
#include <string_view>

#include "utilvel90_export.h"

namespace vel::facil {

/// A digest, as bytes or as text.
///
///     Sha256("abc").Hex() == "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"
///
/// Threads: const members may be called by all.
class UTILVEL90_EXPORT Resumen {
 public:
  /// Takes the bytes as a digest.
  // cppcheck does not know the cast, which spares callers <utility>, as a move.
  // cppcheck-suppress passedByValue
  explicit Resumen(std::string bytes) noexcept : bytes_(static_cast<std::string&&>(bytes)) {}
  /// The raw bytes.
  const std::string& Bytes() const noexcept { return bytes_; }
  /// Two digits a byte, in small letters.
  std::string Hex() const;
  std::string Base64() const;
  friend bool operator==(const Resumen&, const Resumen&) = default;

 private:
  std::string bytes_;
};

/// Digests of bytes as they stand, to the length of the view, zeros too; of a text UTF8Encode gives the
/// bytes. A plain literal ends at its first zero, as everywhere in C++: "a\0b"sv is whole. MD5 and SHA-1 no
/// longer withstand forgers: use them only where a receiver asks for them. Exception ("No se pudo calcular el
/// resumen.") should libcrypto fail.
UTILVEL90_EXPORT Resumen Sha256(std::string_view datos);
UTILVEL90_EXPORT Resumen Sha1(std::string_view datos);
UTILVEL90_EXPORT Resumen Md5(std::string_view datos);
/// HMAC-SHA-256 (RFC 2104); a key of any length, zeros too.
UTILVEL90_EXPORT Resumen HmacSha256(std::string_view llave, std::string_view datos);

/// Base64 (RFC 4648, section 4) of bytes, in one line, and the bytes behind such a text, whose end may have
/// blanks and line breaks. EConvertError ("El texto no está en Base64") for any other text, EInvalidOperation
/// for more than a gigabyte.
///
///     ABase64("abcd") == "YWJjZA=="    DeBase64("YWJjZA==\n") == "abcd"
UTILVEL90_EXPORT std::string ABase64(std::string_view bytes);
UTILVEL90_EXPORT std::string DeBase64(std::string_view texto);

}  // namespace vel::facil

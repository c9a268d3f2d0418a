#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct x509_st;
struct evp_pkey_st;
struct rsa_st;

namespace vel {

/// A private key out of an encrypted PKCS#8 structure (RFC 5958), to tell which certificate it belongs to.
/// Of an RSA key nothing is left in memory that is given back.
class LlavePrivada {
 public:
  /// Opens the structure that stands at the beginning of `der` (in DER form) with a password of at most 1024
  /// bytes. Nothing when it is no such structure, does not open with this password, is enciphered with what
  /// libcrypto's default provider does not have, or asks for more work than kCostoMaximo.
  static std::optional<LlavePrivada> Abre(std::string_view der, const std::string& clave);

  /// Whether the certificate's public key is this key's.
  bool EsDe(const x509_st& certificado) const;

  /// The rounds of password derivation that a file may ask for: PBKDF2 and PBES1 iterations (RFC 8018),
  /// PKCS#12 iterations (RFC 7292), or the product N * r * p of scrypt (RFC 7914). Real keys take thousands,
  /// the most careful ones a million or so; 2^31 - 1, which the form allows, takes a quarter of an hour.
  static constexpr unsigned long long kCostoMaximo = 10'000'000;

 private:
  struct Libera {
    void operator()(evp_pkey_st* p) const noexcept;
    void operator()(rsa_st* p) const noexcept;
  };

  // One of both.
  std::unique_ptr<rsa_st, Libera> rsa_;
  std::unique_ptr<evp_pkey_st, Libera> otra_;
};

}  // namespace vel

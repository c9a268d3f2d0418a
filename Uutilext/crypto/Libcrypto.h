#pragma once

// libcrypto's own types, which only sources include.
struct evp_cipher_st;
struct evp_md_st;
struct ossl_lib_ctx_st;

namespace vel {

/// What the library uses of libcrypto: a library context of its own, with the default provider and nothing
/// else, and the algorithms found in it. The process's default context follows the configuration file of the
/// machine and whatever the host has loaded or switched off; results must not.
struct Libcrypto {
  Libcrypto() = default;
  Libcrypto(const Libcrypto&) = delete;
  Libcrypto& operator=(const Libcrypto&) = delete;
  ~Libcrypto();

  ossl_lib_ctx_st* contexto = nullptr;
  evp_md_st* md5 = nullptr;
  evp_md_st* sha1 = nullptr;
  evp_md_st* sha256 = nullptr;
  evp_cipher_st* aes128 = nullptr;
};

/// Made by the first call and kept for the life of the process. Null when libcrypto cannot give it: no memory
/// (the next call tries again), or the host has ended libcrypto (OPENSSL_cleanup), after which looking
/// anything up in it would crash.
const Libcrypto* DameLibcrypto();

}  // namespace vel

#include "Uutilext/crypto/Resumenes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <memory>
#include <openssl/core_names.h>
#include <openssl/evp.h>
#include <openssl/params.h>
#include <span>
#include <string>
#include <type_traits>

#include "Uutilext/crypto/Base64.h"
#include "Uutilext/crypto/ColaErrores.h"
#include "platform/PaginaCodigos.h"

namespace vel {
namespace {

// Texts go to libcrypto in pieces that stay in the processor's nearest cache between the look for their end,
// the conversion and the digest.
constexpr std::size_t kTrozo = 4096;
constexpr std::size_t kTrozoCopiado = 16384;

struct Libera {
  void operator()(EVP_MD* p) const noexcept { EVP_MD_free(p); }
  void operator()(EVP_MD_CTX* p) const noexcept { EVP_MD_CTX_free(p); }
  void operator()(EVP_MAC* p) const noexcept { EVP_MAC_free(p); }
  void operator()(EVP_MAC_CTX* p) const noexcept { EVP_MAC_CTX_free(p); }
};

// A digest in the present interface, in place of the MD5, SHA1 and SHA256 calls: the bytes are the same and
// all three are in the default provider. Looking an algorithm up by its name costs more than the digest of a
// short text, so each thread does it once and starts the same context anew for each text.
class Resumen {
 public:
  explicit Resumen(const char* algoritmo) noexcept : algoritmo_(algoritmo) {}

  bool Inicia() {
    if (!contexto_) contexto_ = Crea(algoritmo_);
    return contexto_ && EVP_DigestInit_ex2(contexto_.get(), nullptr, nullptr) == 1;
  }
  void Agrega(std::string_view bytes) { EVP_DigestUpdate(contexto_.get(), bytes.data(), bytes.size()); }
  bool Termina(std::span<unsigned char> resumen) {
    return EVP_DigestFinal_ex(contexto_.get(), resumen.data(), nullptr) == 1;
  }

 private:
  using Contexto = std::unique_ptr<EVP_MD_CTX, Libera>;

  static Contexto Crea(const char* algoritmo) {
    const ColaErrores cola;
    const std::unique_ptr<EVP_MD, Libera> metodo(EVP_MD_fetch(nullptr, algoritmo, nullptr));
    Contexto contexto(EVP_MD_CTX_new());
    if (!metodo || !contexto || EVP_DigestInit_ex2(contexto.get(), metodo.get(), nullptr) != 1) return {};
    return contexto;
  }

  const char* algoritmo_;
  Contexto contexto_;
};

// The same for HMAC, in place of the HMAC call.
class ResumenConLlave {
 public:
  bool Inicia(std::string_view llave) {
    if (!contexto_) contexto_ = Crea();
    return contexto_ && EVP_MAC_init(contexto_.get(), Bytes(llave), llave.size(), nullptr) == 1;
  }
  void Agrega(std::string_view bytes) { EVP_MAC_update(contexto_.get(), Bytes(bytes), bytes.size()); }
  bool Termina(std::span<unsigned char> resumen) {
    std::size_t escritos = 0;
    return EVP_MAC_final(contexto_.get(), resumen.data(), &escritos, resumen.size()) == 1;
  }

 private:
  using Contexto = std::unique_ptr<EVP_MAC_CTX, Libera>;

  // Text of bytes.
  static const unsigned char* Bytes(std::string_view texto) {
    return reinterpret_cast<const unsigned char*>(texto.data());
  }

  static Contexto Crea() {
    const ColaErrores cola;
    const std::unique_ptr<EVP_MAC, Libera> metodo(EVP_MAC_fetch(nullptr, OSSL_MAC_NAME_HMAC, nullptr));
    Contexto contexto(metodo ? EVP_MAC_CTX_new(metodo.get()) : nullptr);
    // The parameter's type has no const; the text is only read.
    char sha256[] = "SHA256";
    const OSSL_PARAM parametros[] = {OSSL_PARAM_construct_utf8_string(OSSL_MAC_PARAM_DIGEST, sha256, 0),
                                     OSSL_PARAM_construct_end()};
    if (!contexto || EVP_MAC_CTX_set_params(contexto.get(), parametros) != 1) return {};
    return contexto;
  }

  Contexto contexto_;
};

// Characters are looked at in groups of fixed size, judged at their end: with no branch inside, compilers
// turn these loops into vector instructions.
constexpr std::size_t kGrupoVisto = 1024;
constexpr std::size_t kGrupoCopiado = 256;
constexpr std::size_t kGrupoCorto = 32;

template <std::size_t N>
bool EsAsciiSinCeros(const char* grupo) {
  unsigned char mayor = 0;
  for (std::size_t i = 0; i < N; ++i) {
    // One less puts the zero byte on the far side of the others.
    mayor = std::max(mayor, static_cast<unsigned char>(grupo[i] - 1));
  }
  return mayor < 0x7F;
}

// Length of the beginning of the text that is ASCII without zero bytes.
std::size_t LargoAscii(std::string_view texto) {
  std::size_t n = 0;
  while (texto.size() - n >= kGrupoVisto && EsAsciiSinCeros<kGrupoVisto>(&texto[n])) n += kGrupoVisto;
  while (texto.size() - n >= kGrupoCorto && EsAsciiSinCeros<kGrupoCorto>(&texto[n])) n += kGrupoCorto;
  while (n < texto.size() && EsAsciiSinCeros<1>(&texto[n])) ++n;
  return n;
}

// Copies N characters as bytes if all of them are ASCII.
template <std::size_t N>
bool CopiaGrupo(const char16_t* texto, char* bytes) {
  std::array<char, N> grupo;
  char16_t junto = 0;
  for (std::size_t i = 0; i < N; ++i) {
    junto = static_cast<char16_t>(junto | texto[i]);
    grupo[i] = static_cast<char>(texto[i]);
  }
  if (junto >= 0x80) return false;
  std::memcpy(bytes, grupo.data(), N);
  return true;
}

// Copies the ASCII characters at the beginning of the text, as far as they fit, and returns how many they
// are.
std::size_t CopiaAscii(std::u16string_view texto, std::array<char, kTrozoCopiado>& trozo) {
  texto = texto.substr(0, kTrozoCopiado);
  std::size_t n = 0;
  while (texto.size() - n >= kGrupoCopiado && CopiaGrupo<kGrupoCopiado>(&texto[n], &trozo[n]))
    n += kGrupoCopiado;
  while (texto.size() - n >= kGrupoCorto && CopiaGrupo<kGrupoCorto>(&texto[n], &trozo[n])) n += kGrupoCorto;
  while (n < texto.size() && CopiaGrupo<1>(&texto[n], &trozo[n])) ++n;
  return n;
}

// Length of the beginning of the text without ASCII characters.
template <class Texto>
std::size_t LargoAjeno(Texto texto) {
  using Numero = std::make_unsigned_t<typename Texto::value_type>;
  const auto fin = std::ranges::find_if(texto, [](Numero c) { return c < 0x80; });
  return static_cast<std::size_t>(fin - texto.begin());
}

// Gives a text to `recibe` as bytes, piece by piece, until that returns false: ASCII as it stands, the runs
// of other characters through `convierte`.
template <class Convierte, class Recibe>
void EntregaBytes(std::u16string_view texto, Convierte convierte, Recibe recibe) {
  std::array<char, kTrozoCopiado> trozo;
  while (!texto.empty()) {
    const std::size_t ascii = CopiaAscii(texto, trozo);
    if (!recibe(std::string_view(trozo.data(), ascii))) return;
    texto.remove_prefix(ascii);
    const std::size_t ajenos = LargoAjeno(texto);
    if (ajenos > 0 && !recibe(std::string_view(convierte(texto.substr(0, ajenos))))) return;
    texto.remove_prefix(ajenos);
  }
}

// The text in the code page, cut with a zero byte at the first character that the code page does not have.
AnsiString ACodigosHastaAjeno(std::u16string_view texto) {
  if (CabeEnCp1252(texto)) return ACp1252(texto);
  std::size_t caben = 0;
  while (CabeEnCp1252(texto.substr(caben, 1))) ++caben;
  return ACp1252(texto.substr(0, caben)) + '\0';
}

// Both digits of every byte.
constexpr auto kDigitos = [] {
  constexpr char kDigito[] = "0123456789abcdef";
  std::array<std::array<char, 2>, 256> pares{};
  for (std::size_t i = 0; i < pares.size(); ++i) pares[i] = {kDigito[i / 16], kDigito[i % 16]};
  return pares;
}();

template <std::size_t N>
AnsiString Hexadecimal(const std::array<unsigned char, N>& bytes) {
  std::array<char, 2 * N> texto;
  for (std::size_t i = 0; i < N; ++i) std::ranges::copy(kDigitos[bytes[i]], &texto[2 * i]);
  return {texto.data(), texto.size()};
}

}  // namespace

AnsiString Hash256(const char* texto) {
  thread_local Resumen sha256("SHA256");
  if (!sha256.Inicia()) return {};
  bool sigue = texto != nullptr;
  while (sigue) {
    // memchr stops at the zero, so it reads nothing behind the text.
    const void* cero = std::memchr(texto, 0, kTrozo);
    const std::size_t largo =
        cero == nullptr ? kTrozo : static_cast<std::size_t>(static_cast<const char*>(cero) - texto);
    sha256.Agrega({texto, largo});
    texto += largo;
    sigue = cero == nullptr;
  }
  std::array<unsigned char, 32> resumen;
  return sha256.Termina(resumen) ? Hexadecimal(resumen) : AnsiString();
}

AnsiString EncriptaSha1(std::string_view texto) {
  thread_local Resumen sha1("SHA1");
  if (!sha1.Inicia()) return {};
  while (!texto.empty() && texto.front() != '\0') {
    const std::size_t ascii = LargoAscii(texto.substr(0, kTrozo));
    sha1.Agrega(texto.substr(0, ascii));
    texto.remove_prefix(ascii);
    const std::size_t ajenos = LargoAjeno(texto);
    if (ajenos > 0) sha1.Agrega(UTF8Encode(DeCp1252(texto.substr(0, ajenos))));
    texto.remove_prefix(ajenos);
  }
  std::array<unsigned char, 20> resumen;
  return sha1.Termina(resumen) ? Hexadecimal(resumen) : AnsiString();
}

UnicodeString EncriptaMD5(std::u16string_view texto) {
  thread_local Resumen md5("MD5");
  if (!md5.Inicia()) return {};
  EntregaBytes(texto, UTF8Encode, [](std::string_view bytes) {
    md5.Agrega(bytes);
    return true;
  });
  std::array<unsigned char, 16> resumen;
  std::array<unsigned char, 33> base64;
  if (!md5.Termina(resumen)) return {};
  const int escritos = Base64(resumen.data(), resumen.size(), base64.data(), base64.size(), true);
  return {base64.begin(), base64.begin() + escritos};
}

const unsigned char* EncriptaHmacSha256(std::u16string_view datos, const char* llave, bool ampliaA32) {
  thread_local ResumenConLlave hmac;
  thread_local std::array<unsigned char, 32> resumen;
  const char* const bytesLlave = llave == nullptr ? "" : llave;
  std::size_t largoLlave = std::strlen(bytesLlave);
  if (ampliaA32 && llave != nullptr) largoLlave = std::max<std::size_t>(largoLlave, 32);
  if (!hmac.Inicia({bytesLlave, largoLlave})) return nullptr;
  EntregaBytes(datos, ACodigosHastaAjeno, [](std::string_view bytes) {
    const std::size_t cero = bytes.find('\0');
    hmac.Agrega(bytes.substr(0, cero));
    return cero == std::string_view::npos;
  });
  const bool bien = hmac.Termina(resumen);
  // The key does not stay in the context that waits for the next call.
  hmac.Inicia({});
  return bien ? resumen.data() : nullptr;
}

}  // namespace vel

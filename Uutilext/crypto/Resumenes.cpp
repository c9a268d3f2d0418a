#include "Uutilext/crypto/Resumenes.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstring>
#include <openssl/evp.h>
#include <span>
#include <type_traits>

#include "Uutilext/crypto/Base64.h"
#include "Uutilext/crypto/Borrador.h"
#include "Uutilext/crypto/ColaErrores.h"
#include "Uutilext/crypto/Libcrypto.h"
#include "platform/PaginaCodigos.h"

namespace vel {
namespace {

// Texts go to libcrypto in pieces that stay in the processor's nearest cache between the look for their end,
// the conversion and the digest.
constexpr std::size_t kTrozo = 4096;
constexpr std::size_t kTrozoCopiado = 16384;

// Contexts of one algorithm that wait for their next text. Making one costs half as much as the digest of a
// short text, so a few are kept; none belongs to a thread, whose end would have to free it. Each is taken by
// one exchange: nobody waits, and whoever finds none makes one.
class Almacen {
 public:
  using Algoritmo = evp_md_st* Libcrypto::*;
  explicit constexpr Almacen(Algoritmo algoritmo) noexcept : algoritmo_(algoritmo) {}

  EVP_MD_CTX* Toma() {
    for (std::atomic<EVP_MD_CTX*>& casilla : casillas_) {
      if (EVP_MD_CTX* const contexto = casilla.exchange(nullptr, std::memory_order_acquire)) return contexto;
    }
    return Crea();
  }
  void Deja(EVP_MD_CTX* contexto) noexcept {
    for (std::atomic<EVP_MD_CTX*>& casilla : casillas_) {
      EVP_MD_CTX* vacia = nullptr;
      if (casilla.compare_exchange_strong(vacia, contexto, std::memory_order_release)) return;
    }
    EVP_MD_CTX_free(contexto);
  }

 private:
  // Looking an algorithm up by its name costs more than a digest: DameLibcrypto has done it.
  EVP_MD_CTX* Crea() const {
    const Libcrypto* const libcrypto = DameLibcrypto();
    if (libcrypto == nullptr) return nullptr;
    const ColaErrores cola;
    EVP_MD_CTX* const contexto = EVP_MD_CTX_new();
    if (contexto != nullptr && EVP_DigestInit_ex2(contexto, libcrypto->*algoritmo_, nullptr) == 1)
      return contexto;
    EVP_MD_CTX_free(contexto);
    return nullptr;
  }

  Algoritmo algoritmo_;
  std::array<std::atomic<EVP_MD_CTX*>, 16> casillas_{};
};

// Never freed: calls come until the process is gone, also from destructors that run later than ours could.
constinit Almacen contextosMd5(&Libcrypto::md5);
constinit Almacen contextosSha1(&Libcrypto::sha1);
constinit Almacen contextosSha256(&Libcrypto::sha256);

// Digests in the present interface, in place of the MD5, SHA1 and SHA256 calls: the bytes are the same. One
// object serves several texts, one after the other.
class Resumen {
 public:
  explicit Resumen(Almacen& almacen) : almacen_(almacen), contexto_(almacen.Toma()) {}
  ~Resumen() {
    // One in the middle of a text still holds some of it, and is wiped when freed.
    if (enTexto_) EVP_MD_CTX_free(contexto_);
    if (!enTexto_ && contexto_ != nullptr) almacen_.Deja(contexto_);
  }
  Resumen(const Resumen&) = delete;
  Resumen& operator=(const Resumen&) = delete;

  bool Inicia() {
    enTexto_ = contexto_ != nullptr;
    return enTexto_ && EVP_DigestInit_ex2(contexto_, nullptr, nullptr) == 1;
  }
  template <class Bytes>
  void Agrega(const Bytes& bytes) {
    EVP_DigestUpdate(contexto_, bytes.data(), bytes.size());
  }
  bool Termina(std::span<unsigned char> resumen) {
    enTexto_ = EVP_DigestFinal_ex(contexto_, resumen.data(), nullptr) != 1;
    return !enTexto_;
  }

 private:
  Almacen& almacen_;
  EVP_MD_CTX* contexto_;
  bool enTexto_ = false;
};

// HMAC (RFC 2104) with SHA-256: digests of the key in one mask and the text, then of the key in another and
// that digest. Composed here because libcrypto's own keeps the key in its context, and wiping it there costs
// as much as the whole digest of a short text.
class Hmac {
 public:
  using Resultado = std::array<unsigned char, 32>;

  bool Inicia(std::string_view llave) {
    // A key longer than a block stands for its digest.
    std::span<unsigned char> inicio(llave_);
    const bool larga = llave.size() > llave_.size();
    if (larga && !(resumen_.Inicia() && Termina(llave, inicio.first<32>()))) return false;
    if (!larga) std::ranges::copy(llave, llave_.begin());
    return IniciaCon(kInterior);
  }
  void Agrega(std::string_view bytes) { resumen_.Agrega(bytes); }
  bool Termina(Resultado& resultado) {
    return resumen_.Termina(resultado) && IniciaCon(kInterior ^ kExterior) && Termina(resultado, resultado);
  }

 private:
  static constexpr unsigned char kInterior = 0x36;
  static constexpr unsigned char kExterior = 0x5C;

  // Puts the key in one mask, or takes it from the first to the second.
  bool IniciaCon(unsigned char mascara) {
    for (unsigned char& byte : llave_) byte = static_cast<unsigned char>(byte ^ mascara);
    if (!resumen_.Inicia()) return false;
    resumen_.Agrega(llave_);
    return true;
  }
  template <class Bytes>
  bool Termina(const Bytes& bytes, std::span<unsigned char> resultado) {
    resumen_.Agrega(bytes);
    return resumen_.Termina(resultado);
  }

  std::array<unsigned char, 64> llave_{};
  Borrador<std::array<unsigned char, 64>> borra_{llave_};
  Resumen resumen_{contextosSha256};
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
constexpr auto kDigitos = []() {
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

template <std::size_t N>
AnsiString ResumeEn(Almacen& almacen, std::string_view bytes) {
  Resumen resumen(almacen);
  std::array<unsigned char, N> resultado;
  if (!resumen.Inicia()) return {};
  resumen.Agrega(bytes);
  return resumen.Termina(resultado) ? AnsiString(resultado.begin(), resultado.end()) : AnsiString();
}

}  // namespace

AnsiString Hash256(const char* texto) {
  Resumen sha256(contextosSha256);
  if (!sha256.Inicia()) return {};
  bool sigue = texto != nullptr;
  while (sigue) {
    // memchr stops at the zero, so it reads nothing behind the text.
    const void* cero = std::memchr(texto, 0, kTrozo);
    const std::size_t largo =
        cero == nullptr ? kTrozo : static_cast<std::size_t>(static_cast<const char*>(cero) - texto);
    sha256.Agrega(std::string_view(texto, largo));
    texto += largo;
    sigue = cero == nullptr;
  }
  std::array<unsigned char, 32> resumen;
  return sha256.Termina(resumen) ? Hexadecimal(resumen) : AnsiString();
}

AnsiString EncriptaSha1(std::string_view texto) {
  Resumen sha1(contextosSha1);
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
  Resumen md5(contextosMd5);
  if (!md5.Inicia()) return {};
  EntregaBytes(texto, UTF8Encode, [&md5](std::string_view bytes) {
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
  // Without a destructor: threads call from those of their own thread_local objects.
  thread_local Hmac::Resultado resultado;
  const char* const bytesLlave = llave == nullptr ? "" : llave;
  std::size_t largoLlave = std::strlen(bytesLlave);
  if (ampliaA32 && llave != nullptr) largoLlave = std::max<std::size_t>(largoLlave, 32);
  Hmac hmac;
  if (!hmac.Inicia({bytesLlave, largoLlave})) return nullptr;
  EntregaBytes(datos, ACodigosHastaAjeno, [&hmac](std::string_view bytes) {
    const std::size_t cero = bytes.find('\0');
    hmac.Agrega(bytes.substr(0, cero));
    return cero == std::string_view::npos;
  });
  return hmac.Termina(resultado) ? resultado.data() : nullptr;
}

AnsiString ResumeBytes(AlgoritmoResumen algoritmo, std::string_view bytes) {
  switch (algoritmo) {
    case AlgoritmoResumen::MD5:
      return ResumeEn<16>(contextosMd5, bytes);
    case AlgoritmoResumen::SHA1:
      return ResumeEn<20>(contextosSha1, bytes);
    case AlgoritmoResumen::SHA256:
      return ResumeEn<32>(contextosSha256, bytes);
  }
  return {};
}

AnsiString HmacSha256DeBytes(std::string_view llave, std::string_view bytes) {
  Hmac hmac;
  if (!hmac.Inicia(llave)) return {};
  hmac.Agrega(bytes);
  Hmac::Resultado resultado;
  return hmac.Termina(resultado) ? AnsiString(resultado.begin(), resultado.end()) : AnsiString();
}

}  // namespace vel

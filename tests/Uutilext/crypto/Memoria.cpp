#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <openssl/crypto.h>
#include <unistd.h>

#include "Uutilext/crypto/Certificados.h"
#include "Uutilext/crypto/Cifrado.h"
#include "Uutilext/crypto/Resumenes.h"
#include "tests/Uutilext/crypto/Apoyo.h"

namespace vel {
namespace {

// What is looked for is kept in a mask, so that it does not find itself.
constexpr char kMascara = '\x5A';

// Places of this process's writable memory where the bytes stand that `oculto` masks.
std::size_t Copias(const std::string& oculto) {
  static std::array<char, 1 << 16> trozo;
  const auto igual = [](char a, char b) { return a == static_cast<char>(b ^ kMascara); };
  std::size_t copias = 0;
  std::FILE* const mapas = std::fopen("/proc/self/maps", "re");
  const int memoria = open("/proc/self/mem", O_RDONLY | O_CLOEXEC);
  unsigned long inicio = 0;
  unsigned long fin = 0;
  for (char permisos[5]; std::fscanf(mapas, "%lx-%lx %4s%*[^\n]", &inicio, &fin, permisos) == 3;) {
    // A sanitizer's own maps of the memory are terabytes.
    if (permisos[1] != 'w' || fin - inicio > 1UL << 32) continue;
    for (ssize_t leidos = 0; inicio < fin; inicio += trozo.size() - oculto.size()) {
      leidos = pread(memoria, trozo.data(), std::min(trozo.size(), fin - inicio), static_cast<off_t>(inicio));
      const char* const hasta = trozo.data() + std::max<ssize_t>(leidos, 0);
      for (const char* i = trozo.data(); hasta - i >= static_cast<ssize_t>(oculto.size()); ++i) {
        i = static_cast<const char*>(
            std::memchr(i, oculto[0] ^ kMascara, static_cast<std::size_t>(hasta - i)));
        if (i == nullptr || hasta - i < static_cast<ssize_t>(oculto.size())) break;
        if (std::ranges::equal(oculto, std::string_view(i, oculto.size()), igual)) ++copias;
      }
      OPENSSL_cleanse(trozo.data(), trozo.size());
    }
  }
  close(memoria);
  std::fclose(mapas);
  return copias;
}

std::string Oculta(std::string bytes) {
  for (char& c : bytes) c = static_cast<char>(c ^ kMascara);
  return bytes;
}

// A secret of letters, in its mask.
std::string Secreto(std::size_t largo) {
  std::string oculto(largo, '\0');
  unsigned azar = static_cast<unsigned>(largo);
  for (char& c : oculto) {
    azar = azar * 1103515245 + 12345;
    c = static_cast<char>(('A' + (azar >> 16) % 26) ^ kMascara);
  }
  return oculto;
}

// Far down the stack, where what the call leaves is not covered by the search that follows.
[[gnu::noinline]] void LlamaHondo(const std::function<void()>& llamada) {
  volatile char hueco[1 << 16];
  hueco[0] = 0;
  llamada();
  hueco[1] = hueco[0];
}

UnicodeString Dato(const std::string& nombre) { return UTF8ToString(pruebas::RutaDato(nombre)); }

TEST(Memoria, HoldsNoSecretAfterTheCall) {
  const UnicodeString certificado = Dato("sello.cer");
  const UnicodeString llave = Dato("aes256.key");
  struct Caso {
    const char* nombre;
    std::size_t largo;
    std::function<void(const char*, std::u16string_view)> llama;
  };
  const Caso casos[] = {
      {"HMAC key", 40, [](const char* s, auto) { EncriptaHmacSha256(u"dato", s, false); }},
      {"HMAC key, widened", 24, [](const char* s, auto) { EncriptaHmacSha256(u"dato", s, true); }},
      {"HMAC key, long", 150, [](const char* s, auto) { EncriptaHmacSha256(u"dato", s, false); }},
      {"AES key", 32, [](const char* s, auto) { Encripta_AES_128(s, "dato"); }},
      {"password", 900, [&](auto, std::u16string_view s) { ValPrivKey(certificado, llave, s); }},
  };
  for (const Caso& caso : casos) {
    const std::string oculto = Secreto(caso.largo);
    std::array<char, 1024> claro{};
    std::array<char16_t, 1024> ancho{};
    std::ranges::transform(oculto, claro.begin(), [](char c) { return static_cast<char>(c ^ kMascara); });
    std::copy_n(claro.begin(), caso.largo, ancho.begin());
    LlamaHondo([&] { caso.llama(claro.data(), std::u16string_view(ancho.data(), caso.largo)); });
    // Part of it is enough: as it is, in either width, or in one of the masks of HMAC. It is longer than the
    // registers that the dynamic linker puts on the stack.
    const std::string parte = oculto.substr(caso.largo / 2 - 12, 24);
    std::string formas[] = {parte, {}, parte, parte};
    for (const char c : parte) formas[1] += {c, kMascara};
    for (char& c : formas[2]) c = static_cast<char>(c ^ 0x36);
    for (char& c : formas[3]) c = static_cast<char>(c ^ 0x5C);
    EXPECT_GE(Copias(formas[0]), 1U) << "the caller's own is not found";
    EXPECT_GE(Copias(formas[1]), 1U) << "the caller's own is not found";
    OPENSSL_cleanse(claro.data(), sizeof claro);
    OPENSSL_cleanse(ancho.data(), sizeof ancho);
    for (const std::string& forma : formas)
      EXPECT_EQ(Copias(forma), 0U) << caso.nombre << ", form " << &forma - formas;
  }
}

TEST(Memoria, HoldsNoPrivateKeyAfterTheCall) {
  // The key that the enciphered files hold, as it stands in a file without encryption.
  std::array<char, 2048> bytes{};
  const int archivo = open(pruebas::RutaDato("claro.key").c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_GT(read(archivo, bytes.data(), bytes.size()), 1000);
  close(archivo);
  // Amid the first prime, and as libcrypto keeps numbers, the last byte first.
  std::string oculto = Oculta({bytes.data() + 600, 24});
  ASSERT_GE(Copias(oculto), 1U);
  OPENSSL_cleanse(bytes.data(), bytes.size());
  const std::string alReves(oculto.rbegin(), oculto.rend());
  ASSERT_EQ(ValPrivKey(Dato("sello.cer"), Dato("des3.key"), u"12345678a"), 0);
  ASSERT_EQ(ValPrivKey(Dato("ajeno.cer"), Dato("des3.key"), u"12345678a"), 2);
  ASSERT_EQ(ValPrivKey(Dato("sello.cer"), Dato("claro.key"), u"12345678a"), 1);
  EXPECT_EQ(Copias(oculto) + Copias(alReves), 0U);
}

}  // namespace
}  // namespace vel

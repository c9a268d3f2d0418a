#include <algorithm>
#include <array>
#include <fcntl.h>
#include <fstream>
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

using pruebas::Dato;

// What is looked for is kept in a mask, so that it does not find itself.
char Enmascara(char c) { return static_cast<char>(c ^ '\x5A'); }

// Places of this process's writable memory where the bytes stand that `oculto` masks.
std::size_t Copias(const std::string& oculto) {
  static std::array<char, 1 << 16> trozo;
  std::size_t copias = 0;
  const int memoria = open("/proc/self/mem", O_RDONLY | O_CLOEXEC);
  std::ifstream mapas("/proc/self/maps");
  for (std::string linea; std::getline(mapas, linea);) {
    unsigned long inicio = 0, fin = 0;
    char permiso = 0;
    std::sscanf(linea.c_str(), "%lx-%lx %*c%c", &inicio, &fin, &permiso);
    // A sanitizer's own maps of the memory are terabytes.
    if (permiso != 'w' || fin - inicio > 1UL << 32) continue;
    for (; inicio < fin; inicio += trozo.size() - oculto.size()) {
      const auto n =
          pread(memoria, trozo.data(), std::min(trozo.size(), fin - inicio), static_cast<off_t>(inicio));
      const std::string_view visto(trozo.data(), n > 0 ? static_cast<std::size_t>(n) : 0);
      for (auto i = visto.find(Enmascara(oculto[0])); i != visto.npos;
           i = visto.find(Enmascara(oculto[0]), i + 1))
        if (std::ranges::equal(oculto, visto.substr(i, oculto.size()), {}, Enmascara)) ++copias;
      OPENSSL_cleanse(trozo.data(), trozo.size());
    }
  }
  close(memoria);
  return copias;
}

// Calls far down the stack, where what the call leaves is not covered by the search that follows.
[[gnu::noinline]] void LlamaHondo(const std::function<void()>& llamada) {
  volatile char hueco[1 << 16];
  hueco[0] = 0;
  llamada();
  hueco[1] = hueco[0];
}

TEST(Memoria, HoldsNoSecretAfterTheCall) {
  const UnicodeString certificado = Dato("sello.cer"), llave = Dato("aes256.key");
  struct Caso {
    const char* nombre;
    std::size_t largo;
    std::function<void(const char*, std::u16string_view)> llama;
  };
  for (const Caso& caso : {
           Caso{"HMAC key", 40, [](auto s, auto) { EncriptaHmacSha256(u"dato", s, false); }},
           Caso{"HMAC key, widened", 24, [](auto s, auto) { EncriptaHmacSha256(u"dato", s, true); }},
           Caso{"HMAC key, long", 150, [](auto s, auto) { EncriptaHmacSha256(u"dato", s, false); }},
           Caso{"AES key", 32, [](auto s, auto) { Encripta_AES_128(s, "dato"); }},
           Caso{"password", 900, [&](auto, auto s) { ValPrivKey(certificado, llave, s); }},
       }) {
    std::array<char, 1024> claro{};
    std::array<char16_t, 1024> ancho{};
    unsigned azar = static_cast<unsigned>(caso.largo);
    for (std::size_t i = 0; i < caso.largo; ++i) {
      azar = azar * 1103515245 + 12345;
      ancho[i] = static_cast<char16_t>('A' + (azar >> 16) % 26);
      claro[i] = static_cast<char>(ancho[i]);
    }
    LlamaHondo([&] { caso.llama(claro.data(), std::u16string_view(ancho.data(), caso.largo)); });
    // Part of it, as it is, in either width, or in one of the masks of HMAC; longer than the registers that
    // the dynamic linker puts on the stack.
    std::string formas[4];
    for (std::size_t i = caso.largo / 2 - 12; i < caso.largo / 2 + 12; ++i) {
      const char c = Enmascara(claro[i]);
      formas[0] += c;
      formas[1] += {c, Enmascara(0)};
      formas[2] += static_cast<char>(c ^ 0x36);
      formas[3] += static_cast<char>(c ^ 0x5C);
    }
    EXPECT_TRUE(Copias(formas[0]) > 0 && Copias(formas[1]) > 0) << "the caller's own is not found";
    OPENSSL_cleanse(claro.data(), sizeof claro);
    OPENSSL_cleanse(ancho.data(), sizeof ancho);
    for (const std::string& forma : formas) EXPECT_EQ(Copias(forma), 0U) << caso.nombre << &forma - formas;
  }
}

TEST(Memoria, HoldsNoPrivateKeyAfterTheCall) {
  // The enciphered files hold the key of the file without encryption. Amid its first prime, and as libcrypto
  // keeps numbers, the last byte first.
  std::array<char, 24> bytes{};
  const int archivo = open(pruebas::RutaDato("claro.key").c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(pread(archivo, bytes.data(), bytes.size(), 600), 24);
  close(archivo);
  std::ranges::transform(bytes, bytes.begin(), Enmascara);
  for (const auto& [certificado, llave, estado] :
       {std::tuple("sello.cer", "des3.key", 0), {"ajeno.cer", "des3.key", 2}, {"sello.cer", "claro.key", 1}})
    LlamaHondo([&cer = certificado, &key = llave, &da = estado] {
      ASSERT_EQ(ValPrivKey(Dato(cer), Dato(key), u"12345678a"), da);
    });
  EXPECT_EQ(Copias({bytes.begin(), bytes.end()}) + Copias({bytes.rbegin(), bytes.rend()}), 0U);
}

}  // namespace
}  // namespace vel

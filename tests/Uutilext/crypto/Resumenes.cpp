#include "Uutilext/crypto/Resumenes.h"

#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <openssl/evp.h>
#include <thread>

#include "Uutilext/crypto/Base64.h"
#include "Uutilext/crypto/Cifrado.h"
#include "platform/PaginaCodigos.h"
#include "tests/Casos.h"
#include "tests/Uutilext/crypto/Apoyo.h"

namespace vel {
namespace {

using namespace std::string_view_literals;
using pruebas::Bytes;
using pruebas::Hex;

std::string EnBase64(const std::string& entrada, bool codifica = true, int tamano = 20000) {
  std::string salida(20000, '#');
  const int escritos = Base64(Bytes(entrada), static_cast<int>(entrada.size()),
                              reinterpret_cast<unsigned char*>(salida.data()), tamano, codifica);
  const auto largo = static_cast<std::size_t>(escritos);
  EXPECT_EQ(salida.find_first_not_of('#', largo), std::string::npos) << "writes past what it returns";
  return salida.substr(0, largo);
}

std::string Md5(std::u16string_view texto) { return Hex(EnBase64(UTF8Encode(EncriptaMD5(texto)), false)); }

std::string Hmac(std::u16string_view datos, const char* llave, bool amplia = false) {
  return Hex({reinterpret_cast<const char*>(EncriptaHmacSha256(datos, llave, amplia)), 32});
}

// The digest straight from libcrypto.
std::string Directo(const char* algoritmo, std::string_view bytes) {
  unsigned char resumen[EVP_MAX_MD_SIZE];
  std::size_t largo = 0;
  EVP_Q_digest(nullptr, algoritmo, nullptr, bytes.data(), bytes.size(), resumen, &largo);
  return Hex({reinterpret_cast<char*>(resumen), largo});
}

// Text, or bytes after "hex:".
std::string Valor(const std::string& texto) {
  if (!texto.starts_with("hex:")) return texto;
  std::string bytes;
  for (std::size_t i = 4; i < texto.size(); i += 2) {
    bytes += static_cast<char>(std::stoi(texto.substr(i, 2), nullptr, 16));
  }
  return bytes;
}

TEST(Criptografia, GivesThePublishedResults) {
  using Funcion = std::function<std::string(std::string, std::string)>;
  const std::map<std::string, Funcion> funciones{
      {"sha256", [](auto entrada, auto) { return Hash256(entrada.c_str()); }},
      {"sha1", [](auto entrada, auto) { return EncriptaSha1(entrada); }},
      {"md5", [](auto entrada, auto) { return Md5(DeCp1252(entrada)); }},
      {"hmac", [](auto entrada, auto llave) { return Hmac(DeCp1252(entrada), llave.c_str()); }},
      {"aes", [](auto entrada, auto llave) { return Hex(Encripta_AES_128(llave, entrada)); }},
      {"base64", [](auto entrada, auto) { return Hex(EnBase64(entrada)); }},
      {"debase64", [](auto entrada, auto) { return Hex(EnBase64(entrada, false)); }}};
  for (const auto& caso : pruebas::Casos("crypto/vectores.txt", "; ")) {
    ASSERT_EQ(caso.size(), 4U);
    EXPECT_EQ(funciones.at(caso[0])(Valor(caso[1]), Valor(caso[2])), caso[3]) << caso[0] << " " << caso[1];
  }
}

// Texts of many lengths, with accents at every place, across the pieces in which they are read.
TEST(Resumenes, HashTheUtf8FormOfAccents) {
  for (const std::size_t largo : {1U, 31U, 33U, 300U, 1500U, 16383U, 16384U, 16385U, 40000U}) {
    for (std::size_t lugar = 0; lugar < largo; lugar += 1 + largo / 37) {
      std::string bytes(largo, 'x');
      bytes[lugar] = '\x80';
      const std::string utf8 = UTF8Encode(DeCp1252(bytes));
      ASSERT_EQ(EncriptaSha1(bytes), Directo("SHA1", utf8)) << largo << " " << lugar;
      ASSERT_EQ(Md5(DeCp1252(bytes)), Directo("MD5", utf8)) << largo << " " << lugar;
      ASSERT_EQ(Hash256(bytes.c_str()), Directo("SHA256", bytes)) << largo;
    }
  }
}

TEST(Resumenes, EndAtAZeroByteWhereTextsAreCTexts) {
  EXPECT_EQ(EncriptaSha1("abc\xF1\0def"sv), EncriptaSha1("abc\xF1"));
  EXPECT_EQ(Md5(u"a\0b"sv), Directo("MD5", "a\0b"sv));
  EXPECT_EQ(Hash256(nullptr), Hash256(""));
}

TEST(EncriptaHmacSha256, TakesDataOfTheCodePageAndAKeyOfBytes) {
  const std::string esperado = "4b8dbfb83fbc89e653d362c4526412b3";
  EXPECT_EQ(Hmac(u"café €", "llave").substr(0, 32), esperado);
  EXPECT_EQ(Hmac(u"café €\0resto"sv, "llave").substr(0, 32), esperado);
  EXPECT_EQ(Hmac(u"café €あresto", "llave").substr(0, 32), esperado);

  // Bytes behind the key's zero count when it is widened.
  char llave[32] = "llave";
  EXPECT_EQ(Hmac(u"dato", llave, true), Hmac(u"dato", "llave"));
  llave[31] = 'x';
  EXPECT_EQ(Hmac(u"dato", llave), Hmac(u"dato", "llave"));
  EXPECT_NE(Hmac(u"dato", llave, true), Hmac(u"dato", "llave"));
  EXPECT_EQ(Hmac(u"dato", nullptr, true), Hmac(u"dato", ""));

  // The result outlives the calls of other threads.
  const unsigned char* resultado = EncriptaHmacSha256(u"café €", "llave", false);
  std::thread([] { EncriptaHmacSha256(u"otro", "k", false); }).join();
  EXPECT_EQ(Hex({reinterpret_cast<const char*>(resultado), 16}), esperado);
}

TEST(Base64, NeverWritesPastTheOutput) {
  const std::string datos(5000, 'd');
  const std::string texto = EnBase64(datos);
  EXPECT_EQ(EnBase64(texto, false), datos);
  for (const int tamano : {0, 1, 2, 5, 1023, 1024, 1025, 4999}) {
    const auto corte = static_cast<std::size_t>(tamano);
    EXPECT_EQ(EnBase64(datos, true, tamano), texto.substr(0, corte));
    EXPECT_EQ(EnBase64(texto, false, tamano), datos.substr(0, corte));
  }
  unsigned char uno[4];
  EXPECT_EQ(
      Base64(nullptr, 3, uno, 4, true) + Base64(uno, 3, nullptr, 4, true) + Base64(uno, -3, uno, 4, true), 0);
}

TEST(Base64, DecodesOneLineOrNothing) {
  EXPECT_EQ(EnBase64("YWJj\r\n", false), "abc");
  EXPECT_EQ(EnBase64("YQ== ", false), "a");
  // The last one has its fault behind what is decoded in one piece.
  for (const std::string malo : {"=", "====", "Y===", "YQ===", "YW=j", "YWJ", "YWJjZ", "YWJj-", "Y!Jj",
                                 " YWJj", "YWJj\nZGVm", "YQ==YQ==", "YW\xF1j"}) {
    EXPECT_EQ(EnBase64(malo, false) + EnBase64(std::string(5000, 'A') + malo, false), "") << malo;
  }
}

}  // namespace
}  // namespace vel

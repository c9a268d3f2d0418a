#define OPENSSL_SUPPRESS_DEPRECATED
#include "Uutilext/crypto/Cifrado.h"

#include <climits>
#include <gtest/gtest.h>
#include <openssl/des.h>

#include "Uutilext/crypto/LlavesFijas.h"
#include "framework/Excepciones.h"
#include "tests/Uutilext/crypto/Apoyo.h"
#include "tests/Uutilext/crypto/Cbcm.h"

namespace vel {
namespace {

using pruebas::Bytes;
using pruebas::Cbcm;
using pruebas::Hex;

std::string Enc(const std::string& entrada, int longitud, int modo) {
  unsigned char* const buffer = Enc21(Bytes(entrada), longitud, modo);
  const std::string salida(buffer, buffer + longitud);
  LiberaBuffer(buffer);
  return salida;
}

TEST(LlavesFijas, HaveOddParityAndAreNotWeak) {
  for (const LlavesFijas::Llave& llave : {kLlavesFijas.primera, kLlavesFijas.segunda, kLlavesFijas.tercera}) {
    DES_cblock copia;
    std::ranges::copy(llave, copia);
    DES_key_schedule plan;
    EXPECT_EQ(DES_set_key_checked(&copia, &plan), 0);
  }
}

TEST(Enc21, EnciphersTheTextAndItsZeroAndGetsThemBack) {
  for (std::size_t largo = 0; largo <= 41; ++largo) {
    const std::string claro =
        std::string("El veloz murci\351lago hind\372 com\355a feliz cardillo").substr(0, largo);
    const std::string lleno = claro + std::string(8 - largo % 8, '\0');
    const std::string cifrado = Enc(claro, -1, 1);
    ASSERT_EQ(Hex(cifrado), Hex(Cbcm(lleno))) << largo;
    ASSERT_EQ(Enc(cifrado, static_cast<int>(cifrado.size()), 0), lleno) << largo;
  }
}

TEST(Enc21, TakesItsLengthByTheMode) {
  const std::string cifrado = Enc("Distribuidora del Norte", 0, 1);
  EXPECT_EQ(Enc(cifrado, 8, 0), "Distribu");
  // This cipher text has a zero byte, where a mode without a length ends; the block cut there is lost.
  ASSERT_EQ(cifrado.find('\0'), 13U);
  EXPECT_EQ(Enc(cifrado, 13, 0).substr(0, 8), "Distribu");
  for (const int modo : {2, -1}) EXPECT_EQ(Enc(cifrado, 3, modo), Enc(cifrado, 13, 0));
  EXPECT_EQ(Enc(cifrado, 0, 0), "");
  EXPECT_EQ(Enc(cifrado, INT_MIN, 0), "");
  int longitud = 8;
  EXPECT_EQ(Enc21(nullptr, longitud, 1), nullptr);
  EXPECT_EQ(longitud, 0);
}

TEST(Encripta_AES_128, FillsOnlyAPartialBlock) {
  const std::string llave = "0123456789abcdefsobra";
  const std::string bloque = "AAAAAAAAAAAAAAAA";
  EXPECT_EQ(Encripta_AES_128(llave, bloque).size(), 16U);
  EXPECT_EQ(Encripta_AES_128(llave, bloque + "B"),
            Encripta_AES_128(llave, bloque) + Encripta_AES_128(llave, "B" + std::string(15, '\x0F')));
  EXPECT_EQ(Encripta_AES_128(llave, bloque + '\0' + "B"), Encripta_AES_128(llave.substr(0, 16), bloque));
  EXPECT_EQ(Encripta_AES_128(llave, ""), "");
  EXPECT_EQ(Encripta_AES_128(llave, std::string(512, 'A')).size(), 499U);
  EXPECT_EQ(Encripta_AES_128(llave, std::string(496, 'A')).size(), 496U);
  EXPECT_THROW(Encripta_AES_128("0123456789abcde", bloque), EInvalidOperation);
}

}  // namespace
}  // namespace vel

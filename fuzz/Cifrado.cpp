// Ciphers and digests against plain workings on libcrypto's single steps, and back.
#include "Uutilext/crypto/Cifrado.h"

#include <openssl/evp.h>
#include <openssl/hmac.h>

#include "Uutilext/crypto/Resumenes.h"
#include "framework/Excepciones.h"
#include "fuzz/Entrada.h"
#include "fuzz/Exige.h"
#include "platform/PaginaCodigos.h"
#include "tests/Uutilext/crypto/Cbcm.h"

namespace {

using fuzz::Exige;
using fuzz::ExigeIgual;
using pruebas::Bytes;
using namespace vel;

std::string Enc(const std::string& entrada, int longitud, int modo) {
  unsigned char* const buffer = Enc21(Bytes(entrada), longitud, modo);
  const std::string salida(buffer, buffer + longitud);
  LiberaBuffer(buffer);
  return salida;
}

void ExigeTripleDes(const std::string& texto) {
  const std::string lleno = texto + std::string(8 - texto.size() % 8, '\0');
  const std::string cifrado = Enc(texto, -1, 1);
  ExigeIgual(pruebas::Hex(cifrado), pruebas::Hex(pruebas::Cbcm(lleno)), "triple DES");
  ExigeIgual(Enc(cifrado, static_cast<int>(cifrado.size()), 0), lleno, "triple DES, back");
}

std::string Aes(const std::string& llave, const std::string& bloque) {
  std::string salida(16, '\0');
  EVP_CIPHER_CTX* const contexto = EVP_CIPHER_CTX_new();
  int largo = 0;
  EVP_EncryptInit_ex2(contexto, EVP_aes_128_ecb(), Bytes(llave), nullptr, nullptr);
  EVP_CIPHER_CTX_set_padding(contexto, 0);
  EVP_EncryptUpdate(contexto, reinterpret_cast<unsigned char*>(salida.data()), &largo, Bytes(bloque), 16);
  EVP_CIPHER_CTX_free(contexto);
  return salida;
}

void ExigeAes(const std::string& llave, std::string texto) {
  if (llave.size() < 16) {
    try {
      Encripta_AES_128(llave, texto);
      fuzz::Falla("a short key is taken", __LINE__, __FILE__);
    } catch (const EInvalidOperation&) {
      return;
    }
  }
  if (texto.size() % 16 != 0) texto.append(16 - texto.size() % 16, static_cast<char>(16 - texto.size() % 16));
  std::string esperado;
  for (std::size_t i = 0; i < texto.size(); i += 16) esperado += Aes(llave, texto.substr(i, 16)).c_str();
  return ExigeIgual(Encripta_AES_128(llave, texto), esperado.substr(0, 499), "AES");
}

std::string Resume(const EVP_MD* cual, const std::string& bytes) {
  std::string salida(static_cast<std::size_t>(EVP_MD_get_size(cual)), '\0');
  EVP_Digest(bytes.data(), bytes.size(), reinterpret_cast<unsigned char*>(salida.data()), nullptr, cual,
             nullptr);
  return salida;
}

std::string Hmac(const std::string& llave, const std::string& bytes) {
  std::string salida(32, '\0');
  HMAC(EVP_sha256(), llave.data(), static_cast<int>(llave.size()), Bytes(bytes), bytes.size(),
       reinterpret_cast<unsigned char*>(salida.data()), nullptr);
  return salida;
}

void ExigeResumenes(const std::string& llave, const std::string& bytes, const std::string& texto) {
  ExigeIgual(ResumeBytes(AlgoritmoResumen::MD5, bytes), Resume(EVP_md5(), bytes), "MD5");
  ExigeIgual(ResumeBytes(AlgoritmoResumen::SHA1, bytes), Resume(EVP_sha1(), bytes), "SHA-1");
  ExigeIgual(ResumeBytes(AlgoritmoResumen::SHA256, bytes), Resume(EVP_sha256(), bytes), "SHA-256");
  ExigeIgual(HmacSha256DeBytes(llave, bytes), Hmac(llave, bytes), "HMAC");
  ExigeIgual(Hash256(texto.c_str()), pruebas::Hex(Resume(EVP_sha256(), texto)), "SHA-256 of a text");
  ExigeIgual(EncriptaSha1(texto), pruebas::Hex(Resume(EVP_sha1(), UTF8Encode(DeCp1252(texto)))),
             "SHA-1 of a text");
  const std::string clave = llave.c_str();
  const unsigned char* const hmac = EncriptaHmacSha256(DeCp1252(texto), clave.c_str(), false);
  ExigeIgual(std::string(hmac, hmac + 32), Hmac(clave, texto), "HMAC of a text");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
  fuzz::Entrada entrada(datos, largo);
  const std::string llave = entrada.Cola(entrada.Entero<std::size_t>(0, 80));
  const std::string bytes = entrada.Resto();
  const std::string texto = bytes.substr(0, bytes.find('\0'));
  // The plain working is slow; a few blocks show the chain.
  ExigeTripleDes(texto.substr(0, 100));
  ExigeAes(llave, texto);
  ExigeResumenes(llave, bytes, texto);
  // Cipher text of any bytes deciphers to as many.
  Exige(Enc(bytes, static_cast<int>(bytes.size()), 0).size() == bytes.size(),
        "the length of what was deciphered");
  return 0;
}

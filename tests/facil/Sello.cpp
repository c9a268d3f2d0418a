// Certificates as records, and digests and Base64 of bytes.

#include <gtest/gtest.h>

#include "Uutilext/crypto/Resumenes.h"
#include "facil/facil.h"
#include "framework/Excepciones.h"
#include "platform/Archivos.h"
#include "tests/Mensaje.h"
#include "tests/Uutilext/crypto/Apoyo.h"

namespace {

using namespace std::chrono;
using namespace std::string_view_literals;
using namespace vel::facil;
using pruebas::Dato;

TEST(Certificado, IsReadAsARecord) {
  const Certificado c = LeeCertificado(pruebas::RutaDato("contribuyente.cer"));
  EXPECT_EQ(c.numero, u"00001000000509876544");
  EXPECT_EQ(c.inicio, sys_days(2024y / January / 2) + 3h + 4min + 5s);
  EXPECT_EQ(c.fin, sys_days(2055y / December / 31) + 23h + 59min + 59s);
  EXPECT_EQ(c.rfc, u"PEN010203AB1");
  EXPECT_EQ(c.rfcRepresentante, u"XEXX010101000");
  EXPECT_EQ(c.nombre, u"Peña y Ñu SA");
  EXPECT_EQ(c.emisor, u"AC de prueba");
  EXPECT_TRUE(c.VigenteEn(c.inicio) && c.VigenteEn(c.fin));
  EXPECT_FALSE(c.VigenteEn(c.inicio - 1s) || c.VigenteEn(c.fin + 1s));

  // As a string of bits, whose first octet counts the unused ones; of one taxpayer alone; other moments.
  std::string der = *vel::LeeArchivo(Dato("contribuyente.cer"));
  const std::size_t id = der.find("PEN010203AB1 / XEXX");
  der.replace(id - 2, 3, "\x03\x1C\0"sv);
  der.replace(id + 13, 1, " ");
  der.replace(der.find("240102030405Z"), 13, "500228000000Z");
  const Certificado otro = LeeCertificadoDER(der);
  EXPECT_EQ(otro.rfc, u"EN010203AB1   XEXX010101000");
  EXPECT_EQ(otro.rfcRepresentante, u"");
  EXPECT_EQ(otro.inicio, sys_days(1950y / February / 28)) << "two digits of the year are 1950 to 2049";

  const Certificado sinId = LeeCertificado(Dato("sello.cer"));
  EXPECT_EQ(sinId.rfc + sinId.rfcRepresentante, u"");
  EXPECT_EQ(sinId.nombre, u"Sello de prueba");
}

TEST(Certificado, TellsWhyItCannotBeRead) {
  const std::string ruta = pruebas::RutaDato("no_hay.cer");
  EXPECT_EQ(pruebas::MensajeDe([&] { LeeCertificado(ruta); }),
            "No se puede leer el certificado " + ruta + ": el archivo no existe");
  EXPECT_EQ(pruebas::MensajeDe([] { LeeCertificado(Dato("sello.pem")); }),
            "No se pudo extraer la llave pública.");
  std::string der = *vel::LeeArchivo(Dato("contribuyente.cer"));
  der.replace(der.find("240102030405Z"), 13, "240230030405Z");
  EXPECT_EQ(pruebas::MensajeDe([&] { LeeCertificadoDER(der); }), "La vigencia del certificado no es válida.");
  const auto estado = [](const char* certificado, const char* llave, std::u16string_view contrasena) {
    return RevisaLlave(pruebas::RutaDato(certificado), Dato(llave), contrasena);
  };
  EXPECT_EQ(estado("sello.cer", "des3.key", u"12345678a"), EstadoLlave::Corresponde);
  EXPECT_EQ(estado("sello.cer", "des3.key", u"otra"), EstadoLlave::NoAbre);
  EXPECT_EQ(estado("ajeno.cer", "des3.key", u"12345678a"), EstadoLlave::DeOtroCertificado);
  EXPECT_EQ(estado("no_hay.cer", "des3.key", u"12345678a"), EstadoLlave::SinCertificado);
}

// What sha256sum and its like, and openssl dgst -hmac, give for the same bytes.
TEST(Resumenes, CountZerosAsBytes) {
  const std::string_view datos = "a\0b\0"sv;
  EXPECT_EQ(Sha256(datos).Hex(), "8fb20ef63ced4145fc2e983ffe597d1dcff39154c3bf21f0fa9dde6a0c50fdc9");
  EXPECT_EQ(Sha1(datos).Hex(), "5b4085401e259f3918fb1701d3d9399c2c8cce73");
  EXPECT_EQ(Md5(datos).Hex(), "aa3a791e273bce9cf4a2a7caa9028b36");
  EXPECT_EQ(HmacSha256("k\0y"sv, datos).Hex(),
            "ef15571843517f0f2e9bcf585e40a3d0e2fbffe85d3a6fa9191951c49e868f03");
  EXPECT_EQ(Md5("").Base64(), "1B2M2Y8AsgTpgAmY7PhCfg==");
  EXPECT_EQ(Sha256("abc"), Sha256("abc\0"sv.substr(0, 3)));
  EXPECT_EQ(Sha256(std::string(100'000, 'x')).Hex(), vel::Hash256(std::string(100'000, 'x').c_str()));
}

TEST(Base64, GoesBothWays) {
  std::string bytes;
  for (int i = 0; i < 5'000; ++i) {
    ASSERT_EQ(DeBase64(ABase64(bytes) + (i % 2 == 0 ? "" : " \r\n")), bytes);
    bytes += static_cast<char>(i * i % 251);
  }
  EXPECT_EQ(ABase64("\0\xFF"sv), "AP8=");
  for (const char* malo : {"AP8", "AP8==", "A P8", "AP8=AP8=", "====", "Ñ===", "="}) {
    EXPECT_EQ(pruebas::MensajeDe([&] { DeBase64(malo); }), "El texto no está en Base64") << malo;
  }
}

}  // namespace

#include "Uutilext/crypto/Certificados.h"

#include <gtest/gtest.h>
#include <openssl/err.h>

#include "platform/Archivos.h"
#include "tests/CarpetaTemporal.h"
#include "tests/Casos.h"
#include "tests/Mensaje.h"
#include "tests/Uutilext/crypto/Apoyo.h"

namespace vel {
namespace {

using pruebas::Dato;
using pruebas::MensajeDe;

TEST(Certificados, GiveTheOctetsOfTheSerial) {
  EXPECT_EQ(CertGetNumSer(Dato("sello.cer")), u"00001000000509876543");
  EXPECT_EQ(CertGetNumSer(Dato("ajeno.cer")), u"€1AE");
  EXPECT_EQ(CertGetNumSer(Dato("cero.cer")), u"12");
  EXPECT_EQ(CertGetNumSer(Dato(".")), u"");
}

TEST(Certificados, GiveTheirDatesAsWritten) {
  UnicodeString fecha = u"antes";
  EXPECT_FALSE(CertGetFechaHora(Dato("no_hay.cer"), true, fecha));
  EXPECT_EQ(fecha, u"antes");
  EXPECT_TRUE(CertGetFechaHora(Dato("sello.cer"), false, fecha));
  EXPECT_EQ(fecha, u"240102030405Z");
  EXPECT_TRUE(CertGetFechaHora(Dato("sello.cer"), true, fecha));
  EXPECT_EQ(fecha, u"20551231235959Z");
  const std::vector<TParteNombre> nombre = {{"2.5.4.3", u"Sello de prueba"}};
  EXPECT_EQ(
      CertDameDatos(*LeeArchivo(Dato("sello.cer")) + "resto"),
      (TDatosCertificado{u"00001000000509876543", u"240102030405Z", u"20551231235959Z", nombre, nombre}));
}

TEST(Certificados, ReadNamesOutsideTheCodePageAndWhatCarelessIssuersWrite) {
  const pruebas::CarpetaTemporal c;
  const std::filesystem::path ruta = c.Ruta("sellos-あ/い.cer");
  c.Escribe("sellos-あ/い.cer", LeeArchivo(Dato("sello.cer")).value());
  EXPECT_EQ(ValPrivKey(ruta.u16string(), Dato("des3.key"), u"12345678a"), 0);
  // The first octet of the serial without the sign octet that it needs, and something behind the certificate.
  std::fstream archivo(ruta, std::ios::in | std::ios::out | std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(archivo), {}};
  archivo << "resto";
  archivo.seekp(static_cast<std::streamoff>(bytes.find("00001000000509876543"))) << '\xE9';
  archivo.close();
  EXPECT_EQ(CertGetNumSer(ruta.u16string()), u"é0001000000509876543");
}

TEST(ValPrivKey, GivesEveryStatus) {
  for (const auto& caso : pruebas::Casos("crypto/llaves.txt", "; ")) {
    ASSERT_EQ(caso.size(), 5U);
    EXPECT_EQ(ValPrivKey(Dato(caso[1]), Dato(caso[2]), UTF8ToString(caso[3])), std::stoi(caso[0])) << caso[4];
  }
}

TEST(Certificados, RaiseWhenAFileHoldsNoDerCertificate) {
  for (const char* malo : {"sello.pem", "claro.key", "cortado.cer", "azar.bin", "vacio.bin"}) {
    const char* const mensaje = "No se pudo extraer la llave pública.";
    UnicodeString fecha;
    EXPECT_EQ(MensajeDe([&] { CertGetNumSer(Dato(malo)); }), mensaje) << malo;
    EXPECT_EQ(MensajeDe([&] { CertGetFechaHora(Dato(malo), false, fecha); }), mensaje) << malo;
    EXPECT_EQ(MensajeDe([&] { CertDameDatos(*LeeArchivo(Dato(malo))); }), mensaje) << malo;
    EXPECT_EQ(MensajeDe([&] { ValPrivKey(Dato(malo), Dato("des3.key"), u"12345678a"); }), mensaje) << malo;
  }
}

TEST(Certificados, LeaveTheErrorQueueOfTheCallerAlone) {
  ERR_clear_error();
  ERR_raise(ERR_LIB_USER, 77);
  for (const char* clave : {"12345678a", "mala"})
    ValPrivKey(Dato("ajeno.cer"), Dato("des3.key"), UTF8ToString(clave));
  MensajeDe([] { CertGetNumSer(Dato("sello.pem")); });
  EXPECT_EQ(ERR_GET_REASON(ERR_get_error()), 77);
  EXPECT_EQ(ERR_get_error(), 0UL);
}

}  // namespace
}  // namespace vel

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

#include "tests/Casos.h"
#include "tools/utilvel/cfdi/Comprobante.h"
#include "tools/utilvel/cfdi/Verifica.h"

namespace utilvel::cfdi {
namespace {

std::string Lee(const std::string& nombre) {
  std::ifstream archivo(std::string(DATOS_PRUEBA) + "/cfdi/" + nombre, std::ios::binary);
  return {std::istreambuf_iterator<char>(archivo), {}};
}

/// "line:column: reason", or "correcta".
std::string Razon(const std::string& bytes) {
  try {
    Verificador().Verifica(bytes);
    return "correcta";
  } catch (const Rechazo& r) {
    return std::to_string(r.linea) + ":" + std::to_string(r.columna) + ": " + r.what();
  } catch (const std::exception& e) {
    return e.what();
  }
}

TEST(Rechazos, NameThePlaceAndTheReason) {
  for (const auto& caso : pruebas::Casos("cfdi/rechazos.txt", " | ")) {
    ASSERT_EQ(caso.size(), 4U) << caso[0];
    std::string bytes = Lee(caso[0]);
    const std::string viejo = pruebas::Descifra(caso[1]);
    const std::size_t lugar = bytes.find(viejo);
    ASSERT_NE(lugar, std::string::npos) << viejo;
    bytes.replace(lugar, viejo.size(), pruebas::Descifra(caso[2]));
    EXPECT_EQ(Razon(bytes), caso[3]) << caso[1] << " -> " << caso[2];
  }
}

std::string Repite(const std::string& texto, std::size_t veces) {
  std::string todo;
  todo.reserve(texto.size() * veces);
  for (std::size_t i = 0; i < veces; ++i) todo += texto;
  return todo;
}

TEST(Rechazos, StopAtWhatNoInvoiceHas) {
  const std::string raiz = R"(<c:Comprobante xmlns:c="http://www.sat.gob.mx/cfd/4" Version="4.0")";
  std::string atributos = raiz;
  for (int i = 0; i < 100'000; ++i) atributos += " a" + std::to_string(i) + "=\"\"";
  const struct {
    std::string bytes;
    const char* razon;
  } casos[] = {
      {"", "1:1: el archivo está vacío"},
      {Repite("<a>", 34'000'000), "1:1: el archivo pasa de 64 MiB: no es una factura"},
      {Repite("<a>", 20'000'000), "1:193: tiene elementos dentro de otros a más de 64 niveles"},
      {Repite("<a>", 300'000), "1:900000: un elemento cierra con otro nombre, o no cierra"},
      {"<a>" + Repite("<a/>", 2'100'000), "1:8000000: tiene más de 2000000 elementos"},
      {atributos + "/>", "1:2: c:Comprobante tiene más de 64 atributos"},
      {"<!DOCTYPE a [<!ENTITY b \"&b;&b;\">]><a/>",
       "1:1: declara un tipo de documento, que una factura no lleva"},
      {std::string("<a b='\0'/>", 10), "1:7: hay un byte cero: no es XML en UTF-8"},
      {std::string("\xFF\xFE<\0", 4), "1:1: está en UTF-16 y no en UTF-8"},
      {"<a>\n<b c='\xC3'/></a>", "2:7: no está en UTF-8"},
      {"hola", "1:5: no tiene elementos: no es XML"},
      {"<a/><b/>", "1:6: hay otro elemento detrás de la factura"},
      {"<a/>\nbasura\n", "2:6: hay texto detrás de la factura"},
      {Repite("<", 1'000'000), "1:2: no es XML bien formado"},
      {raiz + "><!-- " + Repite("<a>", 1000), "1:3072: no es XML bien formado"},
  };
  for (const auto& caso : casos) EXPECT_EQ(Razon(caso.bytes), caso.razon) << caso.bytes.substr(0, 60);
}

}  // namespace
}  // namespace utilvel::cfdi

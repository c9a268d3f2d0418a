// Programs of the suite read and write the same settings through the system's own functions.

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <windows.h>

#include "Uutilext/config/Configuracion.h"
#include "framework/Texto.h"
#include "tests/CarpetaTemporal.h"

namespace vel {
namespace {

UnicodeString LeeElSistema(const std::wstring& archivo, const wchar_t* seccion, const wchar_t* clave) {
  wchar_t texto[256];
  const DWORD n = GetPrivateProfileStringW(seccion, clave, L"(falta)", texto, 256, archivo.c_str());
  return UnicodeString(texto, texto + n);
}

TEST(Perfil, IsOneForTheLibraryAndTheSystem) {
  const pruebas::CarpetaTemporal carpeta;
  struct Caso {
    const char* nombre;
    std::u16string_view valor;
  };
  const Caso casos[] = {
      {"ascii.ini", u"C:\\Datos"}, {"windows1252.ini", u"Año de peña, 20 €"}, {"utf16.ini", u"Łódź 東京"}};
  for (const Caso& c : casos) {
    const std::filesystem::path ruta = carpeta.Ruta() / c.nombre;
    const UnicodeString archivo = ruta.u16string();
    EscribeValor(archivo, u"Rutas", u"Nuestra", c.valor);
    EXPECT_EQ(LeeElSistema(ruta.wstring(), L"rutas", L"NUESTRA"), c.valor) << c.nombre;
    const std::wstring ancho(c.valor.begin(), c.valor.end());
    ASSERT_NE(WritePrivateProfileStringW(L"Rutas", L"Suya", ancho.c_str(), ruta.c_str()), 0) << c.nombre;
    // The system may hold a change back until the next question.
    WritePrivateProfileStringW(nullptr, nullptr, nullptr, ruta.c_str());
    EXPECT_EQ(DameValor(archivo, u"rutas", u"SUYA"), c.valor) << c.nombre;
    EXPECT_EQ(DameValor(archivo, u"Rutas", u"Nuestra"), c.valor) << c.nombre;
    EscribeValor(archivo, u"Otra", u"Clave", u"3");
    EXPECT_EQ(LeeElSistema(ruta.wstring(), L"Rutas", L"Suya"), c.valor) << c.nombre;
    EXPECT_EQ(LeeElSistema(ruta.wstring(), L"Otra", L"Clave"), u"3") << c.nombre;
  }
}

}  // namespace
}  // namespace vel

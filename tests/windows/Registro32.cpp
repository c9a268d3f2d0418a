// The suite's programs are of 32 bits; the library shows their part of the registry to programs of 64 too.

#include <gtest/gtest.h>
#include <string>
#include <windows.h>

#include "platform/Registro.h"

namespace vel {
namespace {

constexpr const wchar_t* kClave = L"SOFTWARE\\UtilVel90 prueba";

std::wstring LeeVista(const wchar_t* clave, REGSAM vista) {
  wchar_t texto[64] = L"(falta)";
  DWORD bytes = sizeof texto;
  HKEY abierta = nullptr;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, clave, 0, KEY_QUERY_VALUE | vista, &abierta) != ERROR_SUCCESS)
    return L"(sin clave)";
  RegGetValueW(abierta, nullptr, L"Año", RRF_RT_REG_SZ, nullptr, texto, &bytes);
  RegCloseKey(abierta);
  return texto;
}

TEST(Registro, IsThatOfThe32BitPrograms) {
  if (EscribeRegistro(u"SOFTWARE\\UtilVel90 prueba\\", u"Año", u"Łódź").clase == ClaseFalla::AccesoDenegado)
    GTEST_SKIP() << "only an administrator writes there";
  EXPECT_EQ(LeeVista(kClave, KEY_WOW64_32KEY), L"Łódź");
  EXPECT_EQ(LeeVista(L"SOFTWARE\\Wow6432Node\\UtilVel90 prueba", KEY_WOW64_64KEY), L"Łódź");
  EXPECT_EQ(LeeVista(kClave, KEY_WOW64_64KEY), L"(sin clave)");
  for (const char16_t* nombre : {u"software\\utilvel90 PRUEBA", u"SOFTWARE\\WOW6432Node\\UtilVel90 prueba"}) {
    const ValorRegistro leido = LeeRegistro(nombre, u"AÑO");
    EXPECT_TRUE(leido.claveExiste);
    EXPECT_EQ(leido.texto, u"Łódź");
  }
  HKEY software = nullptr;
  ASSERT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE", 0, KEY_ALL_ACCESS | KEY_WOW64_32KEY, &software),
            ERROR_SUCCESS);
  EXPECT_EQ(RegDeleteKeyW(software, L"UtilVel90 prueba"), ERROR_SUCCESS);
  RegCloseKey(software);
  EXPECT_FALSE(LeeRegistro(u"SOFTWARE\\UtilVel90 prueba", u"Año").claveExiste);
}

}  // namespace
}  // namespace vel

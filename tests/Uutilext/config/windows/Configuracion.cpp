// Settings and registry as the system's own functions see them.
#include "Uutilext/config/Configuracion.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "Uutilext/config/Rutas.h"
#include "platform/Registro.h"
#include "tests/CarpetaTemporal.h"

namespace vel {
namespace {

std::wstring Ancho(std::u16string_view texto) { return {texto.begin(), texto.end()}; }

UnicodeString DePerfil(const UnicodeString& archivo, const wchar_t* clave) {
  wchar_t texto[200];
  const DWORD n = GetPrivateProfileStringW(L"S", clave, L"", texto, 200, Ancho(archivo).c_str());
  return {texto, texto + n};
}

TEST(Configuracion, AgreesWithTheSystemsProfileFunctions) {
  const pruebas::CarpetaTemporal c;
  const UnicodeString archivo = c.Archivo("a.ini");
  // In Windows-1252, and with a letter that makes it UTF-16.
  for (const UnicodeString valor : {u"Peña y Ñandú", u"  entre blancos", u"x;y", u"=1", u"Ω"}) {
    EscribeValor(archivo, u"S", u"nuestro", valor);
    EXPECT_EQ(DePerfil(archivo, L"Nuestro"), TrimView(valor)) << UTF8Encode(valor);
    ASSERT_NE(WritePrivateProfileStringW(L"s", L"suyo", Ancho(valor).c_str(), Ancho(archivo).c_str()), 0);
    EXPECT_EQ(DameValor(archivo, u"S", u"suyo"), TrimView(valor)) << UTF8Encode(valor);
    EXPECT_EQ(DameValor(archivo, u"S", u"nuestro"), TrimView(valor)) << "still there";
  }
  c.Escribe("b.ini", "[S]\r\nA=\"uno\"\r\nB='dos'\r\nC=\"\"tres\"\"\r\nD=\"a\"b\r\nA=otra\r\n ; E=5\r\n");
  for (const wchar_t* clave : {L"A", L"B", L"C", L"D", L"E"}) {
    const UnicodeString nuestra(clave, clave + 1);
    EXPECT_EQ(DameValorSinComillas(c.Archivo("b.ini"), u"S", nuestra), DePerfil(c.Archivo("b.ini"), clave));
  }
}

// As a 64-bit program sees the whole registry; the one place where a test writes to the machine's own.
TEST(Registro, Is32BitProgramsInA64BitProgramToo) {
  constexpr const wchar_t* kDel32 = L"SOFTWARE\\WOW6432Node\\UtilVel90 pruebas";
  if (EscribeRegistro(u"Software\\UtilVel90 pruebas\\Una", u"a", u"Peña").clase == ClaseFalla::AccesoDenegado)
    GTEST_SKIP() << "takes an administrator";
  HKEY clave = nullptr;
  EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, kDel32, 0, KEY_READ | KEY_WOW64_64KEY, &clave), ERROR_SUCCESS);
  wchar_t texto[20];
  DWORD bytes = sizeof texto;
  EXPECT_EQ(RegGetValueW(clave, L"una", L"A", RRF_RT_REG_SZ, nullptr, texto, &bytes), ERROR_SUCCESS);
  EXPECT_EQ(std::wstring(texto), L"Peña");
  RegCloseKey(clave);
  EXPECT_EQ(LeeRegistro(u"SOFTWARE\\utilvel90 pruebas\\una\\", u"A").texto, u"Peña");
  EXPECT_EQ(RegDeleteTreeW(HKEY_LOCAL_MACHINE, kDel32), ERROR_SUCCESS);
  EXPECT_NE(RegDeleteTreeW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\UtilVel90 pruebas"), ERROR_SUCCESS)
      << "written for 64 bits";
}

TEST(Registro, ReadsTextsOfEveryLengthAndNothingElse) {
  const pruebas::CarpetaTemporal c;
  const UnicodeString larga(5000, u'ñ');
  EXPECT_FALSE(EscribeRegistro(u"Software\\Tavex", u"larga", larga).Hubo());
  EXPECT_EQ(LeeRegistro(u"Software\\Tavex", u"LARGA").texto, larga);
  HKEY clave = nullptr;
  ASSERT_EQ(
      RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"Software\\Tavex", 0, KEY_ALL_ACCESS | KEY_WOW64_32KEY, &clave),
      ERROR_SUCCESS);
  const DWORD numero = 1;
  RegSetValueExW(clave, L"n", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&numero), sizeof numero);
  // Without the NUL at its end, and with a variable that stays as it is.
  RegSetValueExW(clave, L"v", 0, REG_EXPAND_SZ, reinterpret_cast<const BYTE*>(L"%TEMP%"), 12);
  RegCloseKey(clave);
  EXPECT_FALSE(LeeRegistro(u"Software\\Tavex", u"n").texto.has_value()) << "no text";
  EXPECT_EQ(LeeRegistro(u"Software\\Tavex", u"v").texto, u"%TEMP%");
}

}  // namespace
}  // namespace vel

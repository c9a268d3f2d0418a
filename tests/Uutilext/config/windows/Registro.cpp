// Values of the registry that other programs wrote.
#include "platform/Registro.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "tests/CarpetaTemporal.h"

namespace vel {
namespace {

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

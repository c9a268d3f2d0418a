// Prints every kind of digest, cipher apart, of a few texts: what OPENSSL_CONF names must not change them.

#include <cstdio>
#include <string>

#include "Uutilext/crypto/Resumenes.h"
#include "facil/Resumenes.h"
#include "framework/Texto.h"

int main() {
  for (const std::string& texto : {std::string(), std::string("abc"), std::string(100'000, 'x')}) {
    std::printf("%s\n%s\n%s\n%s\n", vel::Hash256(texto.c_str()).c_str(), vel::EncriptaSha1(texto).c_str(),
                vel::UTF8Encode(vel::EncriptaMD5(vel::UTF8ToString(texto))).c_str(),
                vel::facil::HmacSha256("llave", texto).Hex().c_str());
  }
}

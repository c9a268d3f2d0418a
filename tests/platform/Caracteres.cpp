#include "platform/Caracteres.h"

#include <array>
#include <cstdint>
#include <gtest/gtest.h>
#include <numeric>
#include <string>

#include "platform/PaginaCodigos.h"
#include "tests/Casos.h"

namespace vel {
namespace {

TEST(Caracteres, CapitalsFollowSpanishAndKeepTheLength) {
  EXPECT_EQ(Mayusculas(u"peña Ávila öç ÿ ı ß ŉ ǆ µ ς \U00010428 i"),
            u"PEÑA ÁVILA ÖÇ Ÿ I ß ŉ Ǆ \u039C Σ \U00010428 I");
  EXPECT_EQ(Minusculas(u"PEÑA ÁVILA I Σ İ ẞ ǅ"), u"peña ávila i σ i ß ǆ");
  const UnicodeString suelto{0xD800, u'a'};
  EXPECT_EQ(Mayusculas(suelto), (UnicodeString{0xD800, u'A'}));
}

TEST(Caracteres, AnswerAsTheReferenceForEveryCodeUnit) {
  const auto grupos = pruebas::Casos("textos/caracteres.txt", "|");
  ASSERT_EQ(grupos.size(), 16U);
  for (const auto& grupo : grupos) {
    const auto primero = static_cast<std::size_t>(std::stoi(grupo.at(0), nullptr, 16));
    UnicodeString texto(0x1000, u'\0');
    std::iota(texto.begin(), texto.end(), static_cast<char16_t>(primero));
    const UnicodeString mayusculas = Mayusculas(texto);
    const UnicodeString minusculas = Minusculas(texto);
    std::array<int, 4> cuantos{};
    std::uint64_t suma = 0xCBF29CE484222325;
    for (std::size_t i = 0; i < texto.size(); ++i) {
      const int digito = EsDigito(texto[i]) ? 1 : 0;
      const int alfanumerico = EsAlfanumerico(texto[i]) ? 1 : 0;
      cuantos[0] += mayusculas[i] != texto[i] ? 1 : 0;
      cuantos[1] += minusculas[i] != texto[i] ? 1 : 0;
      cuantos[2] += digito;
      cuantos[3] += alfanumerico;
      for (const int byte : {mayusculas[i] & 0xFF, mayusculas[i] >> 8, minusculas[i] & 0xFF,
                             minusculas[i] >> 8, digito + 2 * alfanumerico}) {
        suma = (suma ^ static_cast<std::uint64_t>(byte)) * 0x100000001B3;
      }
    }
    for (std::size_t i = 0; i < cuantos.size(); ++i) {
      EXPECT_EQ(std::to_string(cuantos[i]), grupo.at(i + 1)) << "from " << grupo[0] << ", column " << i + 1;
    }
    EXPECT_EQ(suma, std::stoull(grupo.at(5), nullptr, 16)) << "from " << grupo[0];
  }
}

TEST(PaginaCodigos, EveryByteSurvives) {
  AnsiString bytes;
  for (int i = 0; i < 256; ++i) bytes.push_back(static_cast<char>(static_cast<unsigned char>(i)));
  const UnicodeString ancho = DeCp1252(bytes);
  EXPECT_EQ(ancho.substr(0x80, 32), u"€\x81‚ƒ„…†‡ˆ‰Š‹Œ\x8DŽ\x8F\x90‘’“”•–—˜™š›œ\x9DžŸ");
  EXPECT_EQ(ancho[0xF1], u'ñ');
  EXPECT_EQ(ACp1252(ancho), bytes);
  EXPECT_TRUE(CabeEnCp1252(ancho));
  EXPECT_FALSE(CabeEnCp1252(u"año Ω"));
  EXPECT_EQ(ACp1252(u"Ω€"), "?\x80");
}

}  // namespace
}  // namespace vel

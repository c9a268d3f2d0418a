#include "platform/PrecisionExtendida.h"

#include <gtest/gtest.h>

#if defined(__i386__) || defined(__x86_64__)

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

#include "Uutilext/documents/Redondeo.h"

namespace vel {
namespace {

constexpr std::uint16_t kDebida = 0x037F;
constexpr std::uint16_t kInexacto = 0x20;

void Pon(std::uint16_t palabra) { asm volatile("fldcw %0" : : "m"(palabra)); }
void LimpiaBanderas() { asm volatile("fnclex"); }

// Control word and, above it, the flags.
std::uint32_t Unidad() {
  std::uint16_t palabra = 0;
  std::uint16_t estado = 0;
  asm volatile("fnstcw %0" : "=m"(palabra));
  asm volatile("fnstsw %0" : "=m"(estado));
  return palabra | (estado & 0x7FU) << 16;
}

void LevantaInexacto() {
  LimpiaBanderas();
  asm volatile("fld1; fldpi; fdivrp; fstp %%st(0)" : :);
}

std::uint64_t Bits(double valor) { return std::bit_cast<std::uint64_t>(valor); }

TEST(PrecisionExtendida, RoundsTheSameWhateverTheThreadsControlWord) {
  std::mt19937_64 azar(20240515);
  int difieren = 0;
  int cambiados = 0;
  for (int i = 0; i < 300'000; ++i) {
    // Amounts, and halves with their neighbours, where a bit more or less decides.
    double v = static_cast<double>(azar() % 1'000'000'000) / 100;
    if (i % 2 == 0) v = (static_cast<double>(azar() % 1'000'000'000) + 0.5) / 1000;
    if (i % 4 == 0) v = std::nextafter(v, i % 8 == 0 ? 0 : 1e300);
    if (azar() % 4 == 0) v = -v;
    const int decimales = i % 9;
    Pon(kDebida);
    const double esperado = Redondea(v, decimales - 1);
    const double porTexto = g_redoTo(v, decimales);
    Pon(0x027F);
    // Of what comes before, 32-bit code turns doubles into whole numbers in this unit, which leaves flags.
    LimpiaBanderas();
    const std::uint32_t antes = Unidad();
    difieren += Bits(Redondea(v, decimales - 1)) != Bits(esperado) ? 1 : 0;
    cambiados += Unidad() != antes ? 1 : 0;
    difieren += Bits(g_redoTo(v, decimales)) != Bits(porTexto) ? 1 : 0;
  }
  Pon(kDebida);
  EXPECT_EQ(difieren, 0);
  EXPECT_EQ(cambiados, 0);
}

TEST(PrecisionExtendida, LeavesWordAndFlagsAsTheyWereAndRaisesNothing) {
  const double raros[] = {2.675,
                          0,
                          1e300,
                          1e-310,
                          std::numeric_limits<double>::infinity(),
                          std::numeric_limits<double>::quiet_NaN()};
  // Less precision; other roundings; all exceptions raised, and those that some compilers' programs raise.
  constexpr std::uint16_t kPalabras[] = {0x007F, 0x027F, 0x077F, 0x0B7F, 0x0F7F, 0x0340, 0x1332, 0x0272};
  for (const std::uint16_t palabra : kPalabras) {
    for (const bool conBandera : {false, true}) {
      // What stands raised already is not raised again by a word that masks it only.
      if (conBandera && (palabra & kInexacto) == 0) continue;
      for (const double valor : raros) {
        Pon(kDebida);
        const double esperado = Redondea(valor, 2);
        LimpiaBanderas();
        if (conBandera) LevantaInexacto();
        Pon(palabra);
        const std::uint32_t antes = Unidad();
        const double obtenido = Redondea(valor, 2);
        const std::uint32_t despues = Unidad();
        LimpiaBanderas();
        Pon(kDebida);
        EXPECT_EQ(antes >> 16, conBandera ? kInexacto : 0U);
        EXPECT_EQ(despues, antes) << std::hex << palabra << ' ' << valor;
        EXPECT_EQ(Bits(obtenido), Bits(esperado)) << std::hex << palabra << ' ' << valor;
      }
    }
  }
}

}  // namespace
}  // namespace vel

#endif

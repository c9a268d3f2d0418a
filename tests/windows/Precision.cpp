// Threads of a host begin with 53 bits of precision in the extended registers, where rounding needs 64; some
// hosts unmask exceptions too.

#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <vector>
#include <windows.h>

#include "Uutilext/documents/Redondeo.h"

namespace vel {
namespace {

constexpr std::uint16_t kExtendida = 0x037F;
constexpr std::uint16_t kDoble = 0x027F;
constexpr std::uint16_t kSinMascaras = 0x0240;

std::uint16_t Control() {
  std::uint16_t palabra = 0;
  __asm__ volatile("fnstcw %0" : "=m"(palabra));
  return palabra;
}
void PonControl(std::uint16_t palabra) { __asm__ volatile("fldcw %0" : : "m"(palabra)); }
std::uint16_t Estado() {
  std::uint16_t palabra = 0;
  __asm__ volatile("fnstsw %0" : "=m"(palabra));
  return palabra;
}

struct Corrida {
  std::uint16_t control = 0;
  std::uint16_t alEmpezar = 0;
  std::vector<std::uint64_t> bits = {};
  int palabrasCambiadas = 0;
  int banderasPuestas = 0;
};

// 600,000 roundings: amounts as a program's own arithmetic leaves them, a little off their decimals.
void Redondea600000(Corrida& corrida) {
  corrida.alEmpezar = Control();
  PonControl(corrida.control);
  __asm__ volatile("fnclex");
  std::mt19937_64 azar(90);
  corrida.bits.reserve(600'000);
  for (int i = 0; i < 300'000; ++i) {
    const int decimales = static_cast<int>(azar() % 7);
    const double importe = static_cast<double>(azar() % 1'000'000'000'000) / 100'000 * 1.16;
    for (const double redondeado : {Redondea(importe, decimales), g_redoTo(importe, decimales)}) {
      std::uint64_t bits = 0;
      std::memcpy(&bits, &redondeado, sizeof bits);
      corrida.bits.push_back(bits);
      if (Control() != corrida.control) ++corrida.palabrasCambiadas;
      if ((Estado() & 0x3F) != 0) ++corrida.banderasPuestas;
    }
  }
  PonControl(corrida.alEmpezar);
}

DWORD WINAPI EnHilo(void* corrida) {
  Redondea600000(*static_cast<Corrida*>(corrida));
  return 0;
}

TEST(Precision, IsTheSameInThreadsOfTheHost) {
  Corrida extendida{.control = kExtendida};
  Redondea600000(extendida);
  EXPECT_EQ(extendida.palabrasCambiadas, 0);
  for (const std::uint16_t control : {kDoble, kSinMascaras}) {
    Corrida enHilo{.control = control};
    const HANDLE hilo = CreateThread(nullptr, 0, EnHilo, &enHilo, 0, nullptr);
    ASSERT_NE(hilo, nullptr);
    WaitForSingleObject(hilo, INFINITE);
    CloseHandle(hilo);
    EXPECT_EQ(enHilo.alEmpezar, kDoble) << "what the system gives a thread";
    ASSERT_EQ(enHilo.bits.size(), 600'000U);
    int distintos = 0;
    for (std::size_t i = 0; i < enHilo.bits.size(); ++i)
      distintos += enHilo.bits[i] != extendida.bits[i] ? 1 : 0;
    EXPECT_EQ(distintos, 0);
    EXPECT_EQ(enHilo.palabrasCambiadas, 0) << "the control word is the caller's again";
    EXPECT_EQ(enHilo.banderasPuestas, 0) << "and no exception stays behind";
  }
}

}  // namespace
}  // namespace vel

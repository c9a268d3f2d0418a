#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>
#include <windows.h>

#include "Uutilext/crypto/Resumenes.h"
#include "framework/Texto.h"

namespace vel {
namespace {

bool Resume() {
  static const char llave[32] = "llave";
  const unsigned char* const hmac = EncriptaHmacSha256(u"abc", llave, false);
  return Hash256("abc") == "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad" &&
         EncriptaSha1("abc") == "a9993e364706816aba3e25717850c26c9cd0d89d" &&
         EncriptaMD5(u"abc") == u"kAFQmDzST7DWlj99KOF/cg==" &&
         std::string(reinterpret_cast<const char*>(hmac), 32) == HmacSha256DeBytes("llave", "abc");
}

DWORD WINAPI EnHilo(void*) { return Resume() ? 1 : 0; }

// What a thread keeps must go with it, or stay whole until it has ended: half of the threads are the
// runtime's, half the host's.
TEST(Hilos, EndWithoutFaultAfterAllDigests) {
  constexpr int kVueltas = 5;
  constexpr int kTandas = 20;
  constexpr int kDeCada = 25;
  int bien = 0;
  for (int v = 0; v < kVueltas * kTandas; ++v) {
    bool resultados[kDeCada] = {};
    std::vector<std::thread> hilos;
    std::vector<HANDLE> delSistema;
    for (int i = 0; i < kDeCada; ++i) {
      hilos.emplace_back([&r = resultados[i]] { r = Resume(); });
      delSistema.push_back(CreateThread(nullptr, 0, EnHilo, nullptr, 0, nullptr));
      ASSERT_NE(delSistema.back(), nullptr);
    }
    for (int i = 0; i < kDeCada; ++i) {
      hilos[static_cast<std::size_t>(i)].join();
      const HANDLE hilo = delSistema[static_cast<std::size_t>(i)];
      WaitForSingleObject(hilo, INFINITE);
      DWORD codigo = 0;
      GetExitCodeThread(hilo, &codigo);
      CloseHandle(hilo);
      bien += (resultados[i] ? 1 : 0) + static_cast<int>(codigo);
    }
  }
  EXPECT_EQ(bien, kVueltas * kTandas * kDeCada * 2);
}

}  // namespace
}  // namespace vel

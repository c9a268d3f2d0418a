// A program without the compiler's runtime, as hosts made by other compilers are to this library: its own
// entry point, the system's functions alone, the library loaded by name. Its code is 0 when 600,000 roundings
// are the same under the control word that the system gave it and under 64 bits of precision, in the thread
// that it began with and in one that it makes.

#include <cstdint>
#include <windows.h>

namespace {

using Redondeo = double (*)(double, int);

std::uint16_t Control() {
  std::uint16_t palabra = 0;
  __asm__ volatile("fnstcw %0" : "=m"(palabra));
  return palabra;
}
void PonControl(std::uint16_t palabra) { __asm__ volatile("fldcw %0" : : "m"(palabra)); }

void Escribe(const char* texto) {
  DWORD largo = 0;
  while (texto[largo] != '\0') ++largo;
  DWORD escritos = 0;
  WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), texto, largo, &escritos, nullptr);
}

void Escribe(const char* rotulo, unsigned valor, unsigned base) {
  char cifras[16];
  char* p = cifras + sizeof cifras - 1;
  *p = '\0';
  do {
    *--p = "0123456789abcdef"[valor % base];
    valor /= base;
  } while (valor != 0);
  Escribe(rotulo);
  Escribe(p);
  Escribe("\n");
}

[[noreturn]] void Termina(const char* falta) {
  Escribe(falta);
  ExitProcess(1);
}

Redondeo funciones[2];

// Rounds amounts as a program's own arithmetic leaves them; whether the thread began as the system begins
// them and rounded the same.
DWORD WINAPI Redondea(void* hilo) {
  // What every program with a runtime changes before its first line.
  const std::uint16_t recibida = Control();
  std::uint64_t azar = 90;
  unsigned distintos = 0;
  unsigned cambiadas = 0;
  for (int i = 0; i < 300'000; ++i) {
    azar = azar * 6364136223846793005U + 1442695040888963407U;
    const int decimales = static_cast<int>((azar >> 33) % 7);
    const double importe =
        static_cast<double>(static_cast<std::int64_t>((azar >> 20) % 1'000'000'000'000)) / 100'000 * 1.16;
    for (const Redondeo f : funciones) {
      PonControl(0x027F);
      const double doble = f(importe, decimales);
      if (Control() != 0x027F) ++cambiadas;
      PonControl(0x037F);
      if (f(importe, decimales) != doble) ++distintos;
    }
  }
  PonControl(recibida);
  Escribe(static_cast<const char*>(hilo));
  Escribe("palabra de control al empezar: ", recibida, 16);
  Escribe("redondeos: ", 600'000, 10);
  Escribe("distintos: ", distintos, 10);
  Escribe("palabras cambiadas: ", cambiadas, 10);
  return recibida == 0x027F && distintos == 0 && cambiadas == 0 ? 1 : 0;
}

}  // namespace

extern "C" [[noreturn]] void entrada() {
  const HMODULE biblioteca = LoadLibraryW(L"UtilVel90.dll");
  if (biblioteca == nullptr) Termina("no se puede cargar UtilVel90.dll\n");
  const char* const nombres[] = {"_ZN3vel8RedondeaEdi", "_ZN3vel8g_redoToEdi"};
  for (int i = 0; i < 2; ++i) {
    funciones[i] =
        reinterpret_cast<Redondeo>(reinterpret_cast<void (*)()>(GetProcAddress(biblioteca, nombres[i])));
    if (funciones[i] == nullptr) Termina("la biblioteca no exporta Redondea o g_redoTo\n");
  }
  char primero[] = "primer hilo\n";
  char otro[] = "otro hilo\n";
  DWORD bien = 0;
  const HANDLE hilo = CreateThread(nullptr, 0, Redondea, otro, 0, nullptr);
  WaitForSingleObject(hilo, INFINITE);
  GetExitCodeThread(hilo, &bien);
  ExitProcess(Redondea(primero) == 1 && bien == 1 ? 0 : 1);
}

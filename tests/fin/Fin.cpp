// Calls every exported free function when a thread or the program ends: fin hilo | programa | primera.
// Digests named behind that (+SHA256 -MD4) are those that the program itself finds in libcrypto beforehand,
// or not. A wrong answer ends the program with 1.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <openssl/evp.h>
#include <string>
#include <string_view>
#include <thread>

#include "tests/data/fin/llamadas.inc"

namespace vel {
namespace {

void LlamaTodas() {
  bool bien = true;
  for (const Llamada& llamada : kLlamadas) {
    std::string falta = "wrong answer";
    try {
      if (llamada.llama()) continue;
    } catch (const std::exception& e) {
      falta = e.what();
    }
    std::fprintf(stderr, "%s: %s\n", llamada.nombre, falta.c_str());
    bien = false;
  }
  if (!bien) std::_Exit(1);
}

// Calls them all once more from its destructor. It is made before the library's first call, so it ends after
// whatever the library makes then.
struct AlFinal {
  bool llama = false;
  ~AlFinal() {
    if (llama) LlamaTodas();
  }
};
AlFinal programa;
thread_local AlFinal hilo;

}  // namespace
}  // namespace vel

int main(int argc, char** argv) {
  const std::string_view modo = argv[1];
  vel::carpeta.emplace().Instala();
  std::filesystem::copy_file(EMPRESAS, vel::carpeta->Motor() / "Empresas.xml");
  for (int i = 2; i < argc; ++i) {
    unsigned char resumen[EVP_MAX_MD_SIZE];
    const bool halla = EVP_Q_digest(nullptr, argv[i] + 1, nullptr, "", 0, resumen, nullptr) == 1;
    if (halla != (argv[i][0] == '+')) return 1;
  }
  vel::programa.llama = modo != "hilo";
  if (modo == "hilo") {
    std::thread([] {
      vel::hilo.llama = true;
      vel::LlamaTodas();
    }).join();
  } else if (modo != "primera") {
    vel::LlamaTodas();
  }
  return 0;
}

// Calls every exported free function when a thread or the program ends: fin hilo | programa | primera.
// Digests named behind that (+SHA256 -MD4) are those that the program itself finds in libcrypto beforehand,
// or not. A wrong answer ends the program with 1.
#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iterator>
#include <memory>
#include <openssl/evp.h>
#include <optional>
#include <string_view>
#include <thread>

#include "Fechas/Fechas.h"
#include "Paramsql/Paramsql.h"
#include "Uutilext/Uutilext.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "framework/TRemotable.h"
#include "framework/TextoIni.h"
#include "platform/Archivos.h"
#include "platform/Caracteres.h"
#include "platform/Carpetas.h"
#include "platform/Modulos.h"
#include "platform/PaginaCodigos.h"
#include "platform/RecursoVersion.h"
#include "platform/Registro.h"
#include "platform/Rutas.h"
#include "platform/TextoArchivo.h"
#include "platform/ZonasHorarias.h"
#include "tests/CarpetaTemporal.h"
#include "tests/Uutilext/crypto/Apoyo.h"
#include "version/Version.h"

namespace vel {
namespace {

std::optional<pruebas::CarpetaTemporal>& Carpeta();

UnicodeString Propio(const std::string& nombre) { return Carpeta()->Archivo(nombre); }
UnicodeString Dato(const std::string& nombre) { return UTF8ToString(pruebas::RutaDato(nombre)); }
const unsigned char* Bytes(const char* texto) { return reinterpret_cast<const unsigned char*>(texto); }

struct Llamada {
  const char* nombre;
  bool (*llama)();
};
// clang-format off
constexpr Llamada kLlamadas[] = {
#include "tests/data/fin/llamadas.inc"
};
// clang-format on

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
  std::optional<pruebas::CarpetaTemporal> carpeta;
  bool llama = false;
  ~AlFinal() {
    if (llama) LlamaTodas();
  }
};
AlFinal programa;
thread_local AlFinal hilo;

std::optional<pruebas::CarpetaTemporal>& Carpeta() { return programa.carpeta; }

}  // namespace
}  // namespace vel

int main(int argc, char** argv) {
  const std::string_view modo = argv[1];
  vel::programa.carpeta.emplace();
  vel::programa.carpeta->Instala();
  std::ifstream catalogo(EMPRESAS, std::ios::binary);
  vel::programa.carpeta->Escribe("C/Sistemas Tavex/VEL9.00/Empresas.xml",
                                 {std::istreambuf_iterator(catalogo), {}});
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

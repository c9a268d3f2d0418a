// Reads the seal that genera_sello.sh made in the folder given: what its certificate says, and whether key,
// password and certificate belong together.

#include <chrono>
#include <cstdio>
#include <string>

#include "examples/Salida.h"
#include "facil/facil.h"

namespace {

namespace facil = vel::facil;

const char* Texto(facil::EstadoLlave estado) {
  switch (estado) {
    case facil::EstadoLlave::Corresponde:
      return "abre la llave, que es la del certificado";
    case facil::EstadoLlave::NoAbre:
      return "no abre la llave";
    case facil::EstadoLlave::DeOtroCertificado:
      return "abre la llave, que es de otro certificado";
    case facil::EstadoLlave::SinCertificado:
      return "abre la llave; no se puede leer el certificado";
  }
  return "";
}

std::string Local(std::chrono::sys_seconds momento) {
  return vel::UTF8Encode(vel::DateTimeToStr(facil::DeUniversal(momento, "America/Mexico_City")));
}

}  // namespace

int main(int argc, char** argv) {
  return ejemplo::Principal(argc, argv, [](const std::string& carpeta) {
    const std::string archivo = carpeta + "/sello.cer";
    const facil::Certificado certificado = facil::LeeCertificado(archivo);
    std::printf("Certificado número %s\n", vel::UTF8Encode(certificado.numero).c_str());
    std::printf("de %s, RFC %s\n", vel::UTF8Encode(certificado.nombre).c_str(),
                vel::UTF8Encode(certificado.rfc).c_str());
    const auto ahora = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    std::printf("Válido desde %s hasta %s, hora de la Ciudad de México: %s\n",
                Local(certificado.inicio).c_str(), Local(certificado.fin).c_str(),
                certificado.VigenteEn(ahora) ? "vigente" : "no vigente");
    for (const char16_t* contrasena : {u"Sello de año 1", u"Sello de ano 1"}) {
      std::printf("Contraseña \"%s\": %s\n", vel::UTF8Encode(contrasena).c_str(),
                  Texto(facil::RevisaLlave(archivo, carpeta + "/sello.key", contrasena)));
    }
  });
}

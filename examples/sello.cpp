// Reads the seal that genera_sello.sh made in the folder given: its number, its dates, and whether key,
// password and certificate belong together.

#include <cstdio>
#include <ctime>
#include <string>

#include "Uutilext/crypto/Certificados.h"
#include "examples/Salida.h"
#include "framework/Excepciones.h"

namespace {

// A moment of a certificate as YYYYMMDDhhmmssZ: what has a two-digit year lies in 1950 to 2049.
std::string Completa(const vel::UnicodeString& momento) {
  std::string texto = vel::UTF8Encode(momento);
  if (texto.size() == 13) texto.insert(0, texto[0] < '5' ? "20" : "19");
  return texto;
}

std::string Legible(const std::string& m) {
  return m.substr(6, 2) + "/" + m.substr(4, 2) + "/" + m.substr(0, 4) + " " + m.substr(8, 2) + ":" +
         m.substr(10, 2) + ":" + m.substr(12, 2) + " UTC";
}

std::string Fecha(const vel::UnicodeString& certificado, bool fin) {
  vel::UnicodeString momento;
  if (!vel::CertGetFechaHora(certificado, fin, momento)) throw vel::Exception(u"No hay certificado.");
  return Completa(momento);
}

std::string Ahora() {
  const std::time_t ahora = std::time(nullptr);
  char texto[16];
  std::strftime(texto, sizeof texto, "%Y%m%d%H%M%SZ", std::gmtime(&ahora));
  return texto;
}

void Valida(const vel::UnicodeString& certificado, const vel::UnicodeString& llave,
            const char16_t* contrasena) {
  const char* const resultados[] = {"abre la llave, que es la del certificado", "no abre la llave",
                                    "abre la llave, que es de otro certificado",
                                    "abre la llave; no se puede leer el certificado"};
  std::printf("Contraseña \"%s\": %s\n", vel::UTF8Encode(contrasena).c_str(),
              resultados[vel::ValPrivKey(certificado, llave, contrasena)]);
}

}  // namespace

int main(int argc, char** argv) {
  return ejemplo::Principal(argc, argv, [](const std::string& carpeta) {
    const vel::UnicodeString certificado = vel::UTF8ToString(carpeta + "/sello.cer");
    const vel::UnicodeString llave = vel::UTF8ToString(carpeta + "/sello.key");
    const std::string inicio = Fecha(certificado, false);
    const std::string fin = Fecha(certificado, true);
    const std::string ahora = Ahora();
    std::printf("Certificado número %s\n", vel::UTF8Encode(vel::CertGetNumSer(certificado)).c_str());
    std::printf("Válido desde %s hasta %s: %s\n", Legible(inicio).c_str(), Legible(fin).c_str(),
                inicio <= ahora && ahora <= fin ? "vigente" : "no vigente");
    Valida(certificado, llave, u"Sello de año 1");
    Valida(certificado, llave, u"Sello de ano 1");
  });
}

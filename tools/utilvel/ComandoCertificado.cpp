// utilvel certificado: number and validity of a seal's certificate, and whether a key belongs to it.

#include <ctime>
#include <memory>
#include <string>
#include <utility>

#include "Uutilext/crypto/Certificados.h"
#include "framework/Excepciones.h"
#include "tools/utilvel/Argumentos.h"
#include "tools/utilvel/Comandos.h"
#include "tools/utilvel/Entrada.h"
#include "tools/utilvel/Errores.h"
#include "tools/utilvel/Filas.h"
#include "tools/utilvel/Programa.h"
#include "tools/utilvel/Sistema.h"

namespace utilvel {
namespace {

struct Opciones {
  std::string certificado;
  std::string llave;
  OpcionesFilas filas;
};

// A text that is wiped when it goes out of sight.
template <typename TextoSecreto>
struct Secreto {
  TextoSecreto texto;
  explicit Secreto(TextoSecreto t) : texto(std::move(t)) {}
  Secreto(const Secreto&) = delete;
  Secreto& operator=(const Secreto&) = delete;
  ~Secreto() {
    volatile auto* p = texto.data();
    for (std::size_t i = 0; i < texto.size(); ++i) p[i] = 0;
  }
};

// The moment as "AAAA-MM-DD hh:mm:ss", which sorts as it runs. A certificate writes years of two digits for
// 1950 to 2049 (RFC 5280).
std::string Momento(const vel::UnicodeString& certificado, bool fin) {
  vel::UnicodeString escrito;
  if (!vel::CertGetFechaHora(certificado, fin, escrito)) {
    throw Falla(Codigo::Archivo, "No se puede leer el certificado " + vel::UTF8Encode(certificado));
  }
  std::string m = vel::UTF8Encode(escrito);
  if (m.size() == 13) m.insert(0, m[0] < '5' ? "20" : "19");
  if (m.size() != 15 || m.find_first_not_of("0123456789") != 14)
    throw Falla(Codigo::Datos, "El certificado tiene una fecha que no se entiende");
  return m.substr(0, 4) + "-" + m.substr(4, 2) + "-" + m.substr(6, 2) + " " + m.substr(8, 2) + ":" +
         m.substr(10, 2) + ":" + m.substr(12, 2);
}

// The library says what it missed in the file, not which file it was.
void ExigeCertificado(const vel::UnicodeString& ruta, const std::string& nombre) {
  try {
    static_cast<void>(vel::CertGetNumSer(ruta));
  } catch (const vel::Exception&) {
    throw Falla(Codigo::Datos, "No es un certificado: " + (nombre == "-" ? "la entrada estándar" : nombre));
  }
}

std::string AhoraUniversal() {
  const std::time_t ahora = std::time(nullptr);
  char texto[20];
  std::strftime(texto, sizeof texto, "%Y-%m-%d %H:%M:%S", std::gmtime(&ahora));
  return texto;
}

std::string DiceLlave(int resultado, const Opciones& o) {
  switch (resultado) {
    case 0:
      return "abre y es la del certificado";
    case 1:
      return "no abre con esta contraseña";
    case 2:
      return "abre, pero es de otro certificado";
    default:
      throw Falla(Codigo::Archivo, "No se puede leer el certificado " + o.certificado);
  }
}

Codigo Corre(const Opciones& o) {
  if (o.certificado == "-" && !o.llave.empty()) {
    throw Falla(Codigo::Uso,
                "Con --llave la entrada estándar trae la contraseña; el certificado va en un archivo");
  }
  const ArchivoParaLeer certificado(o.certificado);
  ExigeCertificado(certificado.Ruta(), o.certificado);
  const std::string desde = Momento(certificado.Ruta(), false);
  const std::string hasta = Momento(certificado.Ruta(), true);
  const std::string ahora = AhoraUniversal();
  bool sirve = desde <= ahora && ahora <= hasta;
  const std::string vigente = sirve ? "sí" : "no";
  Celda llave;
  if (!o.llave.empty()) {
    const ArchivoParaLeer archivoLlave(o.llave);
    const Secreto<std::string> tecleada(LeeContrasena("Contraseña de la llave: "));
    const Secreto<vel::UnicodeString> contrasena(vel::UTF8ToString(tecleada.texto));
    const int resultado = vel::ValPrivKey(certificado.Ruta(), archivoLlave.Ruta(), contrasena.texto);
    llave = DiceLlave(resultado, o);
    sirve = sirve && resultado == 0;
  }
  Filas filas(o.filas,
              {{"numero"}, {"desde_utc"}, {"hasta_utc"}, {"vigente", TipoColumna::Logico}, {"llave"}});
  filas.Agrega({vel::UTF8Encode(vel::CertGetNumSer(certificado.Ruta())), desde, hasta, vigente, llave});
  filas.Termina();
  return sirve ? Codigo::Bien : Codigo::Negativo;
}

}  // namespace

void AgregaCertificado(Programa& programa) {
  const auto o = std::make_shared<Opciones>();
  CLI::App& comando = programa.Agrega(
      {.nombre = "certificado",
       .resumen = "Número y vigencia de un certificado de sello, y si una llave es la suya",
       .detalle =
           "La contraseña se pide sin mostrarla o se lee del primer renglón de la entrada estándar; nunca "
           "va en la orden, donde otros la verían. El código de salida es 1 si el certificado no está "
           "vigente o la llave no abre o es de otro.",
       .ejemplos = {{"utilvel certificado sello.cer", "Número y vigencia."},
                    {"utilvel certificado sello.cer --llave sello.key < contrasena.txt",
                     "También si la contraseña abre la llave y si es la del certificado."}}},
      [o] { return Corre(*o); });
  AgregaArgumento(comando, "CERTIFICADO", o->certificado, "Archivo .cer").Exige();
  AgregaArgumento(comando, "--llave", o->llave, "Archivo .key con la llave privada").Toma("ARCHIVO");
  AgregaOpcionesFilas(comando, o->filas);
}

}  // namespace utilvel

#include "facil/Certificado.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <vector>

#include "Uutilext/crypto/Certificados.h"
#include "framework/Excepciones.h"
#include "platform/Archivos.h"

namespace vel::facil {

namespace {

using Tipos = std::span<const std::string_view>;

constexpr std::array<std::string_view, 1> kIdentificadorUnico = {"2.5.4.45"};
constexpr std::array<std::string_view, 3> kNombres = {"2.5.4.41", "2.5.4.3", "2.5.4.10"};

// The first part of the first of these types that the name has.
UnicodeString Busca(const std::vector<ParteNombre>& nombre, Tipos tipos) {
  for (const std::string_view tipo : tipos) {
    const auto parte =
        std::find_if(nombre.begin(), nombre.end(), [tipo](const ParteNombre& p) { return p.tipo == tipo; });
    if (parte != nombre.end()) return parte->texto;
  }
  return {};
}

}  // namespace

Certificado LeeCertificadoDER(std::string_view bytes) {
  const DatosCertificado datos = LeeDatosCertificado(bytes);
  const UnicodeString ids = Busca(datos.sujeto, kIdentificadorUnico);
  const std::size_t corte = std::min(ids.find(u'/'), ids.size());
  Certificado certificado;
  certificado.numero = datos.numero;
  certificado.inicio = datos.inicio;
  certificado.fin = datos.fin;
  certificado.rfc = Trim(ids.substr(0, corte));
  if (corte < ids.size()) certificado.rfcRepresentante = Trim(ids.substr(corte + 1));
  certificado.nombre = Busca(datos.sujeto, kNombres);
  certificado.emisor = Busca(datos.emisor, kNombres);
  return certificado;
}

Certificado LeeCertificado(const Texto& ruta) {
  std::string bytes;
  const FallaArchivo falla = LeeArchivo(ruta, bytes);
  if (falla.Hubo()) {
    throw EStreamError(u"No se puede leer el certificado " + UnicodeString(ruta.Vista()) + u": " +
                       Descripcion(falla));
  }
  return LeeCertificadoDER(bytes);
}

EstadoLlave RevisaLlave(const Texto& rutaCertificado, const Texto& rutaLlave,
                        std::u16string_view contrasena) {
  return static_cast<EstadoLlave>(ValPrivKey(rutaCertificado, rutaLlave, contrasena));
}

}  // namespace vel::facil

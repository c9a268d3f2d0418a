#include "facil/Certificado.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <vector>

#include "Uutilext/crypto/Certificados.h"
#include "facil/FechasISO.h"
#include "framework/Excepciones.h"
#include "platform/Archivos.h"

namespace vel::facil {

namespace {

using Tipos = std::span<const std::string_view>;

constexpr std::array<std::string_view, 1> kIdentificadorUnico = {"2.5.4.45"};
constexpr std::array<std::string_view, 3> kNombres = {"2.5.4.41", "2.5.4.3", "2.5.4.10"};

// The first part of the first of these types that the name has.
UnicodeString Busca(const std::vector<TParteNombre>& nombre, Tipos tipos) {
  for (const std::string_view tipo : tipos) {
    const auto parte =
        std::find_if(nombre.begin(), nombre.end(), [tipo](const TParteNombre& p) { return p.Tipo == tipo; });
    if (parte != nombre.end()) return parte->Texto;
  }
  return {};
}

// YYMMDDhhmmssZ, of the years 1950 to 2049, or YYYYMMDDhhmmssZ (RFC 5280, section 4.1.2.5).
std::chrono::sys_seconds AMomento(UnicodeString texto) {
  if (texto.size() == 13) texto.insert(0, texto.front() < u'5' ? u"20" : u"19");
  UnicodeString iso;
  for (std::size_t i = 0; i < texto.size(); ++i) {
    if (i == 4 || i == 6) iso += u'-';
    if (i == 8) iso += u'T';
    if (i == 10 || i == 12) iso += u':';
    iso += texto[i];
  }
  try {
    return std::chrono::floor<std::chrono::seconds>(DeISOUniversal(iso));
  } catch (const EConvertError&) {
    throw Exception(u"La vigencia del certificado no es válida.");
  }
}

}  // namespace

Certificado LeeCertificadoDER(std::string_view bytes) {
  const TDatosCertificado datos = CertDameDatos(bytes);
  const UnicodeString ids = Busca(datos.Sujeto, kIdentificadorUnico);
  const std::size_t corte = std::min(ids.find(u'/'), ids.size());
  Certificado certificado;
  certificado.numero = datos.Numero;
  certificado.inicio = AMomento(datos.Desde);
  certificado.fin = AMomento(datos.Hasta);
  certificado.rfc = Trim(ids.substr(0, corte));
  if (corte < ids.size()) certificado.rfcRepresentante = Trim(ids.substr(corte + 1));
  certificado.nombre = Busca(datos.Sujeto, kNombres);
  certificado.emisor = Busca(datos.Emisor, kNombres);
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

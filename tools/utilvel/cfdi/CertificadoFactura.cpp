#include "tools/utilvel/cfdi/CertificadoFactura.h"

#include <algorithm>
#include <chrono>
#include <string_view>

#include "Uutilext/crypto/Base64.h"
#include "Uutilext/crypto/Certificados.h"
#include "framework/Excepciones.h"
#include "framework/Texto.h"
#include "tools/utilvel/cfdi/Momento.h"

namespace utilvel::cfdi {
namespace {

constexpr std::size_t kMaxLeidos = 256;
// Nothing valid is as long; a certificate takes two thousand characters.
constexpr std::size_t kMaxBase64 = 65536;

/// yyyy-mm-ddThh:mm:ssZ of a certificate's moment (RFC 5280, section 4.1.2.5); empty for another form.
std::string MomentoIso(std::string_view m) {
  std::string siglo;
  // Two digits of the year stand for 1950 to 2049.
  if (m.size() == 13) siglo = m[0] < '5' ? "20" : "19";
  if (m.size() != 13 && m.size() != 15) return {};
  if (m.find_first_not_of("0123456789") != m.size() - 1) return {};
  const std::string t = siglo + std::string(m);
  return t.substr(0, 4) + '-' + t.substr(4, 2) + '-' + t.substr(6, 2) + 'T' + t.substr(8, 2) + ':' +
         t.substr(10, 2) + ':' + t.substr(12);
}

}  // namespace

Certificados::Leido Certificados::Lee(const std::string& base64) {
  if (base64.size() > kMaxBase64) return {};
  std::string der(base64.size(), '\0');
  const int largo =
      vel::Base64(reinterpret_cast<const unsigned char*>(base64.data()), static_cast<int>(base64.size()),
                  reinterpret_cast<unsigned char*>(der.data()), static_cast<int>(der.size()), false);
  der.resize(static_cast<std::size_t>(std::max(largo, 0)));
  try {
    const vel::TDatosCertificado datos = vel::CertDameDatos(der);
    return {true, vel::UTF8Encode(datos.Numero), MomentoIso(vel::UTF8Encode(datos.Desde)),
            MomentoIso(vel::UTF8Encode(datos.Hasta))};
  } catch (const vel::Exception&) {
    return {};
  }
}

Certificado Certificados::Revisa(const Comprobante& comprobante) {
  Certificado certificado;
  certificado.numeroNombrado = comprobante.numeroCertificado;
  if (comprobante.certificado.empty()) return certificado;
  auto lugar = leidos_.find(comprobante.certificado);
  if (lugar == leidos_.end()) {
    if (leidos_.size() >= kMaxLeidos) leidos_.clear();
    lugar = leidos_.emplace(comprobante.certificado, Lee(comprobante.certificado)).first;
  }
  const Leido& leido = lugar->second;
  certificado.numero = leido.numero;
  certificado.desde = leido.desde;
  certificado.hasta = leido.hasta;
  const auto desde = LeeMomento(leido.desde);
  const auto hasta = LeeMomento(leido.hasta);
  const auto fecha = LeeMomento(comprobante.fecha);
  if (!leido.legible || !desde || !hasta) {
    certificado.estado = EstadoCertificado::Ilegible;
  } else if (leido.numero != comprobante.numeroCertificado) {
    certificado.estado = EstadoCertificado::OtroNumero;
  } else if (!fecha || *fecha + std::chrono::hours{8} < *desde || *fecha + std::chrono::hours{5} > *hasta) {
    certificado.estado = EstadoCertificado::NoVigente;
  } else {
    certificado.estado = EstadoCertificado::Correcto;
  }
  return certificado;
}

}  // namespace utilvel::cfdi

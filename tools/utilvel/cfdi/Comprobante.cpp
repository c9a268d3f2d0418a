// From the bytes of a file to the printed figures.

#include "tools/utilvel/cfdi/Comprobante.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <new>
#include <pugixml.hpp>

#include "tools/utilvel/cfdi/Elemento.h"
#include "tools/utilvel/cfdi/ExploraXml.h"
#include "tools/utilvel/cfdi/Momento.h"

namespace utilvel::cfdi {
namespace {

using vel::ENUM_FACTOR_FISCAL;
using vel::ENUM_IMPUESTO_FISCAL;

constexpr std::string_view kEspacio33 = "http://www.sat.gob.mx/cfd/3";
constexpr std::string_view kEspacio40 = "http://www.sat.gob.mx/cfd/4";
constexpr std::string_view kEspacioLocales = "http://www.sat.gob.mx/implocal";
constexpr std::string_view kEspacioPagos10 = "http://www.sat.gob.mx/Pagos";
constexpr std::string_view kEspacioPagos20 = "http://www.sat.gob.mx/Pagos20";
constexpr std::string_view kEspacioTimbre = "http://www.sat.gob.mx/TimbreFiscalDigital";

/// Why the parser stopped, in Spanish.
std::string Motivo(pugi::xml_parse_status estado) {
  switch (estado) {
    case pugi::status_out_of_memory:
      return "falta memoria";
    case pugi::status_bad_start_element:
      return "un elemento no empieza bien";
    case pugi::status_bad_attribute:
      return "un atributo está mal escrito";
    case pugi::status_bad_end_element:
      return "un elemento no cierra bien";
    case pugi::status_end_element_mismatch:
      return "un elemento cierra con otro nombre, o no cierra";
    case pugi::status_no_document_element:
      return "no tiene elementos: no es XML";
    default:
      return "no es XML bien formado";
  }
}

/// The names of attributes and elements of the taxes, which the complement of payments ends with letters of
/// its own.
struct NombresImpuesto {
  const char* traslados;
  const char* traslado;
  const char* retenciones;
  const char* retencion;
  const char* base;
  const char* impuesto;
  const char* factor;
  const char* tasa;
  const char* importe;
};
constexpr NombresImpuesto kComunes = {"Traslados", "Traslado",   "Retenciones", "Retencion", "Base",
                                      "Impuesto",  "TipoFactor", "TasaOCuota",  "Importe"};
constexpr NombresImpuesto kDePago = {"TrasladosP", "TrasladoP",   "RetencionesP", "RetencionP", "BaseP",
                                     "ImpuestoP",  "TipoFactorP", "TasaOCuotaP",  "ImporteP"};
constexpr NombresImpuesto kDeDocumento = {"TrasladosDR",  "TrasladoDR",   "RetencionesDR",
                                          "RetencionDR",  "BaseDR",       "ImpuestoDR",
                                          "TipoFactorDR", "TasaOCuotaDR", "ImporteDR"};

class Lector {
 public:
  explicit Lector(Origen origen) : origen_(std::move(origen)) {}

  Comprobante Lee(const pugi::xml_node& raiz) {
    const std::string_view espacio = Espacio(raiz);
    const Atributos a(origen_, raiz);
    const std::string version(a.Texto("Version"));
    const bool cfdi = NombreLocal(raiz) == "Comprobante" && (espacio == kEspacio33 || espacio == kEspacio40);
    if (!cfdi)
      Rechaza(origen_, raiz, "no es una factura electrónica: empieza con " + std::string(raiz.name()));
    if (version != (espacio == kEspacio40 ? "4.0" : "3.3")) {
      Rechaza(origen_, raiz,
              "la versión \"" + version + "\" no es 3.3 ni 4.0, o no es la de su espacio de nombres");
    }
    Comprobante c;
    c.version = espacio == kEspacio40 ? Version::V40 : Version::V33;
    LeeCabecera(raiz, a, c);
    bool hayConceptos = false;
    bool hayImpuestos = false;
    const auto unaVez = [this](bool& ya, const pugi::xml_node& nodo) {
      if (ya) Rechaza(origen_, nodo, "repite el elemento " + std::string(nodo.name()));
      ya = true;
    };
    for (pugi::xml_node hijo = raiz.first_child(); hijo; hijo = hijo.next_sibling()) {
      const std::string_view nombre = Propio(hijo);
      if (nombre == "Emisor") {
        c.emisor = Atributos(origen_, hijo).Texto("Rfc");
      } else if (nombre == "Receptor") {
        c.receptor = Atributos(origen_, hijo).Texto("Rfc");
      } else if (nombre == "Conceptos") {
        unaVez(hayConceptos, hijo);
        for (pugi::xml_node concepto = hijo.first_child(); concepto; concepto = concepto.next_sibling())
          if (Propio(concepto) == "Concepto") c.conceptos.push_back(LeeConcepto(concepto));
      } else if (nombre == "Impuestos") {
        unaVez(hayImpuestos, hijo);
        c.impuestos = LeeResumen(hijo, c.version == Version::V40);
      } else if (nombre == "Complemento") {
        for (pugi::xml_node complemento = hijo.first_child(); complemento;
             complemento = complemento.next_sibling())
          LeeComplemento(complemento, c);
      }
    }
    if (!hayConceptos) Rechaza(origen_, raiz, "no tiene conceptos");
    return c;
  }

 private:
  /// The name of an element of the invoice's own namespace; empty for any other node.
  std::string_view Propio(const pugi::xml_node& nodo) const {
    const std::string_view nombre = nodo.name();
    return nombre.starts_with(origen_.prefijo) ? nombre.substr(origen_.prefijo.size()) : std::string_view();
  }

  void LeeCabecera(const pugi::xml_node& raiz, const Atributos& a, Comprobante& c) const {
    c.serie = a.Texto("Serie");
    c.folio = a.Texto("Folio");
    c.fecha = a.ExigeTexto("Fecha");
    if (!LeeMomento(c.fecha))
      Rechaza(origen_, raiz, "la fecha \"" + c.fecha.substr(0, 40) + "\" no es válida");
    c.moneda = a.ExigeTexto("Moneda");
    const std::string_view tipo = a.ExigeTexto("TipoDeComprobante");
    if (tipo.size() != 1 || std::strchr("IETNP", tipo[0]) == nullptr)
      Rechaza(origen_, raiz, "el tipo de comprobante \"" + std::string(tipo.substr(0, 40)) + "\" no existe");
    c.tipo = tipo[0];
    c.numeroCertificado = a.Texto("NoCertificado");
    c.certificado = a.Texto("Certificado");
    c.subTotal = a.ExigeMonto("SubTotal");
    c.descuento = a.Monto("Descuento");
    c.total = a.ExigeMonto("Total");
  }

  Concepto LeeConcepto(const pugi::xml_node& nodo) const {
    const Atributos a(origen_, nodo);
    Concepto concepto;
    concepto.cantidad = a.ExigeMonto("Cantidad");
    concepto.valorUnitario = a.ExigeMonto("ValorUnitario");
    concepto.importe = a.ExigeMonto("Importe");
    concepto.descuento = a.Monto("Descuento");
    for (pugi::xml_node hijo = nodo.first_child(); hijo; hijo = hijo.next_sibling())
      if (Propio(hijo) == "Impuestos") LeeImpuestos(hijo, kComunes, true, concepto.impuestos);
    return concepto;
  }

  /// The taxes of an element, transferred and withheld in their order; `completos` where the withheld ones
  /// and all the bases are printed as on a line.
  void LeeImpuestos(const pugi::xml_node& nodo, const NombresImpuesto& nombres, bool completos,
                    std::vector<Impuesto>& impuestos, bool conBase = true) const {
    impuestos.reserve(impuestos.size() + 2);
    for (pugi::xml_node lista = nodo.first_child(); lista; lista = lista.next_sibling()) {
      const std::string_view cual = NombreLocal(lista);
      const bool retenidos = cual == nombres.retenciones;
      if (!retenidos && cual != nombres.traslados) continue;
      for (pugi::xml_node hijo = lista.first_child(); hijo; hijo = hijo.next_sibling()) {
        if (NombreLocal(hijo) == (retenidos ? nombres.retencion : nombres.traslado))
          impuestos.push_back(LeeImpuesto(hijo, nombres, retenidos, completos, conBase));
      }
    }
  }

  Impuesto LeeImpuesto(const pugi::xml_node& nodo, const NombresImpuesto& nombres, bool retenido,
                       bool completo, bool conBase) const {
    const Atributos a(origen_, nodo);
    Impuesto impuesto;
    impuesto.retenido = retenido;
    const std::string_view clave = a.ExigeTexto(nombres.impuesto);
    if (clave == "001") {
      impuesto.impuesto = ENUM_IMPUESTO_FISCAL::ISR;
    } else if (clave == "002") {
      impuesto.impuesto = ENUM_IMPUESTO_FISCAL::IVA;
    } else if (clave == "003") {
      impuesto.impuesto = ENUM_IMPUESTO_FISCAL::IEPS;
    } else {
      Rechaza(origen_, nodo, "el impuesto \"" + std::string(clave.substr(0, 40)) + "\" no existe");
    }
    if (retenido && !completo) {
      impuesto.importe = a.ExigeMonto(nombres.importe);
      return impuesto;
    }
    const std::string_view factor = a.ExigeTexto(nombres.factor);
    if (factor == "Tasa") {
      impuesto.factor = ENUM_FACTOR_FISCAL::TASA;
    } else if (factor == "Cuota") {
      impuesto.factor = ENUM_FACTOR_FISCAL::CUOTA;
    } else if (factor == "Exento") {
      impuesto.factor = ENUM_FACTOR_FISCAL::EXENTO;
    } else {
      Rechaza(origen_, nodo, "el tipo de factor \"" + std::string(factor.substr(0, 40)) + "\" no existe");
    }
    if (conBase) impuesto.base = a.ExigeMonto(nombres.base);
    if (impuesto.factor == ENUM_FACTOR_FISCAL::EXENTO) {
      impuesto.importe = a.Monto(nombres.importe);
      return impuesto;
    }
    impuesto.tasa = a.ExigeMonto(nombres.tasa);
    impuesto.importe = a.ExigeMonto(nombres.importe);
    return impuesto;
  }

  ResumenImpuestos LeeResumen(const pugi::xml_node& nodo, bool conBase) const {
    const Atributos a(origen_, nodo);
    ResumenImpuestos resumen;
    resumen.totalTrasladados = a.Monto("TotalImpuestosTrasladados");
    resumen.totalRetenidos = a.Monto("TotalImpuestosRetenidos");
    LeeImpuestos(nodo, kComunes, false, resumen.impuestos, conBase);
    return resumen;
  }

  void LeeComplemento(const pugi::xml_node& nodo, Comprobante& c) const {
    if (nodo.type() != pugi::node_element) return;
    const std::string_view espacio = Espacio(nodo);
    const std::string_view nombre = NombreLocal(nodo);
    if (espacio == kEspacioTimbre && nombre == "TimbreFiscalDigital") {
      c.uuid = Atributos(origen_, nodo).Texto("UUID");
    } else if (espacio == kEspacioLocales && nombre == "ImpuestosLocales") {
      if (c.locales) Rechaza(origen_, nodo, "repite el complemento de impuestos locales");
      c.locales = LeeLocales(nodo);
    } else if ((espacio == kEspacioPagos10 || espacio == kEspacioPagos20) && nombre == "Pagos") {
      c.pagos.push_back(LeePagos(nodo, espacio == kEspacioPagos20));
    } else {
      c.otrosComplementos.emplace_back(nombre);
    }
  }

  ImpuestosLocales LeeLocales(const pugi::xml_node& nodo) const {
    const Atributos a(origen_, nodo);
    ImpuestosLocales locales;
    locales.totalTrasladados = a.ExigeMonto("TotaldeTraslados");
    locales.totalRetenidos = a.ExigeMonto("TotaldeRetenciones");
    for (pugi::xml_node hijo = nodo.first_child(); hijo; hijo = hijo.next_sibling()) {
      const std::string_view nombre = NombreLocal(hijo);
      if (nombre == "TrasladosLocales")
        locales.trasladados.push_back(Atributos(origen_, hijo).ExigeMonto("Importe"));
      if (nombre == "RetencionesLocales")
        locales.retenidos.push_back(Atributos(origen_, hijo).ExigeMonto("Importe"));
    }
    return locales;
  }

  Pagos LeePagos(const pugi::xml_node& nodo, bool dos) const {
    Pagos pagos;
    pagos.dos = dos;
    for (pugi::xml_node hijo = nodo.first_child(); hijo; hijo = hijo.next_sibling()) {
      const std::string_view nombre = NombreLocal(hijo);
      if (nombre == "Pago") {
        pagos.pagos.push_back(LeePago(hijo, dos));
      } else if (nombre == "Totales") {
        const Atributos a(origen_, hijo);
        for (std::size_t i = 0; i < pagos.totales.size(); ++i)
          pagos.totales[i] = a.Monto(kTotalesPagos[i].atributo);
      }
    }
    return pagos;
  }

  Pago LeePago(const pugi::xml_node& nodo, bool dos) const {
    const Atributos a(origen_, nodo);
    Pago pago;
    pago.moneda = a.ExigeTexto("MonedaP");
    pago.tipoCambio = a.Monto("TipoCambioP");
    pago.monto = a.ExigeMonto("Monto");
    for (pugi::xml_node hijo = nodo.first_child(); hijo; hijo = hijo.next_sibling()) {
      const std::string_view nombre = NombreLocal(hijo);
      if (nombre == "DoctoRelacionado") {
        pago.documentos.push_back(LeeDocumento(hijo, dos));
      } else if (dos && nombre == "ImpuestosP") {
        LeeImpuestos(hijo, kDePago, false, pago.impuestos.impuestos);
      } else if (!dos && nombre == "Impuestos") {
        pago.impuestos = LeeResumen(hijo, false);
      }
    }
    return pago;
  }

  DocumentoPagado LeeDocumento(const pugi::xml_node& nodo, bool dos) const {
    const Atributos a(origen_, nodo);
    DocumentoPagado documento;
    const char* const equivalencia = dos ? "EquivalenciaDR" : "TipoCambioDR";
    documento.equivalencia = a.Monto(equivalencia, kDecimalesEquivalencia);
    if (documento.equivalencia && documento.equivalencia->Unidades == 0)
      Rechaza(origen_, nodo, std::string(equivalencia) + " es cero");
    documento.moneda = a.Texto("MonedaDR");
    documento.saldoAnterior = a.Monto("ImpSaldoAnt");
    documento.pagado = a.Monto("ImpPagado");
    documento.saldoInsoluto = a.Monto("ImpSaldoInsoluto");
    for (pugi::xml_node hijo = nodo.first_child(); hijo; hijo = hijo.next_sibling())
      if (NombreLocal(hijo) == "ImpuestosDR") LeeImpuestos(hijo, kDeDocumento, true, documento.impuestos);
    return documento;
  }

  Origen origen_;
};

/// Currencies whose decimals are not two, by their decimals, in order within each.
struct Decimales {
  std::string_view moneda;
  int decimales;
};
constexpr Decimales kOtras[] = {{"BHD", 3}, {"BIF", 0}, {"CLF", 4}, {"CLP", 0}, {"DJF", 0}, {"GNF", 0},
                                {"IQD", 3}, {"ISK", 0}, {"JOD", 3}, {"JPY", 0}, {"KMF", 0}, {"KRW", 0},
                                {"KWD", 3}, {"LYD", 3}, {"OMR", 3}, {"PYG", 0}, {"RWF", 0}, {"TND", 3},
                                {"UGX", 0}, {"UYI", 0}, {"VND", 0}, {"VUV", 0}, {"XAF", 0}, {"XOF", 0},
                                {"XPF", 0}, {"XXX", 0}};

}  // namespace

Comprobante LeeComprobante(std::string_view bytes) {
  ExploraXml(bytes);
  pugi::xml_document documento;
  // Entities other than XML's own need a document type, which was refused.
  const pugi::xml_parse_result resultado = documento.load_buffer(
      bytes.data(), bytes.size(), pugi::parse_escapes | pugi::parse_wconv_attribute, pugi::encoding_utf8);
  if (!resultado) {
    if (resultado.status == pugi::status_out_of_memory) throw std::bad_alloc();
    Rechaza(bytes, static_cast<std::size_t>(std::max<std::ptrdiff_t>(resultado.offset, 0)),
            Motivo(resultado.status));
  }
  const pugi::xml_node raiz = documento.document_element();
  for (pugi::xml_node otro = documento.first_child(); otro; otro = otro.next_sibling()) {
    if (otro != raiz && otro.type() == pugi::node_element)
      Rechaza({bytes, {}}, otro, "hay otro elemento detrás de la factura");
  }
  // The parser passes over it.
  if (const std::size_t fin = bytes.find_last_not_of(" \t\r\n"); bytes[fin] != '>')
    Rechaza(bytes, fin, "hay texto detrás de la factura");
  const std::string_view nombre = raiz.name();
  const std::size_t corte = nombre.find(':');
  return Lector({bytes,
                 corte == std::string_view::npos ? std::string() : std::string(nombre.substr(0, corte + 1))})
      .Lee(raiz);
}

int DecimalesMoneda(std::string_view moneda) noexcept {
  const auto* const lugar =
      std::lower_bound(std::begin(kOtras), std::end(kOtras), moneda,
                       [](const Decimales& d, std::string_view m) { return d.moneda < m; });
  return lugar != std::end(kOtras) && lugar->moneda == moneda ? lugar->decimales : 2;
}

std::string Nombre(const Impuesto& impuesto) {
  std::string nombre = impuesto.impuesto == ENUM_IMPUESTO_FISCAL::ISR   ? "ISR"
                       : impuesto.impuesto == ENUM_IMPUESTO_FISCAL::IVA ? "IVA"
                                                                        : "IEPS";
  if (impuesto.factor == ENUM_FACTOR_FISCAL::EXENTO) return nombre + " exento";
  if (!impuesto.tasa) return nombre;
  return nombre + (impuesto.factor == ENUM_FACTOR_FISCAL::CUOTA ? " cuota " : " ") + Texto(*impuesto.tasa);
}

}  // namespace utilvel::cfdi

#include "tools/utilvel/cfdi/Presenta.h"

#include <string_view>
#include <utility>

#include "tools/utilvel/Textos.h"

namespace utilvel::cfdi {
namespace {

std::string_view Clave(Estado estado) {
  switch (estado) {
    case Estado::Correcta:
      return "correcta";
    case Estado::EnLimites:
      return "en_limites";
    case Estado::ConDiferencias:
      return "con_diferencias";
  }
  return {};
}

std::string_view Clave(EstadoCertificado estado) {
  switch (estado) {
    case EstadoCertificado::Correcto:
      return "correcto";
    case EstadoCertificado::Falta:
      return "falta";
    case EstadoCertificado::Ilegible:
      return "ilegible";
    case EstadoCertificado::OtroNumero:
      return "otro_numero";
    case EstadoCertificado::NoVigente:
      return "no_vigente";
  }
  return {};
}

std::string Veredicto(const Informe& informe) {
  const std::size_t cuantas = informe.diferencias.size();
  const std::string diferencias = std::to_string(cuantas) + (cuantas == 1 ? " diferencia" : " diferencias");
  switch (informe.estado) {
    case Estado::Correcta:
      return "correcta";
    case Estado::EnLimites:
      return diferencias + " dentro de los límites";
    case Estado::ConDiferencias:
      return cuantas == 0 ? "las cifras coinciden, el certificado no" : diferencias;
  }
  return {};
}

std::string TextoCertificado(const Certificado& c) {
  switch (c.estado) {
    case EstadoCertificado::Correcto:
    case EstadoCertificado::Falta:
      return {};
    case EstadoCertificado::Ilegible:
      return "el que lleva no se puede leer";
    case EstadoCertificado::OtroNumero:
      return "nombra el " + (c.numeroNombrado.empty() ? std::string("vacío") : c.numeroNombrado) +
             " y lleva el " + c.numero;
    case EstadoCertificado::NoVigente:
      return "el " + c.numero + " rige de " + c.desde + " a " + c.hasta;
  }
  return {};
}

std::string TextoDiferencia(const Diferencia& d) {
  std::string texto = d.lugar + ": " + d.cifra +
                      (d.impreso ? " impreso " + Texto(*d.impreso) : " no está impreso") + ", calculado " +
                      Texto(d.calculado) + ", diferencia " + Texto(d.diferencia);
  if (d.limites) {
    texto += d.enLimites ? ", dentro de los límites " : ", fuera de los límites ";
    texto += Texto(d.limites->inferior) + " a " + Texto(d.limites->superior);
  }
  return d.regla.empty() ? texto : texto + " [" + d.regla + "]";
}

/// An object of JSON as it is written.
class Objeto {
 public:
  Objeto& Texto(std::string_view nombre, const std::optional<std::string>& valor) {
    return Crudo(nombre, valor ? Json(*valor) : "null");
  }
  /// Null when it is empty.
  Objeto& SiHay(std::string_view nombre, const std::string& valor) {
    return Texto(nombre, valor.empty() ? std::nullopt : std::optional(valor));
  }
  Objeto& Monto(std::string_view nombre, const std::optional<TMontoFiscal>& valor) {
    return Texto(nombre, valor ? std::optional(cfdi::Texto(*valor)) : std::nullopt);
  }
  Objeto& Crudo(std::string_view nombre, std::string_view valor) {
    texto_ += texto_.size() > 1 ? ", " : "";
    texto_ += Json(nombre);
    texto_ += ": ";
    texto_ += valor;
    return *this;
  }
  std::string Cierra() && { return std::move(texto_) + '}'; }

 private:
  std::string texto_ = "{";
};

template <typename Lista, typename Escribe>
std::string Arreglo(const Lista& lista, const Escribe& escribe) {
  std::string texto = "[";
  for (const auto& elemento : lista) texto += (texto.size() > 1 ? ", " : "") + escribe(elemento);
  return texto + ']';
}

std::string JsonDiferencia(const Diferencia& d) {
  Objeto objeto;
  objeto.Texto("lugar", d.lugar)
      .Texto("cifra", d.cifra)
      .Monto("impreso", d.impreso)
      .Monto("calculado", d.calculado)
      .Monto("diferencia", d.diferencia);
  if (d.limites) {
    objeto.Monto("inferior", d.limites->inferior).Monto("superior", d.limites->superior);
  } else {
    objeto.Crudo("inferior", "null").Crudo("superior", "null");
  }
  objeto.Crudo("en_limites", d.limites ? (d.enLimites ? "true" : "false") : "null").SiHay("regla", d.regla);
  return std::move(objeto).Cierra();
}

}  // namespace

std::string EnTexto(const std::string& archivo, const Informe& informe) {
  std::string texto = Visible(archivo) + ": " + Veredicto(informe);
  if (informe.totalMotor && Compara(*informe.totalMotor, informe.comprobante.total) != 0) {
    texto += "; el motor totaliza " + Texto(*informe.totalMotor) + " y la factura " +
             Texto(informe.comprobante.total);
  }
  if (!informe.comprobante.otrosComplementos.empty()) {
    texto += "; sin revisar:";
    for (const std::string& nombre : informe.comprobante.otrosComplementos) texto += ' ' + Visible(nombre);
  }
  texto += '\n';
  for (const Diferencia& d : informe.diferencias) texto += "  " + TextoDiferencia(d) + '\n';
  const std::string certificado = TextoCertificado(informe.certificado);
  if (!certificado.empty()) texto += "  Certificado: " + Visible(certificado) + '\n';
  return texto;
}

std::string EnJson(const std::string& archivo, const Informe& informe) {
  const Comprobante& c = informe.comprobante;
  const Certificado& sello = informe.certificado;
  Objeto certificado;
  certificado.Texto("estado", std::string(Clave(sello.estado)))
      .SiHay("nombrado", sello.numeroNombrado)
      .SiHay("numero", sello.numero)
      .SiHay("desde", sello.desde)
      .SiHay("hasta", sello.hasta);
  Objeto objeto;
  objeto.Texto("archivo", archivo)
      .Texto("estado", std::string(Clave(informe.estado)))
      .Texto("version", c.version == Version::V40 ? "4.0" : "3.3")
      .Texto("tipo", std::string(1, c.tipo))
      .SiHay("serie", c.serie)
      .SiHay("folio", c.folio)
      .SiHay("uuid", c.uuid)
      .Texto("fecha", c.fecha)
      .SiHay("emisor", c.emisor)
      .SiHay("receptor", c.receptor)
      .Texto("moneda", c.moneda)
      .Monto("subtotal", c.subTotal)
      .Monto("descuento", c.descuento)
      .Monto("trasladados", c.impuestos.totalTrasladados)
      .Monto("retenidos", c.impuestos.totalRetenidos)
      .Monto("total", c.total)
      .Monto("total_motor", informe.totalMotor)
      .Crudo("certificado", std::move(certificado).Cierra())
      .Crudo("sin_revisar", Arreglo(c.otrosComplementos, [](const std::string& n) { return Json(n); }))
      .Crudo("diferencias", Arreglo(informe.diferencias, JsonDiferencia));
  return std::move(objeto).Cierra() + '\n';
}

std::vector<std::string> NombresColumnas() {
  return {"archivo", "estado",    "certificado", "total",    "total_motor", "lugar", "cifra",
          "impreso", "calculado", "diferencia",  "inferior", "superior",    "regla"};
}

std::vector<std::vector<std::optional<std::string>>> EnFilas(const std::string& archivo,
                                                             const Informe& informe) {
  using Fila = std::vector<std::optional<std::string>>;
  const auto monto = [](const std::optional<TMontoFiscal>& valor) {
    return valor ? std::optional(Texto(*valor)) : std::nullopt;
  };
  const Fila comun = {archivo, std::string(Clave(informe.estado)),
                      std::string(Clave(informe.certificado.estado)), Texto(informe.comprobante.total),
                      monto(informe.totalMotor)};
  std::vector<Fila> filas;
  for (const Diferencia& d : informe.diferencias) {
    Fila fila = comun;
    fila.insert(fila.end(), {d.lugar, d.cifra, monto(d.impreso), Texto(d.calculado), Texto(d.diferencia)});
    fila.push_back(d.limites ? monto(d.limites->inferior) : std::nullopt);
    fila.push_back(d.limites ? monto(d.limites->superior) : std::nullopt);
    fila.push_back(d.regla);
    filas.push_back(std::move(fila));
  }
  if (filas.empty()) filas.push_back(comun);
  filas.back().resize(NombresColumnas().size());
  return filas;
}

}  // namespace utilvel::cfdi

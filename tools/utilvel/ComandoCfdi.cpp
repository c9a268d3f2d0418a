// utilvel cfdi: verifies the figures of electronic invoices.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "framework/Excepciones.h"
#include "tools/utilvel/Avance.h"
#include "tools/utilvel/Comandos.h"
#include "tools/utilvel/Errores.h"
#include "tools/utilvel/Filas.h"
#include "tools/utilvel/Programa.h"
#include "tools/utilvel/Sistema.h"
#include "tools/utilvel/Textos.h"
#include "tools/utilvel/cfdi/Presenta.h"
#include "tools/utilvel/cfdi/Verifica.h"

namespace utilvel {
namespace {

struct Opciones {
  std::vector<std::string> archivos;
  std::string lista;
  OpcionesFilas filas;
};

/// Reads a file whole, or as much as tells that it is too large to be an invoice.
void LeeArchivo(const std::string& ruta, std::string& bytes) {
  constexpr std::size_t kPedazo = 65536;
  Lector lector(ruta);
  bytes.clear();
  for (;;) {
    const std::size_t antes = bytes.size();
    // One byte more than the file has, so that the read that fills it also ends it.
    const auto esperado =
        static_cast<std::size_t>(std::min<std::uint64_t>(lector.Total(), cfdi::kMaxBytes)) + 1;
    bytes.resize(antes + (esperado > antes ? esperado - antes : kPedazo));
    const std::size_t leidos = lector.Lee(bytes.data() + antes, bytes.size() - antes);
    bytes.resize(antes + leidos);
    if (leidos == 0 || bytes.size() > cfdi::kMaxBytes) return;
  }
}

/// The names of a list, one a line.
std::vector<std::string> LeeLista(const std::string& ruta) {
  std::vector<std::string> nombres;
  Lector lector(ruta);
  std::string nombre;
  std::vector<char> pedazo(65536);
  const auto agrega = [&] {
    if (!nombre.empty() && nombre.back() == '\r') nombre.pop_back();
    if (!nombre.empty()) nombres.push_back(std::exchange(nombre, {}));
  };
  while (const std::size_t leidos = lector.Lee(pedazo.data(), pedazo.size())) {
    for (const char c : std::string_view(pedazo.data(), leidos)) {
      if (c == '\n') {
        agrega();
      } else {
        nombre += c;
      }
    }
  }
  agrega();
  return nombres;
}

/// Where the reports go, in the form that was asked for.
class Informes {
 public:
  explicit Informes(const OpcionesFilas& opciones) : formato_(opciones.DameFormato()) {
    if (formato_ != Formato::Csv) {
      escritor_.emplace(opciones.archivo);
      return;
    }
    std::vector<Columna> columnas;
    for (std::string& nombre : cfdi::NombresColumnas()) columnas.push_back({std::move(nombre)});
    filas_.emplace(opciones, std::move(columnas));
  }

  void Agrega(const std::string& archivo, const cfdi::Informe& informe) {
    if (filas_) {
      for (auto& fila : cfdi::EnFilas(archivo, informe)) filas_->Agrega(std::move(fila));
      return;
    }
    escritor_->Escribe(formato_ == Formato::Json ? cfdi::EnJson(archivo, informe)
                                                 : cfdi::EnTexto(archivo, informe));
    if (Terminal()) escritor_->Vacia();
  }

  void Resume(const std::string& texto) {
    if (formato_ == Formato::Tabla) escritor_->Escribe(texto);
  }

  void Termina() {
    if (filas_) filas_->Termina();
    if (escritor_) escritor_->Termina();
  }

  bool Terminal() const { return escritor_ ? escritor_->Terminal() : EsTerminal(Flujo::Salida); }

 private:
  Formato formato_;
  std::optional<Filas> filas_;
  std::optional<Escritor> escritor_;
};

struct Cuentas {
  std::size_t correctas = 0;
  std::size_t enLimites = 0;
  std::size_t conDiferencias = 0;
  std::size_t sinLeer = 0;
  /// Why the last one was not read.
  Codigo causa = Codigo::Bien;

  void Cuenta(cfdi::Estado estado) {
    ++(estado == cfdi::Estado::Correcta    ? correctas
       : estado == cfdi::Estado::EnLimites ? enLimites
                                           : conDiferencias);
  }
  std::string Texto() const {
    return std::to_string(correctas) + " correctas, " + std::to_string(enLimites) +
           " con diferencias dentro de los límites, " + std::to_string(conDiferencias) +
           " con diferencias, " + std::to_string(sinLeer) + " sin leer\n";
  }
};

Codigo Corre(const Opciones& o) {
  std::vector<std::string> archivos = o.archivos;
  if (!o.lista.empty()) {
    for (std::string& nombre : LeeLista(o.lista)) archivos.push_back(std::move(nombre));
  } else if (archivos.empty()) {
    throw Falla(Codigo::Uso, "Falta FACTURA o --lista");
  }
  Informes informes(o.filas);
  Avance avance(archivos.size(), informes.Terminal());
  cfdi::Verificador verificador;
  Cuentas cuentas;
  std::string bytes;
  const auto falla = [&](Codigo causa, const std::string& mensaje) {
    avance.Borra();
    Avisa(mensaje);
    ++cuentas.sinLeer;
    cuentas.causa = causa;
  };
  for (const std::string& archivo : archivos) {
    RevisaInterrupcion();
    const std::string nombre = AUtf8(archivo);
    try {
      LeeArchivo(archivo, bytes);
      const cfdi::Informe informe = verificador.Verifica(bytes);
      cuentas.Cuenta(informe.estado);
      informes.Agrega(nombre, informe);
    } catch (const cfdi::Rechazo& r) {
      falla(Codigo::Datos,
            nombre + ":" + std::to_string(r.linea) + ":" + std::to_string(r.columna) + ": " + r.what());
    } catch (const vel::EInvalidOperation& e) {
      falla(Codigo::Datos, nombre + ": " + e.what());
    } catch (const Falla& f) {
      if (f.DameCodigo() != Codigo::Archivo) throw;
      falla(Codigo::Archivo, f.what());
    }
    avance.Uno();
  }
  if (archivos.size() > 1) informes.Resume(cuentas.Texto());
  informes.Termina();
  if (cuentas.sinLeer > 0) return archivos.size() > 1 ? Codigo::Parcial : cuentas.causa;
  return cuentas.conDiferencias > 0 ? Codigo::Negativo : Codigo::Bien;
}

}  // namespace

void AgregaCfdi(Programa& programa) {
  const auto o = std::make_shared<Opciones>();
  CLI::App& comando = programa.Agrega(
      {.nombre = "cfdi",
       .resumen = "Verifica las cifras de facturas electrónicas",
       .detalle = "Lee comprobantes de las versiones 3.3 y 4.0 del Anexo 20 y calcula otra vez cada cifra "
                  "impresa a partir "
                  "de las cifras impresas de las que sale: importe = cantidad por valor unitario, impuesto = "
                  "base por tasa o "
                  "cuota, sumas por impuesto y tasa, subtotal, descuento y total, con los impuestos locales; "
                  "del complemento "
                  "de pagos, saldos, impuestos y totales. De cada cifra que no coincide dice lo impreso, lo "
                  "calculado, la "
                  "diferencia y, en importes e impuestos de los conceptos, si cabe en los límites que acepta "
                  "la autoridad.\n"
                  "También dice si el certificado que la factura lleva es el que nombra y si regía en su "
                  "fecha, y el total "
                  "que da el motor de la administradora cuando no es el impreso: el motor redondea una sola "
                  "vez la suma de "
                  "los impuestos, así que unos centavos no son un error de la factura. No se revisan el "
                  "sello ni el timbre.\n"
                  "Un archivo que no es factura o está dañado se dice en un renglón, con línea y columna, y "
                  "se sigue con los "
                  "demás. El código de salida es 1 cuando una factura tiene diferencias fuera de los "
                  "límites, en sumas o en "
                  "su certificado, y 5 cuando alguno de varios archivos no se pudo leer.",
       .ejemplos = {{"utilvel cfdi factura.xml", "Dice que las cifras coinciden, o cuáles no."},
                    {"utilvel cfdi --json *.xml", "Un objeto JSON por factura."},
                    {"find . -name '*.xml' | utilvel cfdi --lista - --csv --salida informe.csv",
                     "Verifica miles de facturas, con una barra de avance."}}},
      [o] { return Corre(*o); });
  comando.add_option("FACTURA", o->archivos, "Factura electrónica en XML; \"-\" es la entrada estándar");
  comando.add_option("--lista", o->lista, "Archivo con los nombres de las facturas, uno por renglón")
      ->type_name("ARCHIVO");
  AgregaOpcionesFilas(comando, o->filas);
}

}  // namespace utilvel

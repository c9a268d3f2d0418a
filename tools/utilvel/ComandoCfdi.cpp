// utilvel cfdi: verifies the figures of electronic invoices.

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "framework/Excepciones.h"
#include "tools/utilvel/Argumentos.h"
#include "tools/utilvel/Avance.h"
#include "tools/utilvel/Comandos.h"
#include "tools/utilvel/Entrada.h"
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

/// What comes of one file: its report in the form that is printed, or why it was not read.
struct Resultado {
  std::optional<cfdi::Estado> estado;
  std::string texto;
  std::vector<std::vector<Celda>> filas;
  Codigo causa = Codigo::Bien;
  std::string falla;
  /// What ends the run (an interruption, no memory).
  std::exception_ptr fin;
};

/// Verifies files; one for each thread.
class Obrero {
 public:
  explicit Obrero(Formato formato) : formato_(formato) {}

  Resultado Hace(const std::string& archivo) noexcept {
    Resultado r;
    try {
      const std::string nombre = AUtf8(archivo);
      try {
        LeeArchivo(archivo, bytes_);
        Informa(nombre, verificador_.Verifica(bytes_), r);
      } catch (const cfdi::Rechazo& e) {
        r.causa = Codigo::Datos;
        r.falla = nombre + ":" + std::to_string(e.linea) + ":" + std::to_string(e.columna) + ": " + e.what();
      } catch (const vel::EInvalidOperation& e) {
        r.causa = Codigo::Datos;
        r.falla = nombre + ": " + e.what();
      } catch (const Falla& e) {
        r.causa = e.DameCodigo();
        r.falla = e.what();
      }
    } catch (...) {
      r.fin = std::current_exception();
    }
    return r;
  }

 private:
  void Informa(const std::string& nombre, const cfdi::Informe& informe, Resultado& r) const {
    r.estado = informe.estado;
    if (formato_ == Formato::Csv) {
      r.filas = cfdi::EnFilas(nombre, informe);
    } else {
      r.texto = formato_ == Formato::Json ? cfdi::EnJson(nombre, informe) : cfdi::EnTexto(nombre, informe);
    }
  }

  Formato formato_;
  cfdi::Verificador verificador_;
  std::string bytes_;
};

/// Files are independent: as many threads as the machine has verify them in pieces, a little ahead of who
/// tells the results in the order of the files.
class Cuadrilla {
 public:
  Cuadrilla(std::span<const std::string> archivos, Formato formato)
      : archivos_(archivos), formato_(formato), pedazos_((archivos.size() + kPorPedazo - 1) / kPorPedazo) {
    const std::size_t hilos = std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, kMaxHilos);
    // One piece is done by who asks for it.
    if (pedazos_ < 2) return;
    for (std::size_t i = 0; i < std::min(hilos, pedazos_); ++i) {
      Obrero& obrero = *obreros_.emplace_back(std::make_unique<Obrero>(formato_));
      hilos_.emplace_back([this, &obrero] { Trabaja(obrero); });
    }
  }
  Cuadrilla(const Cuadrilla&) = delete;
  Cuadrilla& operator=(const Cuadrilla&) = delete;
  ~Cuadrilla() {
    const std::scoped_lock candado(mutex_);
    alto_ = true;
    cambio_.notify_all();
  }

  std::size_t Pedazos() const noexcept { return pedazos_; }

  /// The results of the next piece.
  std::vector<Resultado> Siguiente() {
    if (hilos_.empty()) {
      Obrero obrero(formato_);
      return Hace(obrero, entregados_++);
    }
    std::unique_lock candado(mutex_);
    cambio_.wait(candado, [this] { return falla_ || hechos_.contains(entregados_); });
    if (falla_) std::rethrow_exception(falla_);
    std::vector<Resultado> resultados = std::move(hechos_.extract(entregados_++).mapped());
    cambio_.notify_all();
    return resultados;
  }

 private:
  static constexpr std::size_t kMaxHilos = 16;
  static constexpr std::size_t kPorPedazo = 32;
  static constexpr std::size_t kAdelanto = 64;

  std::vector<Resultado> Hace(Obrero& obrero, std::size_t pedazo) const {
    const std::size_t desde = pedazo * kPorPedazo;
    std::vector<Resultado> resultados;
    for (const std::string& archivo :
         archivos_.subspan(desde, std::min(kPorPedazo, archivos_.size() - desde)))
      resultados.push_back(obrero.Hace(archivo));
    return resultados;
  }

  void Trabaja(Obrero& obrero) noexcept {
    std::unique_lock candado(mutex_);
    for (;;) {
      cambio_.wait(candado,
                   [this] { return alto_ || tomados_ == pedazos_ || tomados_ < entregados_ + kAdelanto; });
      if (alto_ || tomados_ == pedazos_) return;
      const std::size_t pedazo = tomados_++;
      candado.unlock();
      std::vector<Resultado> resultados;
      std::exception_ptr falla;
      try {
        resultados = Hace(obrero, pedazo);
      } catch (...) {
        falla = std::current_exception();
      }
      candado.lock();
      Entrega(pedazo, std::move(resultados), falla);
      cambio_.notify_all();
    }
  }

  void Entrega(std::size_t pedazo, std::vector<Resultado> resultados,
               const std::exception_ptr& falla) noexcept {
    if (falla_) return;
    falla_ = falla;
    try {
      hechos_.emplace(pedazo, std::move(resultados));
    } catch (...) {
      falla_ = std::current_exception();
    }
  }

  const std::span<const std::string> archivos_;
  const Formato formato_;
  const std::size_t pedazos_;
  std::mutex mutex_;
  std::condition_variable cambio_;
  std::map<std::size_t, std::vector<Resultado>> hechos_;
  std::size_t tomados_ = 0;
  std::size_t entregados_ = 0;
  bool alto_ = false;
  /// What no result can tell: no memory for it.
  std::exception_ptr falla_;
  std::vector<std::unique_ptr<Obrero>> obreros_;
  // Last: they end before what they work on does.
  std::vector<std::jthread> hilos_;
};

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

  void Agrega(Resultado resultado) {
    for (auto& fila : resultado.filas) filas_->Agrega(std::move(fila));
    if (!escritor_) return;
    escritor_->Escribe(resultado.texto);
    if (escritor_->Terminal()) escritor_->Vacia();
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

  void Cuenta(const Resultado& r) {
    if (!r.estado) {
      ++sinLeer;
      causa = r.causa;
      return;
    }
    const bool correcta = *r.estado == cfdi::Estado::Correcta;
    ++(correcta ? correctas : *r.estado == cfdi::Estado::EnLimites ? enLimites : conDiferencias);
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
    ExigeOtraSalida(o.filas.archivo, archivos);
  } else if (archivos.empty()) {
    throw Falla(Codigo::Uso, "Falta FACTURA o --lista");
  }
  Informes informes(o.filas);
  Avance avance(archivos.size(), informes.Terminal());
  Cuadrilla cuadrilla(archivos, o.filas.DameFormato());
  Cuentas cuentas;
  for (std::size_t i = 0; i < cuadrilla.Pedazos(); ++i) {
    for (Resultado& resultado : cuadrilla.Siguiente()) {
      RevisaInterrupcion();
      if (resultado.fin) std::rethrow_exception(resultado.fin);
      cuentas.Cuenta(resultado);
      if (!resultado.estado) {
        avance.Borra();
        Avisa(resultado.falla);
      }
      informes.Agrega(std::move(resultado));
      avance.Uno();
    }
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
                  "demás; así también el que no está en UTF-8, como lo pide el Anexo 20. El código de salida "
                  "es 1 cuando una factura tiene diferencias fuera de los "
                  "límites, en sumas o en "
                  "su certificado, y 5 cuando alguno de varios archivos no se pudo leer.",
       .ejemplos = {{"utilvel cfdi factura.xml", "Dice que las cifras coinciden, o cuáles no."},
                    {"utilvel cfdi --json *.xml", "Un objeto JSON por factura."},
                    {"find . -name '*.xml' | utilvel cfdi --lista - --csv --salida informe.csv",
                     "Verifica miles de facturas, con una barra de avance."}}},
      [o] { return Corre(*o); });
  AgregaArgumento(comando, "FACTURA", o->archivos,
                  "Factura electrónica en XML; \"-\" es la entrada estándar");
  AgregaArgumento(comando, "--lista", o->lista, "Archivo con los nombres de las facturas, uno por renglón")
      .Toma("ARCHIVO");
  AgregaOpcionesFilas(comando, o->filas);
}

}  // namespace utilvel

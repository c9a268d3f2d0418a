#include "tools/utilvel/Filas.h"

#include <algorithm>
#include <utility>

#include "tools/utilvel/Argumentos.h"
#include "tools/utilvel/Textos.h"

namespace utilvel {
namespace {

// Rows whose widths make those of a table.
constexpr std::size_t kMuestra = 200;

bool ALaDerecha(TipoColumna tipo) { return tipo == TipoColumna::Monto || tipo == TipoColumna::Entero; }

}  // namespace

void AgregaOpcionesFilas(CLI::App& comando, OpcionesFilas& opciones) {
  const Argumento json = AgregaBandera(comando, "--json", opciones.json, "Un objeto JSON por renglón");
  AgregaBandera(comando, "--csv", opciones.csv, "Renglones en CSV, con los nombres de las columnas")
      .SinOtro(json);
  AgregaArgumento(comando, "--salida", opciones.archivo, "Archivo que recibe los renglones, completo o nada")
      .Toma("ARCHIVO");
}

Filas::Filas(const OpcionesFilas& opciones, std::vector<Columna> columnas)
    : escritor_(opciones.archivo), formato_(opciones.DameFormato()), columnas_(std::move(columnas)) {
  if (formato_ != Formato::Csv) return;
  std::vector<Celda> nombres;
  for (const Columna& c : columnas_) nombres.emplace_back(c.nombre);
  EscribeCsv(nombres);
}

void Filas::Titulo(const std::string& texto) {
  if (formato_ == Formato::Tabla) escritor_.Escribe(Visible(texto) + "\n\n");
}

void Filas::Agrega(std::vector<Celda> fila) {
  RevisaInterrupcion();
  ++cuenta_;
  switch (formato_) {
    case Formato::Json:
      EscribeJson(fila);
      break;
    case Formato::Csv:
      EscribeCsv(fila);
      break;
    case Formato::Tabla:
      for (Celda& celda : fila) {
        if (celda.has_value()) celda = Visible(*celda);
      }
      if (anchos_.empty()) {
        espera_.push_back(std::move(fila));
        if (espera_.size() == kMuestra) EscribeEnEspera();
      } else {
        EscribeTabla(fila);
      }
      break;
  }
  if (escritor_.Terminal() && espera_.empty()) escritor_.Vacia();
}

void Filas::Termina() {
  if (formato_ == Formato::Tabla && anchos_.empty() && cuenta_ > 0) EscribeEnEspera();
  escritor_.Termina();
}

void Filas::EscribeEnEspera() {
  std::vector<Celda> nombres;
  for (const Columna& c : columnas_) {
    nombres.emplace_back(c.nombre);
    anchos_.push_back(Largo(c.nombre));
  }
  for (const auto& fila : espera_) {
    for (std::size_t i = 0; i < fila.size(); ++i) {
      anchos_[i] = std::max(anchos_[i], Largo(fila[i].value_or("")));
    }
  }
  const bool negrita = escritor_.Terminal() && ConColor(Flujo::Salida);
  if (negrita) escritor_.Escribe("\x1B[1m");
  EscribeTabla(nombres);
  if (negrita) escritor_.Escribe("\x1B[0m");
  for (const auto& fila : espera_) EscribeTabla(fila);
  espera_.clear();
}

void Filas::EscribeTabla(const std::vector<Celda>& fila) {
  std::string linea;
  for (std::size_t i = 0; i < columnas_.size(); ++i) {
    const std::string celda = fila[i].value_or("");
    const std::string relleno(anchos_[i] - std::min(anchos_[i], Largo(celda)), ' ');
    if (i > 0) linea += "  ";
    linea += ALaDerecha(columnas_[i].tipo) ? relleno + celda : celda + relleno;
  }
  linea.erase(linea.find_last_not_of(' ') + 1);
  escritor_.Escribe(linea + '\n');
}

void Filas::EscribeJson(const std::vector<Celda>& fila) {
  std::string linea = "{";
  for (std::size_t i = 0; i < columnas_.size(); ++i) {
    if (i > 0) linea += ", ";
    linea += Json(columnas_[i].nombre) + ": ";
    const Celda& celda = fila[i];
    if (!celda.has_value()) {
      linea += "null";
    } else if (columnas_[i].tipo == TipoColumna::Entero) {
      linea += *celda;
    } else if (columnas_[i].tipo == TipoColumna::Logico) {
      linea += *celda == "sí" ? "true" : "false";
    } else {
      linea += Json(*celda);
    }
  }
  escritor_.Escribe(linea + "}\n");
}

void Filas::EscribeCsv(const std::vector<Celda>& fila) {
  std::string linea;
  for (std::size_t i = 0; i < columnas_.size(); ++i) {
    if (i > 0) linea += ',';
    linea += Csv(fila[i].value_or(""));
  }
  escritor_.Escribe(linea + '\n');
}

}  // namespace utilvel

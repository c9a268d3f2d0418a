#include "tools/utilvel/Entrada.h"

#include <cstring>
#include <filesystem>
#include <system_error>

#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "tools/utilvel/Errores.h"
#include "tools/utilvel/Textos.h"

namespace utilvel {
namespace {

constexpr std::string_view kMarca = "\xEF\xBB\xBF";

}  // namespace

std::string LeeTodo(const std::string& ruta) {
  Lector lector(ruta);
  std::string bytes;
  std::size_t tamano = 0;
  do {
    bytes.resize(tamano + 65536);
    const std::size_t leidos = lector.Lee(bytes.data() + tamano, 65536);
    bytes.resize(tamano + leidos);
    if (leidos == 0) return bytes;
    tamano += leidos;
  } while (true);
}

void ExigeOtraSalida(const std::string& salida, const std::vector<std::string>& leidos) {
  std::error_code falta;
  if (salida.empty() || !std::filesystem::is_regular_file(salida, falta)) return;
  for (const std::string& leido : leidos) {
    if (std::filesystem::equivalent(leido, salida, falta))
      throw Falla(Codigo::Uso, "El archivo de --salida es uno de los que se leen: " + salida);
  }
}

ArchivoParaLeer::ArchivoParaLeer(const std::string& ruta) : ruta_(ruta), temporal_(ruta == "-") {
  if (!temporal_) {
    const Lector seLee(ruta);
    return;
  }
  const std::string bytes = LeeTodo(ruta);
  ruta_ = CreaTemporal();
  try {
    Escritor copia(ruta_);
    copia.Escribe(bytes);
    copia.Termina();
  } catch (...) {
    std::error_code error;
    std::filesystem::remove(ruta_, error);
    throw;
  }
}

ArchivoParaLeer::~ArchivoParaLeer() {
  std::error_code error;
  if (temporal_) std::filesystem::remove(ruta_, error);
}

bool Renglones::Llena() {
  if (acabo_) return false;
  // What is left of a line moves to the front, so that the block need not grow.
  const std::size_t resto = fin_ - inicio_;
  if (resto > kMaximo) {
    throw Falla(Codigo::Datos,
                "El renglón " + std::to_string(numero_ + 1) + " mide más de un millón de caracteres");
  }
  if (resto > 0) std::memmove(bloque_.data(), bloque_.data() + inicio_, resto);
  bloque_.resize(resto + 65536);
  const std::size_t leidos = lector_.Lee(bloque_.data() + resto, 65536);
  inicio_ = 0;
  fin_ = resto + leidos;
  acabo_ = leidos == 0;
  return !acabo_;
}

bool Renglones::Siguiente(std::string_view& renglon) {
  std::size_t visto = 0;
  for (;;) {
    const std::string_view resto(bloque_.data() + inicio_, fin_ - inicio_);
    const std::size_t corte = resto.find('\n', visto);
    if (corte == std::string_view::npos) {
      visto = resto.size();
      if (Llena()) continue;
      if (fin_ == inicio_) return false;
      renglon = {bloque_.data() + inicio_, fin_ - inicio_};
      inicio_ = fin_;
    } else {
      renglon = resto.substr(0, corte);
      inicio_ += corte + 1;
    }
    break;
  }
  if (numero_++ == 0 && renglon.starts_with(kMarca)) renglon.remove_prefix(kMarca.size());
  if (renglon.ends_with('\r')) renglon.remove_suffix(1);
  return true;
}

std::int32_t Entero(const std::string& texto, const std::string& que) {
  try {
    return vel::StrToInt(ATexto(texto));
  } catch (const vel::EConvertError&) {
    throw Falla(Codigo::Uso, que + " es un número entero, no " + texto);
  }
}

Codigo PorRenglon(const std::string& texto, const std::function<void(const vel::UnicodeString&)>& hace) {
  if (texto != "-") {
    hace(ATexto(texto));
    return Codigo::Bien;
  }
  Codigo codigo = Codigo::Bien;
  Renglones renglones("-");
  std::string_view renglon;
  while (renglones.Siguiente(renglon)) {
    RevisaInterrupcion();
    try {
      hace(ATexto(renglon));
    } catch (const vel::Exception& error) {
      Avisa("Renglón " + std::to_string(renglones.Numero()) + ": " + error.what());
      codigo = Codigo::Parcial;
    }
  }
  return codigo;
}

}  // namespace utilvel

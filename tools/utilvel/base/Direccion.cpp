#include "tools/utilvel/base/Direccion.h"

#include <charconv>
#include <optional>
#include <system_error>

#include "tools/utilvel/Errores.h"

namespace utilvel {
namespace {

struct Esquema {
  std::string_view nombre;
  ClaseDeBase clase;
};
constexpr Esquema kEsquemas[] = {{"sqlite3", ClaseDeBase::Sqlite},
                                 {"firebird", ClaseDeBase::Firebird},
                                 {"postgresql", ClaseDeBase::Postgresql},
                                 {"mysql", ClaseDeBase::Mysql}};

[[noreturn]] void Rechaza(const std::string& motivo) {
  throw Falla(Codigo::Uso, "La dirección de la base no se entiende: " + motivo);
}

std::optional<int> Hexadecimal(std::string_view texto) {
  int valor = 0;
  const auto [fin, error] = std::from_chars(texto.data(), texto.data() + texto.size(), valor, 16);
  if (texto.size() != 2 || error != std::errc() || fin != texto.data() + texto.size()) return std::nullopt;
  return valor;
}

std::string SinPorcentajes(std::string_view texto) {
  std::string salida;
  for (std::size_t i = 0; i < texto.size(); ++i) {
    if (texto[i] != '%') {
      salida += texto[i];
      continue;
    }
    const std::optional<int> byte = Hexadecimal(texto.substr(i + 1, 2));
    if (!byte.has_value() || *byte == 0) Rechaza("después de \"%\" van dos cifras hexadecimales");
    salida += static_cast<char>(*byte);
    i += 2;
  }
  return salida;
}

// Whether what follows the scheme is a file of this machine.
bool EsArchivo(ClaseDeBase clase, std::string_view resto) {
  if (clase == ClaseDeBase::Sqlite) return true;
  return clase == ClaseDeBase::Firebird &&
         (resto.starts_with('/') || resto.starts_with("./") || resto.starts_with("../") ||
          resto.find_first_of("/@") == std::string_view::npos);
}

// "ana@servidor:3050" into its parts.
void LeeServidor(std::string_view texto, DireccionBase& direccion) {
  if (const std::size_t arroba = texto.rfind('@'); arroba != std::string_view::npos) {
    const std::string_view usuario = texto.substr(0, arroba);
    if (usuario.find(':') != std::string_view::npos) {
      Rechaza(
          "la contraseña no va en ella, donde otros la ven; va en UTILVEL_CLAVE o en un archivo con "
          "--clave-archivo");
    }
    direccion.usuario = SinPorcentajes(usuario);
    texto.remove_prefix(arroba + 1);
  }
  if (const std::size_t dosPuntos = texto.rfind(':'); dosPuntos != std::string_view::npos) {
    const std::string_view puerto = texto.substr(dosPuntos + 1);
    const auto [fin, error] = std::from_chars(puerto.data(), puerto.data() + puerto.size(), direccion.puerto);
    if (error != std::errc() || fin != puerto.data() + puerto.size() || direccion.puerto < 1 ||
        direccion.puerto > 65535) {
      Rechaza("el puerto es un número de 1 a 65535");
    }
    texto = texto.substr(0, dosPuntos);
  }
  direccion.servidor = SinPorcentajes(texto);
}

}  // namespace

DireccionBase LeeDireccion(std::string_view texto) {
  DireccionBase direccion;
  const std::size_t marca = texto.find("://");
  const Esquema* esquema = nullptr;
  for (const Esquema& e : kEsquemas) {
    if (marca != std::string_view::npos && texto.substr(0, marca) == e.nombre) esquema = &e;
  }
  if (esquema == nullptr) {
    Rechaza("empieza con sqlite3://, firebird://, postgresql:// o mysql://");
  }
  direccion.clase = esquema->clase;
  std::string_view resto = texto.substr(marca + 3);
  if (EsArchivo(direccion.clase, resto)) {
    direccion.base = resto;
  } else {
    const std::size_t diagonal = resto.find('/');
    if (diagonal == std::string_view::npos) Rechaza("falta \"/\" y el nombre de la base");
    if (resto.find('?') != std::string_view::npos) Rechaza("no lleva \"?\"; en un nombre se escribe %3F");
    LeeServidor(resto.substr(0, diagonal), direccion);
    direccion.base = SinPorcentajes(resto.substr(diagonal + 1));
  }
  if (direccion.base.empty()) Rechaza("falta el nombre de la base");
  return direccion;
}

}  // namespace utilvel

#pragma once

#include <cstdint>
#include <string_view>

#include "framework/Texto.h"

namespace utilvel {

/// How the program ends. Help, manual page and tests read kCodigos: a new code takes a row there.
enum class Codigo : std::uint8_t {
  Bien = 0,
  Negativo = 1,
  Uso = 2,
  Archivo = 3,
  Datos = 4,
  Parcial = 5,
  Base = 6,
  Interno = 70,
  Interrumpido = 130,
  TuberiaCerrada = 141,
};

struct SignificadoCodigo {
  Codigo codigo;
  std::string_view significado;
};

inline constexpr SignificadoCodigo kCodigos[] = {
    {Codigo::Bien, "Se hizo lo pedido."},
    {Codigo::Negativo, "Se hizo, y la respuesta es no: hay diferencias, no hay renglones, no abre la llave."},
    {Codigo::Uso, "La orden no se entiende: falta algo, sobra algo o una opción no existe."},
    {Codigo::Archivo, "Un archivo no se puede leer o escribir."},
    {Codigo::Datos, "Los datos no son válidos: el mensaje dice cuáles y por qué."},
    {Codigo::Parcial, "Se hizo todo menos lo que los mensajes nombran."},
    {Codigo::Base, "La base de datos no se abre, rechaza la consulta o falla a medio camino."},
    {Codigo::Interno, "Falta memoria o el programa tiene una falla."},
    {Codigo::Interrumpido, "Se interrumpió con Ctrl-C."},
    {Codigo::TuberiaCerrada, "Quien leía los resultados dejó de leer."},
};

}  // namespace utilvel

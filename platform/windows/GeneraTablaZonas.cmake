# Writes the table of zones that the library carries where the system has no tz database of its own:
#   cmake -DZONAS=<folder of the tz database> -DSALIDA=<source> -P GeneraTablaZonas.cmake
# Zones are the database's own files (RFC 8536), so that they tell what they tell there; files that zic makes in its
# short form are a quarter smaller, but zic 2.36 leaves changes out of them that three zones need. Only the part of
# a file that old readers read goes. Names that mean one zone share it.

cmake_minimum_required(VERSION 3.25)

file(STRINGS ${ZONAS}/tzdata.zi lineas REGEX "^(# version|[ZL]) ")
set(nombres "")
foreach(linea ${lineas})
  if(linea MATCHES "^# version (.+)$")
    set(version ${CMAKE_MATCH_1})
  elseif(linea MATCHES "^(Z|L [^ ]+) ([^ ]+)")
    list(APPEND nombres ${CMAKE_MATCH_2})
  endif()
endforeach()
if(NOT version MATCHES "^[0-9][0-9][0-9][0-9][a-z]+$" OR NOT nombres)
  message(FATAL_ERROR "${ZONAS}: neither version nor zones found")
endif()
string(SUBSTRING ${version} 0 4 anio)

# A first part with one type and nothing else: "TZif2", 15 zeros, six counts, the type of six zeros and its name.
string(REPEAT 00 15 reserva)
string(REPEAT 00 16 nada)
string(REPEAT 00 7 tipo)
set(primera 545a696632${reserva}${nada}0000000100000001${tipo})

# In the order in which they are looked for.
list(SORT nombres COMPARE STRING CASE SENSITIVE)
set(zonas "")
set(filas "")
foreach(nombre ${nombres})
  file(READ ${ZONAS}/${nombre} bytes HEX)
  string(FIND "${bytes}" 545a6966 segunda REVERSE)
  if(segunda LESS 88)
    message(FATAL_ERROR "${ZONAS}/${nombre}: no file of version 2")
  endif()
  string(SUBSTRING "${bytes}" ${segunda} -1 bytes)
  string(PREPEND bytes ${primera})
  string(MD5 zona "${bytes}")
  if(NOT DEFINED zona_${zona})
    set(zona_${zona} yes)
    string(REGEX REPLACE "(..)" "\\\\x\\1" bytes "${bytes}")
    string(APPEND zonas "constexpr char k${zona}[] =\n    \"${bytes}\";\n")
  endif()
  string(APPEND filas "    {\"${nombre}\", Bytes(k${zona})},\n")
endforeach()

file(WRITE ${SALIDA} "// Made from edition ${version} of the tz database by GeneraTablaZonas.cmake.

#include \"platform/windows/TablaZonas.h\"

#include <algorithm>
#include <iterator>

namespace vel {
namespace {

struct Fila {
  std::string_view nombre;
  std::string_view tzif;
};

// A file holds zeros; only the one that ends the literal is none of it.
template <std::size_t n>
constexpr std::string_view Bytes(const char (&literal)[n]) {
  return {literal, n - 1};
}

${zonas}
constexpr Fila kFilas[] = {
${filas}};

}  // namespace

int AnioTablaZonas() noexcept { return ${anio}; }

std::string_view BuscaTablaZonas(std::string_view nombre) noexcept {
  const Fila* const fila = std::lower_bound(std::begin(kFilas), std::end(kFilas), nombre,
                                            [](const Fila& f, std::string_view n) { return f.nombre < n; });
  return fila != std::end(kFilas) && fila->nombre == nombre ? fila->tzif : std::string_view();
}

}  // namespace vel
")

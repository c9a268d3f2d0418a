# Checks the house rules that no compiler checks: cmake -DRAIZ=<source folder> -P tools/capas.cmake
#  - includes keep the order of the layers, and public headers name no third-party or system header;
#  - system conditionals stand only in platform/ and in the export header;
#  - every header begins with #pragma once.

cmake_minimum_required(VERSION 3.25)

# The layers, from the bottom up: a folder and what it may include besides itself. It may only name folders
# above it in this table, so no circle can be written here; a folder without a row is not allowed. A file
# belongs to the longest folder that holds it.
set(filas
  "framework:"
  "platform: framework"
  "version: framework platform"
  "Uutilext/documents: framework platform"
  "Uutilext/text: framework platform"
  "Uutilext/time: framework platform"
  "Uutilext/process: framework platform version"
  "Uutilext/diagnostics: framework platform Uutilext/time Uutilext/process"
  "Uutilext/config: framework platform version Uutilext/process Uutilext/diagnostics"
  "Uutilext/crypto: framework platform Uutilext/diagnostics"
  # Only its chief header.
  "Uutilext: framework Uutilext/documents Uutilext/text Uutilext/time Uutilext/diagnostics Uutilext/config Uutilext/crypto"
  "Fechas: framework platform version Uutilext/time Uutilext/config"
  "Paramsql: framework platform version Uutilext/diagnostics Uutilext/config"
  "Ucalculocfdi: framework Uutilext/documents"
  "Uformula: framework Uutilext/documents"
  # The front: public headers of everything below.
  "facil: framework platform version Uutilext Uutilext/documents Uutilext/text Uutilext/time Uutilext/diagnostics Uutilext/config Uutilext/crypto Fechas Paramsql Ucalculocfdi Uformula"
  "tools/utilvel: framework platform version Uutilext/documents Uutilext/text Uutilext/time Uutilext/config Uutilext/crypto Fechas Paramsql Ucalculocfdi Uformula facil")

set(faltas "")

set(capas "")
foreach(fila ${filas})
  string(REGEX MATCH "^([^:]+):(.*)$" _ "${fila}")
  set(capa ${CMAKE_MATCH_1})
  separate_arguments(incluye UNIX_COMMAND "${CMAKE_MATCH_2}")
  foreach(otra ${incluye})
    if(NOT otra IN_LIST capas)
      list(APPEND faltas "the table: ${capa} names ${otra}, which has no row above it")
    endif()
  endforeach()
  list(APPEND capas ${capa})
  set(capa_${capa} ${incluye})
endforeach()

# The layer of a file or of an include, in `salida`; empty when none holds it.
function(capa_de ruta salida)
  get_filename_component(carpeta "${ruta}" DIRECTORY)
  while(carpeta AND NOT carpeta IN_LIST capas)
    get_filename_component(carpeta "${carpeta}" DIRECTORY)
  endwhile()
  set(${salida} "${carpeta}" PARENT_SCOPE)
endfunction()

set(archivos "")
foreach(capa ${capas})
  file(GLOB_RECURSE suyos RELATIVE ${RAIZ} ${RAIZ}/${capa}/*.h ${RAIZ}/${capa}/*.cpp)
  if(NOT suyos)
    list(APPEND faltas "${capa}: no files found")
  endif()
  list(APPEND archivos ${suyos})
endforeach()
list(REMOVE_DUPLICATES archivos)

foreach(archivo ${archivos})
  capa_de(${archivo} capa)
  # The row of Uutilext is for what stands in it directly.
  if(capa STREQUAL "Uutilext" AND archivo MATCHES "^Uutilext/.*/")
    list(APPEND faltas "${archivo}: its folder has no row in the table of layers")
  endif()
  file(STRINGS ${RAIZ}/${archivo} lineas REGEX "^ *# *(include|if|ifdef|ifndef|elif|pragma once)")
  if(archivo MATCHES "\\.h$" AND NOT "${lineas}" MATCHES "pragma once")
    list(APPEND faltas "${archivo}: no #pragma once")
  endif()
  foreach(linea ${lineas})
    if(linea MATCHES "include +\"([^\"]+)\"")
      set(incluido ${CMAKE_MATCH_1})
      capa_de(${incluido} suya)
      if(NOT incluido STREQUAL "utilvel90_export.h" AND (NOT suya OR NOT suya IN_LIST capa_${capa})
         AND NOT suya STREQUAL capa)
        list(APPEND faltas "${archivo}: must not include ${incluido}")
      endif()
      if(incluido MATCHES "^platform/(posix|windows)/" AND NOT archivo MATCHES "^platform/")
        list(APPEND faltas "${archivo}: reaches behind the platform's headers (${incluido})")
      endif()
    elseif(linea MATCHES "include +<([^>]+)>")
      set(incluido ${CMAKE_MATCH_1})
      # The standard library's headers have neither folder nor ending.
      if(incluido MATCHES "[./]" AND archivo MATCHES "\\.h$" AND NOT archivo MATCHES "^platform/(posix|windows)/")
        list(APPEND faltas "${archivo}: a header must not name <${incluido}>")
      endif()
    elseif(linea MATCHES "(_WIN32|_WIN64|__linux__|__unix__|__APPLE__|_MSC_VER|__MINGW)")
      if(NOT archivo MATCHES "^platform/")
        list(APPEND faltas "${archivo}: system conditional outside platform/")
      endif()
    endif()
  endforeach()
endforeach()

# The header for everything has the chief header of each folder that has one.
file(STRINGS ${RAIZ}/UtilVel90.h todo REGEX "^#include")
foreach(capa ${capas})
  get_filename_component(nombre ${capa} NAME)
  if(EXISTS ${RAIZ}/${capa}/${nombre}.h AND NOT "${todo}" MATCHES "\"${capa}/${nombre}.h\"")
    list(APPEND faltas "UtilVel90.h: does not include ${capa}/${nombre}.h")
  endif()
endforeach()

if(faltas)
  list(JOIN faltas "\n" texto)
  message(FATAL_ERROR "${texto}")
endif()

# Checks that what is public of a table names all its rows: cmake -DRAIZ=<source folder> -P tools/tablas.cmake
#  - the built-ins of the formulas stand in their header's text, and each has a case;
#  - the kinds of company folders stand in their header's table;
#  - what the set-up of a machine creates, and the environment variables, stand in their page;
#  - the guide's table of what to call names what the headers beside it have.

set(faltas "")

# The texts of the table in `archivo`: what a row's expression has in its one group, with "/" for "\".
function(filas archivo expresion salida)
  file(READ ${RAIZ}/${archivo} texto)
  string(REPLACE "\\\\" "/" texto "${texto}")
  string(REGEX MATCHALL "${expresion}" hallados "${texto}")
  list(TRANSFORM hallados REPLACE "${expresion}" "\\1")
  if(NOT hallados)
    message(FATAL_ERROR "${archivo}: no rows found")
  endif()
  set(${salida} "${hallados}" PARENT_SCOPE)
endfunction()

# What `archivo` must hold of each row, "@" standing for its text.
macro(exige archivo patron)
  file(READ ${RAIZ}/${archivo} texto)
  string(REPLACE "\\" "/" texto "${texto}")
  foreach(fila ${ARGN})
    string(REPLACE "@" "${fila}" buscado "${patron}")
    if(NOT texto MATCHES "${buscado}")
      list(APPEND faltas "${archivo}: says nothing of ${fila}")
    endif()
  endforeach()
endmacro()

filas(Uformula/FuncionesInternas.cpp "\n    {u\"([A-Z]+)\"," internas)
exige(Uformula/TFormula.h "[ /]@[ ,;\n]" ${internas})
exige(tests/data/formulas/casos.txt "@[(]" ${internas})

filas(Uutilext/config/Rutas.cpp "{u\"([^\"]+)\", Base::" carpetas)
exige(Uutilext/config/Rutas.h "\"@\"" ${carpetas})

filas(facil/Instalacion.cpp "\n    u\"([^\"]+)/\"," creadas)
list(TRANSFORM creadas REPLACE "^.*/" "")
exige(docs/installation.md "`[^`]*@/`" ${creadas})
foreach(archivo Carpetas Registro Rutas ZonasHorarias)
  filas(platform/posix/${archivo}.cpp "[(]\"([A-Z_]+)\"[)]" variables)
  exige(docs/installation.md "`@`" ${variables})
endforeach()

# Rows of the guide's index: | quiero ... | `Function`, `Class::Function` | `folder/Header.h` |
file(STRINGS ${RAIZ}/docs/guia/indice.md quiero REGEX "\\| `[^|]+` *[.]* \\| `[^|]+[.]h` \\|$")
if(NOT quiero)
  message(FATAL_ERROR "docs/guia/indice.md: no table of what to call")
endif()
foreach(fila ${quiero})
  string(REGEX MATCH "\\| ([^|]+) \\| ([^|]+) \\|$" _ "${fila}")
  set(columna ${CMAKE_MATCH_2})
  string(REGEX MATCHALL "[A-Za-z0-9_]+`" nombres "${CMAKE_MATCH_1}")
  string(REGEX MATCHALL "[A-Za-z0-9_/]+[.]h" encabezados "${columna}")
  set(texto "")
  foreach(encabezado ${encabezados})
    if(EXISTS ${RAIZ}/${encabezado})
      file(READ ${RAIZ}/${encabezado} suyo)
      string(APPEND texto "${suyo}")
    else()
      list(APPEND faltas "docs/guia/indice.md: there is no ${encabezado}")
    endif()
  endforeach()
  foreach(nombre ${nombres})
    string(REPLACE "`" "" nombre ${nombre})
    if(NOT texto MATCHES "[^A-Za-z0-9_]${nombre}[^A-Za-z0-9_]")
      list(APPEND faltas "docs/guia/indice.md: ${nombre} does not stand in ${encabezados}")
    endif()
  endforeach()
endforeach()

if(faltas)
  list(JOIN faltas "\n" lineas)
  message(FATAL_ERROR "${lineas}")
endif()

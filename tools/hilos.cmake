# Checks that every exported class says what it promises to threads (see utilvel90_export.h), in the comment above it:
#   cmake -DRAIZ=<source folder> -P tools/hilos.cmake
file(GLOB_RECURSE encabezados RELATIVE ${RAIZ} ${RAIZ}/framework/*.h ${RAIZ}/platform/*.h ${RAIZ}/version/*.h
  ${RAIZ}/Uutilext/*.h ${RAIZ}/Fechas/*.h ${RAIZ}/Paramsql/*.h ${RAIZ}/Ucalculocfdi/*.h ${RAIZ}/Uformula/*.h
  ${RAIZ}/facil/*.h)
set(faltas "")
set(clases 0)
foreach(encabezado ${encabezados})
  file(STRINGS ${RAIZ}/${encabezado} lineas REGEX "^(///|(class|struct) )")
  set(anterior "")
  foreach(linea IN LISTS lineas)
    if(linea MATCHES "^(class|struct) .*UTILVEL90_EXPORT ([A-Za-z0-9_]+)")
      math(EXPR clases "${clases} + 1")
      if(NOT anterior MATCHES "^/// Threads: (one at a time|const members may be called by all)[.,]")
        list(APPEND faltas "${encabezado}: ${CMAKE_MATCH_2} promises nothing to threads")
      endif()
    endif()
    set(anterior "${linea}")
  endforeach()
endforeach()
if(faltas OR clases EQUAL 0)
  list(JOIN faltas "\n" texto)
  message(FATAL_ERROR "${texto}")
endif()

# Runs the program of a page on a machine of its own, in CARPETA, and compares what it prints with what the page
# says: cmake -DPROGRAMA= -DEMULADOR=<what runs it, parted by "|"> -DPAGINA= -DESPERADO=<file> -DCARPETA=
# -DRAIZ=<source folder> -P corre.cmake
# Drive C of that machine holds the examples' inputs in "Datos" and the tests' seals in "Sellos".
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE ${CARPETA})
file(COPY ${RAIZ}/examples/datos/ DESTINATION ${CARPETA}/unidades/drive_c/Datos)
file(COPY ${RAIZ}/tests/data/crypto/ DESTINATION ${CARPETA}/unidades/drive_c/Sellos)
set(ENV{HOME} ${CARPETA}/casa)
set(ENV{XDG_DATA_HOME} ${CARPETA}/usuario)
set(ENV{UTILVEL_REGISTRO} ${CARPETA}/registro.reg)
set(ENV{UTILVEL_DATOS_COMUNES} ${CARPETA}/comunes)
set(ENV{UTILVEL_UNIDADES} ${CARPETA}/unidades)
set(ENV{TZ} America/Mexico_City)
string(REPLACE "|" ";" emulador "${EMULADOR}")
execute_process(COMMAND ${emulador} ${PROGRAMA} WORKING_DIRECTORY ${CARPETA} RESULT_VARIABLE codigo
  OUTPUT_FILE ${CARPETA}/salida.txt ERROR_VARIABLE errores)
if(NOT codigo EQUAL 0)
  message(FATAL_ERROR "${PAGINA}: the program ends with ${codigo}\n${errores}")
endif()
# Texts of the suite end their lines with "\r\n", which a page does not show.
file(READ ${CARPETA}/salida.txt salida)
string(REPLACE "\r\n" "\n" salida "${salida}")
file(READ ${ESPERADO} esperado)
if(NOT salida STREQUAL esperado)
  string(REPLACE "\n" "\n  " salida "${salida}")
  message(FATAL_ERROR "${PAGINA}: the program prints something else than the page says:\n  ${salida}")
endif()

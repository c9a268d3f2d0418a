# Checks that the table of calls has every free function that the library exports, and no other:
#   cmake -DNM=<nm> -DBIBLIOTECA=<shared library> -DTABLA=<table> -P tools/llamadas.cmake
execute_process(COMMAND ${NM} --dynamic --defined-only --demangle ${BIBLIOTECA}
  OUTPUT_VARIABLE simbolos COMMAND_ERROR_IS_FATAL ANY)
# Members have a second "::" before their arguments; operators are no functions that a program names.
string(REGEX MATCHALL " T vel::(facil::)?[A-Za-z_0-9]+(\\[[^\n]*\\])?\\(" exportadas "${simbolos}")
list(TRANSFORM exportadas REPLACE "^ T vel::([A-Za-z_0-9:]+).*$" "\\1")
list(REMOVE_DUPLICATES exportadas)
file(STRINGS ${TABLA} llamadas REGEX "^{\"[A-Za-z_0-9:]+\"")
list(TRANSFORM llamadas REPLACE "^{\"([A-Za-z_0-9:]+)\".*$" "\\1")
set(faltan ${exportadas})
list(REMOVE_ITEM faltan ${llamadas})
set(sobran ${llamadas})
list(REMOVE_ITEM sobran ${exportadas})
if(faltan OR sobran OR NOT exportadas)
  message(FATAL_ERROR "${TABLA}\nhas no call of: ${faltan}\nnames what is not exported: ${sobran}")
endif()
